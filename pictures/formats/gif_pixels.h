// The pixels of one image: a byte each, rows bottom first, as a device bitmap has them.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "gif_record.h"

namespace vh {

class gif_pixels {
public:
    // Decoding copies in pieces of so many bytes, and may read and write as far behind the end.
    static constexpr std::size_t slack = 16;

    static std::size_t StrideOf(std::size_t width) { return (width + 3) / 4 * 4; }

    // All zero, which costs nothing before a page is touched. False without memory.
    bool Allocate(const gif_place& place)
    {
        m_width = place.width;
        m_height = place.height;
        m_data.reset(static_cast<uint8_t*>(std::calloc(size() + slack, 1)));
        return m_data != nullptr;
    }
    void Clear() { *this = {}; }

    std::size_t width() const { return m_width; }
    std::size_t height() const { return m_height; }
    std::size_t stride() const { return StrideOf(m_width); }
    std::size_t size() const { return stride() * m_height; }
    const uint8_t* data() const { return m_data.get(); }
    // Counted from the top.
    uint8_t* Row(std::size_t row) { return m_data.get() + (m_height - 1 - row) * stride(); }

private:
    struct free_memory {
        void operator()(uint8_t* memory) const { std::free(memory); }
    };
    std::size_t m_width = 0;
    std::size_t m_height = 0;
    std::unique_ptr<uint8_t, free_memory> m_data;
};

} // namespace vh
