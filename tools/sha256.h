// SHA-256 (FIPS 180-4).
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace tools {

class Sha256 {
public:
    void Add(std::span<const std::byte> data)
    {
        for (const std::byte one : data) {
            m_block[m_length++ % m_block.size()] = std::to_integer<uint8_t>(one);
            if (m_length % m_block.size() == 0)
                Transform();
        }
    }

    // In hexadecimal; the object is of no further use.
    std::string Finish()
    {
        constexpr std::size_t length_at = 56;
        const uint64_t bits = m_length * 8;
        constexpr std::byte mark{0x80};
        constexpr std::byte zero{0};
        Add({&mark, 1});
        while (m_length % m_block.size() != length_at)
            Add({&zero, 1});
        for (int i = 7; i >= 0; --i) {
            const auto part = static_cast<std::byte>(bits >> 8 * i);
            Add({&part, 1});
        }
        std::string text;
        for (const uint32_t word : m_state)
            for (int shift = 28; shift >= 0; shift -= 4)
                text += "0123456789abcdef"[word >> shift & 15];
        return text;
    }

private:
    void Transform()
    {
        std::array<uint32_t, 64> w;
        for (std::size_t i = 0; i < 16; ++i)
            w[i] = uint32_t{m_block[4 * i]} << 24 | uint32_t{m_block[4 * i + 1]} << 16 |
                   uint32_t{m_block[4 * i + 2]} << 8 | m_block[4 * i + 3];
        for (std::size_t i = 16; i < 64; ++i) {
            const uint32_t a = w[i - 15];
            const uint32_t b = w[i - 2];
            w[i] = w[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3) + w[i - 7] +
                   (std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10);
        }
        auto [a, b, c, d, e, f, g, h] = m_state;
        for (std::size_t i = 0; i < 64; ++i) {
            const uint32_t one = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) +
                                 constants[i] + w[i];
            const uint32_t two =
                (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
            h = g;
            g = f;
            f = e;
            e = d + one;
            d = c;
            c = b;
            b = a;
            a = one + two;
        }
        const uint32_t added[] = {a, b, c, d, e, f, g, h};
        for (std::size_t i = 0; i < m_state.size(); ++i)
            m_state[i] += added[i];
    }

    // The first 32 bits of the cube roots' fractions of the first 64 primes.
    static constexpr std::array<uint32_t, 64> constants = {
        0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
        0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
        0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
        0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
        0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
        0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
        0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
        0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

    std::array<uint32_t, 8> m_state = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                       0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
    std::array<uint8_t, 64> m_block{};
    uint64_t m_length = 0;
};

} // namespace tools
