#include "logged_folders.h"

namespace vh::engine {

LogRecord FolderRecord(const std::wstring& folder, const std::wstring& feature, bool loose)
{
    LogRecord record;
    record.kind = LogKind::folder;
    record.what = folder;
    record.feature = feature;
    record.loose = loose;
    return record;
}

void MakeOneFolder(const Core& core, const std::wstring& folder, const std::wstring& feature)
{
    if (!core.log->IsDraft())
        MakeFolder(folder);
    core.log->Tell({Act::add, Why::fresh, L"folder", folder, feature});
}

void MakeLoggedFolders(Core& core, const std::wstring& path, bool logged)
{
    std::vector<std::wstring> missing = MissingFolders(path);
    std::erase_if(missing, [&](const std::wstring& folder) { return core.log->Makes(folder); });
    for (std::wstring folder = path; logged && !folder.empty(); folder = FolderOf(folder))
        core.log->Want(folder);
    std::vector<LogRecord> records;
    for (const std::wstring& folder : missing)
        records.push_back(FolderRecord(folder, {}, false));
    if (logged && !records.empty())
        core.log->Append(std::move(records));
    for (const std::wstring& folder : missing)
        MakeOneFolder(core, folder, {});
}

} // namespace vh::engine
