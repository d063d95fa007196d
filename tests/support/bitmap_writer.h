// Makes bitmap files out of their parts.
#pragma once

#include <cstdint>
#include <string>

namespace vh::test {

// Least significant byte first.
inline std::string Number(uint64_t value, std::size_t size)
{
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i)
        bytes += static_cast<char>(value >> 8 * i);
    return bytes;
}
inline std::string Word(uint64_t value) { return Number(value, 2); }
inline std::string Long(uint64_t value) { return Number(value, 4); }
// A bitmap file out of its parts; the file header tells where the pixels start.
inline std::string BitmapFile(const std::string& header, const std::string& table, const std::string& pixels,
                              std::size_t start = 0)
{
    const std::size_t told = start ? start : 14 + header.size() + table.size();
    return "BM" + Long(0) + Long(0) + Long(told) + header + table + pixels;
}
inline std::string BitmapHeader(int width, int height, unsigned bits, unsigned compression = 0, unsigned colors = 0,
                                unsigned size = 40)
{
    const std::string start = Long(size) + Long(static_cast<unsigned>(width)) + Long(static_cast<unsigned>(height)) +
                              Word(1) + Word(bits) + Long(compression) + Long(0) + Long(0) + Long(0) + Long(colors) +
                              Long(0);
    return start + std::string(size > 40 ? size - 40 : 0, '\0');
}
// Of one color, 0xRRGGBB; one pixel may be magenta.
inline std::string PlainBitmap(int width, int height, unsigned color, int magenta = -1)
{
    std::string pixels;
    for (int at = 0; at < width * height; ++at)
        pixels += Number(at == magenta ? 0xFF00FF : color, 3);
    return BitmapFile(BitmapHeader(width, height, 24), "", pixels);
}
// A palette file that tells `count` colors in a chunk of so many bytes, and has these.
inline std::string PaletteFile(unsigned count, unsigned entries, unsigned length, unsigned first = 0x04030201)
{
    std::string file = "RIFF" + Long(0) + "PAL data" + Long(length) + Word(0x300) + Word(count);
    for (unsigned i = 0; i < entries; ++i)
        file += Long(first + i);
    return file;
}
inline std::string BitmapTable(unsigned count, unsigned entry_size = 4)
{
    std::string table;
    for (unsigned i = 0; i < count; ++i)
        table += Number(0x332211 + i, entry_size);
    return table;
}

} // namespace vh::test
