// A white sheet in memory that pictures are drawn on, and the files that show it.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "pictures/setup_image.h"

namespace tools {

class PictureSheet {
public:
    // Throws std::runtime_error when there is no memory for it.
    explicit PictureSheet(SIZE size);

    HDC context() const { return m_context->get(); }
    SIZE size() const { return m_size; }
    // Red, green, blue, rows top first without padding.
    std::string Pixels() const;

private:
    SIZE m_size;
    vh::unique_bitmap m_bitmap;
    const DWORD* m_pixels = nullptr;
    std::unique_ptr<vh::bitmap_context> m_context;
};

std::string BitmapOf(const PictureSheet& sheet);
// Without compression.
std::string PngOf(const PictureSheet& sheet);

} // namespace tools
