// Signed data files: a header, the content, and behind it the signature with the signer's certificates.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vh {

using byte_span = std::span<const std::byte>;

// Little-endian; `at` and the three bytes behind it are within `bytes`.
inline uint32_t ReadNumber(byte_span bytes, std::size_t at)
{
    uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i)
        value |= std::to_integer<uint32_t>(bytes[at + i]) << 8 * i;
    return value;
}

inline void AppendNumber(std::vector<std::byte>& bytes, uint32_t value)
{
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::byte>(value >> shift));
}

struct signed_header {
    static constexpr std::size_t size = 493;
    static constexpr uint32_t right_magic = 0x28634856; // "VHc("
    static constexpr uint32_t right_version = 0x04000C1C;

    uint32_t magic;
    uint32_t version;
    uint32_t descriptor_at;
    uint32_t descriptor_size;
    // Where the trailer begins.
    uint32_t content_end;

    bool is_known() const { return magic == right_magic && version == right_version; }
};

// Nothing for fewer bytes than a header has.
inline std::optional<signed_header> ReadSignedHeader(byte_span bytes)
{
    if (bytes.size() < signed_header::size)
        return std::nullopt;
    return signed_header{ReadNumber(bytes, 0), ReadNumber(bytes, 4), ReadNumber(bytes, 12), ReadNumber(bytes, 16),
                         ReadNumber(bytes, 20)};
}

// Header, bytes before the descriptor, descriptor and the block behind it are the whole content, up to the header's
// `content_end`: what is hashed piece by piece is then every byte once. `number_at` reads at a place of the content.
template <class NumberAt>
bool IsContentWhole(const signed_header& header, NumberAt&& number_at)
{
    constexpr uint32_t second_size_at = 36; // within the descriptor
    if (header.descriptor_at < signed_header::size || header.descriptor_at > header.content_end ||
        header.descriptor_size > header.content_end - header.descriptor_at)
        return false;
    const uint32_t rest = header.content_end - header.descriptor_at - header.descriptor_size;
    // A descriptor without room for the size has no block behind it.
    return header.descriptor_size < second_size_at + 4 ? rest == 0
                                                       : rest == number_at(header.descriptor_at + second_size_at);
}

struct signed_trailer {
    byte_span signature;
    // A serialized store, up to the end of the file.
    byte_span store;
};

inline std::optional<signed_trailer> ReadSignedTrailer(byte_span bytes)
{
    if (bytes.size() < 4)
        return std::nullopt;
    const uint32_t length = ReadNumber(bytes, 0);
    const byte_span rest = bytes.subspan(4);
    if (!length || length > rest.size())
        return std::nullopt;
    return signed_trailer{rest.first(length), rest.subspan(length)};
}

// A certificate or a property of the certificate that follows it.
struct store_element {
    static constexpr uint32_t certificate = 32;

    uint32_t kind;
    byte_span content;
};

// The elements of a serialized store, which begins and ends exactly with `bytes`. Nothing for anything else: revocation
// and trust lists, encodings but X.509, bytes behind the end.
inline std::optional<std::vector<store_element>> ReadStore(byte_span bytes)
{
    constexpr uint32_t store_magic = 0x54524543; // "CERT"
    constexpr uint32_t first_list = 33;
    constexpr uint32_t last_list = 34;
    constexpr uint32_t x509 = 1;
    if (bytes.size() < 8 || ReadNumber(bytes, 0) != 0 || ReadNumber(bytes, 4) != store_magic)
        return std::nullopt;
    std::vector<store_element> elements;
    for (byte_span rest = bytes.subspan(8); rest.size() >= 12;) {
        const uint32_t kind = ReadNumber(rest, 0);
        const uint32_t encoding = ReadNumber(rest, 4);
        const uint32_t length = ReadNumber(rest, 8);
        rest = rest.subspan(12);
        if (kind == 0) {
            const bool closed = elements.empty() || elements.back().kind == store_element::certificate;
            if (encoding == 0 && length == 0 && rest.empty() && closed)
                return elements;
            break;
        }
        if (encoding != x509 || length > rest.size() || kind > 0xFFFF || (kind >= first_list && kind <= last_list))
            break;
        elements.push_back({kind, rest.first(length)});
        rest = rest.subspan(length);
    }
    return std::nullopt;
}

} // namespace vh
