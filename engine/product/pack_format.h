// A setup in one file: the host's program, and behind its last section what follows here. All numbers have their lowest
// byte first.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

namespace vh::engine {

inline constexpr std::array<char, 8> pack_magic{'V', 'H', 'P', 'A', 'C', 'K', '0', '1'};

// Stands right behind the program. Behind it come the files' bytes, then the index: a JSON text, deflated.
struct PackHeader {
    std::array<char, 8> magic = pack_magic;
    uint64_t end = 0; // of the index, from the start of the file; a signature may follow
    uint64_t indexAt = 0;
    uint64_t indexSize = 0;                  // as it is once inflated
    std::array<std::byte, 32> indexDigest{}; // SHA-256 of the inflated index
};
static_assert(sizeof(PackHeader) == 64 && std::endian::native == std::endian::little);

// Where things stand in a program for 64-bit Windows.
struct ProgramLayout {
    uint64_t end = 0;          // behind its last section
    std::size_t subsystem = 0; // place of the two bytes that tell a console program from one with windows
    std::size_t checksum = 0;  // place of four bytes
    std::size_t signature = 0; // place of the signature's place and size, four bytes each
    std::size_t machine = 0;   // place of the two bytes of the machine
};

// Reads the headers of a program from its first bytes. Nothing for what is none, or whose headers lie.
inline std::optional<ProgramLayout> LayoutOf(std::span<const std::byte> start)
{
    const auto number = [&]<class Value>(std::size_t at, Value& value) {
        if (at > start.size() || start.size() - at < sizeof value)
            return false;
        std::memcpy(&value, start.data() + at, sizeof value);
        return true;
    };
    constexpr std::size_t file_header = 24;
    constexpr std::size_t section_size = 40;
    constexpr uint16_t plus_magic = 0x20B;
    uint16_t mark = 0, sections = 0, optional_size = 0, magic = 0;
    uint32_t at = 0, signature = 0;
    if (!number(0, mark) || mark != 0x5A4D || !number(60, at) || at > start.size() || !number(at, signature) ||
        signature != 0x4550 || !number(at + 6, sections) || !number(at + 20, optional_size) ||
        !number(at + file_header, magic) || magic != plus_magic || optional_size < 152)
        return std::nullopt;
    ProgramLayout layout;
    const std::size_t optional = at + file_header;
    layout.machine = at + 4;
    layout.checksum = optional + 64;
    layout.subsystem = optional + 68;
    layout.signature = optional + 144;
    for (std::size_t i = 0; i < sections; ++i) {
        uint32_t size = 0, raw = 0;
        const std::size_t section = optional + optional_size + i * section_size;
        if (!number(section + 16, size) || !number(section + 20, raw))
            return std::nullopt;
        if (size && uint64_t{raw} + size > layout.end)
            layout.end = uint64_t{raw} + size;
    }
    return layout.end ? std::optional(layout) : std::nullopt;
}

// The programs of packs have windows; the host in a folder is one of the console.
inline bool HasWindows(std::span<const std::byte> program, const ProgramLayout& layout)
{
    return layout.subsystem < program.size() && program[layout.subsystem] == std::byte{2};
}

// Makes the program of a pack one with windows, or one of the console again. Its own signature and sum don't hold for
// the whole, so they go.
inline void ShapeProgram(std::span<std::byte> program, bool windows)
{
    const auto layout = LayoutOf(program);
    if (!layout)
        return;
    const uint16_t subsystem = windows ? 2 : 3;
    std::memcpy(program.data() + layout->subsystem, &subsystem, sizeof subsystem);
    std::memset(program.data() + layout->checksum, 0, 4);
    std::memset(program.data() + layout->signature, 0, 8);
}

} // namespace vh::engine
