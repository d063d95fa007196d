// vhtool picture: what a picture file holds, and how the library draws it.
#pragma once

#include <string>

#include "pictures/setup_image.h"

namespace tools {

struct DrawingOptions {
    // Tokens between commas.
    std::string text;
    // Of the sheet; nothing means the picture's own size.
    SIZE size{};
    unsigned frame = 0;
};

// One JSON object about a frame.
int PrintPictureInfo(const std::wstring& file, unsigned frame);
// A .bmp or .png file that shows the picture on a white sheet.
int DrawPicture(const std::wstring& file, const std::wstring& output, const DrawingOptions& options);

// "640x480"; false for anything else, and for sizes beyond what a sheet can have.
bool ReadSize(const std::string& text, SIZE& size);
bool IsPictureOutput(const std::string& path);
// The first of the tokens between commas that names no option; empty when all do.
std::string UnknownOption(std::string_view text);

} // namespace tools
