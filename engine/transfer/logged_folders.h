// Folders that a run makes, each one recorded before.
#pragma once

#include "../core.h"

namespace vh::engine {

LogRecord FolderRecord(const std::wstring& folder, const std::wstring& feature, bool loose);
// The step of such a record.
void MakeOneFolder(const Core& core, const std::wstring& folder, const std::wstring& feature);
// Makes the missing folders of a path; those that are not logged stay also after a failure.
void MakeLoggedFolders(Core& core, const std::wstring& path, bool logged);

} // namespace vh::engine
