// How a picture of a skin is read: by the extension of its name.
#pragma once

#include <span>
#include <string_view>

#include "../pictures/setup_image.h"

namespace vh {

enum class skin_picture_kind { none, gif, bitmap };
skin_picture_kind KindOfSkinPicture(std::string_view name);

// False for another extension, and for bytes that are no picture of the kind.
bool LoadSkinPicture(SetupImage& picture, std::string_view name, std::span<const std::byte> bytes);

} // namespace vh
