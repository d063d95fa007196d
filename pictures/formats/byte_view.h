// Numbers at fixed places of a file, least significant byte first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace vh {

class byte_view {
public:
    explicit byte_view(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    bool Has(std::size_t at, std::size_t count) const { return at <= m_bytes.size() && count <= m_bytes.size() - at; }
    // Beyond the end everything is 0.
    uint8_t Byte(std::size_t at) const { return Has(at, 1) ? std::to_integer<uint8_t>(m_bytes[at]) : uint8_t{0}; }
    uint16_t Word(std::size_t at) const { return static_cast<uint16_t>(Byte(at) | Byte(at + 1) << 8); }
    uint32_t Long(std::size_t at) const { return Word(at) | uint32_t{Word(at + 2)} << 16; }
    bool StartsWith(std::string_view text) const
    {
        return Has(0, text.size()) &&
               std::string_view(reinterpret_cast<const char*>(m_bytes.data()), text.size()) == text;
    }

private:
    std::span<const std::byte> m_bytes;
};

constexpr uint32_t picture_done = 0;
// The code of a file whose content is wrong.
constexpr uint32_t picture_data_error = 13;

} // namespace vh
