#include "picture_sheet.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace tools {

namespace {

std::string Little(uint32_t value, int bytes)
{
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> 8 * i);
    return text;
}
std::string Big(uint32_t value)
{
    std::string text = Little(value, 4);
    std::ranges::reverse(text);
    return text;
}

uint32_t Crc(std::string_view data)
{
    static const auto table = [] {
        std::array<uint32_t, 256> made{};
        for (uint32_t i = 0; i < made.size(); ++i) {
            made[i] = i;
            for (int bit = 0; bit < 8; ++bit)
                made[i] = made[i] & 1 ? 0xEDB88320 ^ made[i] >> 1 : made[i] >> 1;
        }
        return made;
    }();
    uint32_t sum = 0xFFFFFFFF;
    for (const char byte : data)
        sum = table[(sum ^ static_cast<uint8_t>(byte)) & 255] ^ sum >> 8;
    return ~sum;
}

std::string Chunk(const std::string& name, const std::string& data)
{
    return Big(static_cast<uint32_t>(data.size())) + name + data + Big(Crc(name + data));
}

// A zlib stream whose blocks are stored as they are.
std::string Stored(std::string_view data)
{
    constexpr std::size_t block_size = 65535;
    constexpr uint32_t modulus = 65521;
    uint32_t low = 1;
    uint32_t high = 0;
    for (const char byte : data) {
        low = (low + static_cast<uint8_t>(byte)) % modulus;
        high = (high + low) % modulus;
    }
    std::string stream = "\x78\x01";
    do {
        const std::string_view block = data.substr(0, block_size);
        data.remove_prefix(block.size());
        const auto size = static_cast<uint32_t>(block.size());
        stream += static_cast<char>(data.empty());
        stream += Little(size, 2) + Little(~size, 2);
        stream += block;
    } while (!data.empty());
    return stream + Big(high << 16 | low);
}

} // namespace

PictureSheet::PictureSheet(SIZE size) : m_size(size)
{
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(info.bmiHeader);
    info.bmiHeader.biWidth = size.cx;
    info.bmiHeader.biHeight = -size.cy;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    m_bitmap.reset(vh::late::create_dib_section(HDC{nullptr}, &info, UINT{DIB_RGB_COLORS}, &bits, nullptr, 0u));
    if (!m_bitmap)
        throw std::runtime_error("no memory for a picture of this size");
    auto* pixels = static_cast<DWORD*>(bits);
    std::fill_n(pixels, static_cast<std::size_t>(size.cx) * static_cast<std::size_t>(size.cy), 0xFFFFFFu);
    m_pixels = pixels;
    m_context = std::make_unique<vh::bitmap_context>(HDC{nullptr}, m_bitmap.get());
}

std::string PictureSheet::Pixels() const
{
    vh::late::gdi_flush();
    std::string pixels;
    const auto count = static_cast<std::size_t>(m_size.cx) * static_cast<std::size_t>(m_size.cy);
    pixels.reserve(3 * count);
    for (std::size_t i = 0; i < count; ++i)
        for (const int shift : {16, 8, 0})
            pixels += static_cast<char>(m_pixels[i] >> shift);
    return pixels;
}

std::string BitmapOf(const PictureSheet& sheet)
{
    constexpr uint32_t headers_size = 14 + 40;
    const auto width = static_cast<uint32_t>(sheet.size().cx);
    const auto height = static_cast<uint32_t>(sheet.size().cy);
    const std::string pixels = sheet.Pixels();
    const std::string padding((4 - 3 * width % 4) % 4, '\0');
    std::string rows;
    for (uint32_t row = height; row-- > 0;) {
        for (std::size_t at = std::size_t{3} * row * width; at < std::size_t{3} * (row + 1) * width; at += 3)
            rows.append({pixels[at + 2], pixels[at + 1], pixels[at]});
        rows += padding;
    }
    const auto size = static_cast<uint32_t>(rows.size());
    return "BM" + Little(headers_size + size, 4) + Little(0, 4) + Little(headers_size, 4) + Little(40, 4) +
           Little(width, 4) + Little(height, 4) + Little(1, 2) + Little(24, 2) + Little(0, 4) + Little(size, 4) +
           std::string(16, '\0') + rows;
}

std::string PngOf(const PictureSheet& sheet)
{
    const std::string pixels = sheet.Pixels();
    const auto row_size = static_cast<std::size_t>(sheet.size().cx) * 3;
    std::string rows;
    for (std::size_t at = 0; at < pixels.size(); at += row_size) {
        rows += '\0'; // no filter
        rows.append(pixels, at, row_size);
    }
    // Eight bits for each of three colors.
    const std::string header = Big(static_cast<uint32_t>(sheet.size().cx)) +
                               Big(static_cast<uint32_t>(sheet.size().cy)) + std::string("\x08\x02\0\0\0", 5);
    return "\x89PNG\r\n\x1A\n" + Chunk("IHDR", header) + Chunk("IDAT", Stored(rows)) + Chunk("IEND", "");
}

} // namespace tools
