#include "bitmap_runs.h"

#include <algorithm>

namespace vh {

namespace {

constexpr uint64_t most_pixels = uint64_t{1} << 28;
// Behind a zero in the place of a length.
enum escape : uint8_t { end_of_row = 0, end_of_bitmap = 1, move = 2 };

class unpacker {
public:
    unpacker(const bitmap_picture& picture, std::size_t stride, std::vector<std::byte>& pixels)
        : m_data(picture.pixels), m_half_bytes(picture.bits == 4), m_width(static_cast<std::size_t>(picture.width)),
          m_height(static_cast<std::size_t>(picture.height)), m_stride(stride), m_pixels(pixels)
    {
    }

    // Ends where the data or the rows end.
    void Run()
    {
        while (m_y < m_height && m_at + 1 < m_data.size()) {
            const uint8_t length = Take();
            const uint8_t value = Take();
            if (length)
                PutRun(length, value);
            else if (value > move)
                PutPixels(value);
            else if (!Escape(static_cast<escape>(value)))
                return;
        }
    }

private:
    uint8_t Take() { return m_at < m_data.size() ? std::to_integer<uint8_t>(m_data[m_at++]) : uint8_t{0}; }
    void Put(uint8_t index)
    {
        if (m_x < m_width)
            m_pixels[m_y * m_stride + m_x] = std::byte{index};
        ++m_x;
    }
    // Of two pixels in a byte the first stands in its upper half.
    uint8_t Pixel(uint8_t value, unsigned number) const
    {
        if (!m_half_bytes)
            return value;
        return static_cast<uint8_t>(number & 1 ? value & 15 : value >> 4);
    }
    void PutRun(uint8_t length, uint8_t value)
    {
        for (unsigned i = 0; i < length; ++i)
            Put(Pixel(value, i));
    }
    void PutPixels(uint8_t count)
    {
        const std::size_t start = m_at;
        uint8_t value = 0;
        for (unsigned i = 0; i < count; ++i) {
            if (!m_half_bytes || i % 2 == 0)
                value = Take();
            Put(Pixel(value, i));
        }
        // Each row of pixels takes an even number of bytes.
        m_at = std::min(m_at + (m_at - start) % 2, m_data.size());
    }
    bool Escape(escape code)
    {
        if (code == end_of_bitmap)
            return false;
        if (code == end_of_row) {
            m_x = 0;
            ++m_y;
        } else {
            m_x += Take();
            m_y += Take();
        }
        return true;
    }

    std::span<const std::byte> m_data;
    bool m_half_bytes;
    std::size_t m_width;
    std::size_t m_height;
    std::size_t m_stride;
    std::vector<std::byte>& m_pixels;
    std::size_t m_at = 0;
    std::size_t m_x = 0;
    std::size_t m_y = 0;
};

} // namespace

bool UnpackRuns(bitmap_picture& picture)
{
    const std::size_t stride = (static_cast<std::size_t>(picture.width) + 3) / 4 * 4;
    if (stride * static_cast<uint64_t>(picture.height) > most_pixels)
        return false;
    std::vector<std::byte> pixels(stride * static_cast<std::size_t>(picture.height));
    unpacker(picture, stride, pixels).Run();
    picture.unpacked = std::move(pixels);
    picture.pixels = picture.unpacked;
    picture.bits = 8;
    picture.compression = bitmap_plain;
    return true;
}

} // namespace vh
