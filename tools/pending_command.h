// vhtool pending and vhtool remove-tree: file operations that are put off, and the removal of folders.
#pragma once

#include <string>

namespace tools {

// One line for each operation, source and target with a tab between them; or one JSON array. A target names the one
// operation whose source is printed.
int ListPending(const std::wstring& target, bool json);
// An empty target stands for the deletion of the source. `at_reboot`: for the next start of the system instead of
// `pending apply`.
int RecordPending(const std::wstring& source, const std::wstring& target, bool at_reboot);
int ApplyPending();
int ClearPending();

// Throws std::runtime_error that names what could not be removed.
int RemoveFolder(const std::wstring& path, bool ignore_file_failure);
// The top of a drive or a share, which is no folder to remove.
bool IsRoot(const std::wstring& path);

} // namespace tools
