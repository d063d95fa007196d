// What scripts ask about the file groups of an item and their files.
#pragma once

#include "../object.h"

namespace vh::engine {

// Null when there is none; a null group is "no such item" below.
const FileGroup* FindGroup(const Item& item, std::wstring_view name);
// Every file of the item as "group\path".
std::vector<std::wstring> FilesOf(const Item& item);
// Files of a group by their paths; those in folders below only on demand.
std::vector<std::wstring> FilesIn(const FileGroup& group, bool foldersToo);

// The information of a code, about a file or, with an empty file name, about the group.
HRESULT GiveFileInfo(const Core& core, const Item& item, const FileGroup* group, std::wstring_view file, long code,
                     VARIANT* value);

} // namespace vh::engine
