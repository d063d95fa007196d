#include "skin_picture.h"

#include <algorithm>

namespace vh {

namespace {

bool HasExtension(std::string_view name, std::string_view wanted)
{
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || name.size() - dot != wanted.size())
        return false;
    return std::equal(wanted.begin(), wanted.end(), name.begin() + static_cast<std::ptrdiff_t>(dot),
                      [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

} // namespace

skin_picture_kind KindOfSkinPicture(std::string_view name)
{
    return HasExtension(name, ".gif")   ? skin_picture_kind::gif
           : HasExtension(name, ".bmp") ? skin_picture_kind::bitmap
                                        : skin_picture_kind::none;
}

bool LoadSkinPicture(SetupImage& picture, std::string_view name, std::span<const std::byte> bytes)
{
    const skin_picture_kind kind = KindOfSkinPicture(name);
    if (kind == skin_picture_kind::gif)
        return picture.LoadGif(bytes);
    bitmap_picture bitmap;
    return kind == skin_picture_kind::bitmap && ReadBitmapFile(bytes, bitmap) == picture_done &&
           picture.LoadBitmap(bitmap);
}

} // namespace vh
