// vhtool skin: packs, unpacks, lists, checks and shows skins.
#pragma once

#include <string>

#include "skin_preview.h"

namespace tools {

int PackSkin(const std::wstring& folder, const std::wstring& file);
int UnpackSkin(const std::wstring& file, const std::wstring& folder, bool overwrite);
// Name and bytes of each entry; of pictures width x height.
int ListSkin(const std::wstring& file);
int CheckSkinFiles(const std::wstring& path);
int ShowSkin(const std::wstring& path, const std::wstring& folder, const PreviewOptions& options);

} // namespace tools
