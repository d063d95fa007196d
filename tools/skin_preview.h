// Pictures of a skin: a dialog with each kind of control, skinned as the library does it.
#pragma once

#include <cstdint>
#include <string>

#include "skin_source.h"

namespace tools {

struct PreviewOptions {
    // Of the dialog; without it each section of the skin is shown.
    std::string section;
    uint16_t language = 0;
};

// A PNG for each section into the folder, which is made. False when the library does not load the skin. Throws
// std::runtime_error for a file that can't be written.
bool PreviewSkin(const SkinSource& skin, const std::wstring& folder, const PreviewOptions& options);

} // namespace tools
