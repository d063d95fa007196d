// One frame of a picture file, read as the library reads it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "pictures/formats/gif_header.h"
#include "pictures/setup_image.h"

namespace tools {

class PictureSource {
public:
    // Throws std::runtime_error for a file that can't be read; what is wrong with its content is in `result`.
    PictureSource(const std::wstring& file, unsigned frame);

    std::string format; // "gif", "bmp", "wmf", that of GDI+, or "unknown"
    // The decoder's code, 0 for a frame that is there.
    uint32_t result = 0;
    SIZE size{};
    uint32_t colors = 0; // of the table in force
    std::optional<uint8_t> transparent;
    uint32_t frames = 0;

    // The frame as it is drawn. False when the system can't hold it.
    bool Load(SetupImage& image) const;
    // The bytes that tell what the frame shows: a byte for each pixel of a GIF, else red, green, blue on white.
    std::string Pixels() const;

private:
    void ReadGif(unsigned frame);
    void ReadBitmap(unsigned frame);
    void ReadMetafile(unsigned frame);
    void ReadByGdiplus(unsigned frame);
    bool IsOnly(unsigned frame);

    std::wstring m_file;
    std::vector<std::byte> m_bytes;
    CGifHeader m_gif;
    const vh::gif_record* m_header = nullptr;
    const vh::gif_record* m_image = nullptr;
    vh::bitmap_picture m_bitmap;
};

} // namespace tools
