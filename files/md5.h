// MD5 (RFC 1321).
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace vh {

class md5 {
public:
    using digest = std::array<std::byte, 16>;

    void update(std::span<const std::byte> data)
    {
        const std::size_t kept = m_length % block_size;
        m_length += data.size();
        if (kept) {
            const std::size_t fill = block_size - kept < data.size() ? block_size - kept : data.size();
            std::memcpy(m_rest + kept, data.data(), fill);
            data = data.subspan(fill);
            if (kept + fill < block_size)
                return;
            transform(m_rest, 1);
        }
        transform(data.data(), data.size() / block_size);
        data = data.subspan(data.size() / block_size * block_size);
        if (!data.empty())
            std::memcpy(m_rest, data.data(), data.size());
    }

    // Ends the computation; the object is of no further use.
    digest finish()
    {
        constexpr std::size_t length_size = 8;
        const uint64_t bits = m_length * 8;
        const std::size_t kept = m_length % block_size;
        const std::size_t padding = (kept < block_size - length_size ? block_size : 2 * block_size) - kept;
        std::array<std::byte, 2 * block_size> tail{std::byte{0x80}};
        for (std::size_t i = 0; i < length_size; ++i)
            tail[padding - length_size + i] = static_cast<std::byte>(bits >> 8 * i);
        update(std::span(tail).first(padding));
        digest result;
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = static_cast<std::byte>(m_state[i / 4] >> 8 * (i % 4));
        return result;
    }

private:
    static constexpr std::size_t block_size = 64;
    using word = uint32_t;

    static word load(const std::byte* data)
    {
        word value;
        std::memcpy(&value, data, sizeof(value));
        if constexpr (std::endian::native == std::endian::big)
            value = value << 24 | (value & 0xFF00) << 8 | (value >> 8 & 0xFF00) | value >> 24;
        return value;
    }

    // One step of each round. The words come in rotated order from step to step, so that nothing moves. In the
    // second round the two halves of the choice never overlap and are added one by one: `d` of a step is the
    // newest but one, so the half with b alone waits for the step before.
    template <int Shift>
    static void round1(word& a, word b, word c, word d, word data, word constant)
    {
        a = std::rotl(a + data + constant + (d ^ (b & (c ^ d))), Shift) + b;
    }
    template <int Shift>
    static void round2(word& a, word b, word c, word d, word data, word constant)
    {
        a = std::rotl(a + data + constant + (c & ~d) + (b & d), Shift) + b;
    }
    template <int Shift>
    static void round3(word& a, word b, word c, word d, word data, word constant)
    {
        a = std::rotl(a + data + constant + (b ^ (c ^ d)), Shift) + b;
    }
    template <int Shift>
    static void round4(word& a, word b, word c, word d, word data, word constant)
    {
        a = std::rotl(a + data + constant + (c ^ (b | ~d)), Shift) + b;
    }

    void transform(const std::byte* data, std::size_t blocks)
    {
        word a = m_state[0];
        word b = m_state[1];
        word c = m_state[2];
        word d = m_state[3];
        for (; blocks; --blocks, data += block_size) {
            const word old_a = a;
            const word old_b = b;
            const word old_c = c;
            const word old_d = d;
            const auto x = [data](std::size_t index) { return load(data + 4 * index); };
            round1<7>(a, b, c, d, x(0), 0xD76AA478);
            round1<12>(d, a, b, c, x(1), 0xE8C7B756);
            round1<17>(c, d, a, b, x(2), 0x242070DB);
            round1<22>(b, c, d, a, x(3), 0xC1BDCEEE);
            round1<7>(a, b, c, d, x(4), 0xF57C0FAF);
            round1<12>(d, a, b, c, x(5), 0x4787C62A);
            round1<17>(c, d, a, b, x(6), 0xA8304613);
            round1<22>(b, c, d, a, x(7), 0xFD469501);
            round1<7>(a, b, c, d, x(8), 0x698098D8);
            round1<12>(d, a, b, c, x(9), 0x8B44F7AF);
            round1<17>(c, d, a, b, x(10), 0xFFFF5BB1);
            round1<22>(b, c, d, a, x(11), 0x895CD7BE);
            round1<7>(a, b, c, d, x(12), 0x6B901122);
            round1<12>(d, a, b, c, x(13), 0xFD987193);
            round1<17>(c, d, a, b, x(14), 0xA679438E);
            round1<22>(b, c, d, a, x(15), 0x49B40821);

            round2<5>(a, b, c, d, x(1), 0xF61E2562);
            round2<9>(d, a, b, c, x(6), 0xC040B340);
            round2<14>(c, d, a, b, x(11), 0x265E5A51);
            round2<20>(b, c, d, a, x(0), 0xE9B6C7AA);
            round2<5>(a, b, c, d, x(5), 0xD62F105D);
            round2<9>(d, a, b, c, x(10), 0x02441453);
            round2<14>(c, d, a, b, x(15), 0xD8A1E681);
            round2<20>(b, c, d, a, x(4), 0xE7D3FBC8);
            round2<5>(a, b, c, d, x(9), 0x21E1CDE6);
            round2<9>(d, a, b, c, x(14), 0xC33707D6);
            round2<14>(c, d, a, b, x(3), 0xF4D50D87);
            round2<20>(b, c, d, a, x(8), 0x455A14ED);
            round2<5>(a, b, c, d, x(13), 0xA9E3E905);
            round2<9>(d, a, b, c, x(2), 0xFCEFA3F8);
            round2<14>(c, d, a, b, x(7), 0x676F02D9);
            round2<20>(b, c, d, a, x(12), 0x8D2A4C8A);

            round3<4>(a, b, c, d, x(5), 0xFFFA3942);
            round3<11>(d, a, b, c, x(8), 0x8771F681);
            round3<16>(c, d, a, b, x(11), 0x6D9D6122);
            round3<23>(b, c, d, a, x(14), 0xFDE5380C);
            round3<4>(a, b, c, d, x(1), 0xA4BEEA44);
            round3<11>(d, a, b, c, x(4), 0x4BDECFA9);
            round3<16>(c, d, a, b, x(7), 0xF6BB4B60);
            round3<23>(b, c, d, a, x(10), 0xBEBFBC70);
            round3<4>(a, b, c, d, x(13), 0x289B7EC6);
            round3<11>(d, a, b, c, x(0), 0xEAA127FA);
            round3<16>(c, d, a, b, x(3), 0xD4EF3085);
            round3<23>(b, c, d, a, x(6), 0x04881D05);
            round3<4>(a, b, c, d, x(9), 0xD9D4D039);
            round3<11>(d, a, b, c, x(12), 0xE6DB99E5);
            round3<16>(c, d, a, b, x(15), 0x1FA27CF8);
            round3<23>(b, c, d, a, x(2), 0xC4AC5665);

            round4<6>(a, b, c, d, x(0), 0xF4292244);
            round4<10>(d, a, b, c, x(7), 0x432AFF97);
            round4<15>(c, d, a, b, x(14), 0xAB9423A7);
            round4<21>(b, c, d, a, x(5), 0xFC93A039);
            round4<6>(a, b, c, d, x(12), 0x655B59C3);
            round4<10>(d, a, b, c, x(3), 0x8F0CCC92);
            round4<15>(c, d, a, b, x(10), 0xFFEFF47D);
            round4<21>(b, c, d, a, x(1), 0x85845DD1);
            round4<6>(a, b, c, d, x(8), 0x6FA87E4F);
            round4<10>(d, a, b, c, x(15), 0xFE2CE6E0);
            round4<15>(c, d, a, b, x(6), 0xA3014314);
            round4<21>(b, c, d, a, x(13), 0x4E0811A1);
            round4<6>(a, b, c, d, x(4), 0xF7537E82);
            round4<10>(d, a, b, c, x(11), 0xBD3AF235);
            round4<15>(c, d, a, b, x(2), 0x2AD7D2BB);
            round4<21>(b, c, d, a, x(9), 0xEB86D391);
            a += old_a;
            b += old_b;
            c += old_c;
            d += old_d;
        }
        m_state = {a, b, c, d};
    }

    std::array<word, 4> m_state = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    uint64_t m_length = 0;
    std::byte m_rest[block_size];
};

} // namespace vh
