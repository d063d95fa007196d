#include "file_writer.h"

#include <memory>

namespace vh::engine {

namespace {

constexpr DWORD block_size = 256 * 1024;
constexpr DWORD kept_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

// Removes the temporary file unless it got its final name.
class TempFile {
public:
    explicit TempFile(std::wstring path) : m_path(std::move(path)) {}
    ~TempFile()
    {
        if (!m_done)
            RemoveFile(m_path);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    void Done() { m_done = true; }

private:
    std::wstring m_path;
    bool m_done = false;
};

void CopyContent(const FileToWrite& file, const std::wstring& temp, const std::function<void(uint64_t)>& advance)
{
    const unique_file source(CreateFileW(LongPath(file.source).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                         OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!source)
        ThrowFileError(file.source, L"can't read the payload", GetLastError());
    const unique_file target(
        CreateFileW(LongPath(temp).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!target)
        ThrowFileError(file.target, L"can't write the file", GetLastError());
    const auto block = std::make_unique<std::byte[]>(block_size);
    uint64_t copied = 0;
    DWORD got = 0;
    do {
        if (!ReadFile(source.get(), block.get(), block_size, &got, nullptr))
            ThrowFileError(file.source, L"can't read the payload", GetLastError());
        DWORD put = 0;
        if (got && (!WriteFile(target.get(), block.get(), got, &put, nullptr) || put != got))
            ThrowFileError(file.target, L"can't write the file", put == got ? GetLastError() : ERROR_DISK_FULL);
        copied += got;
        advance(got);
    } while (got);
    if (copied != file.size)
        throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_INVALID), file.source,
                           L"the payload changed during the setup");
    const FILETIME time{static_cast<DWORD>(file.time & 0xFFFFFFFF), static_cast<DWORD>(file.time >> 32)};
    if (!SetFileTime(target.get(), nullptr, nullptr, &time))
        ThrowFileError(file.target, L"can't set the file's time", GetLastError());
}

void Rename(const std::wstring& from, const std::wstring& to, const std::wstring& about, const wchar_t* doing)
{
    if (!MoveFileExW(LongPath(from).c_str(), LongPath(to).c_str(), 0))
        ThrowFileError(about, doing, GetLastError());
}

// Both have a version, and the present one is higher.
bool IsNewer(const std::wstring& present, const FileToWrite& file)
{
    const std::wstring there = FileVersion(present);
    if (there.empty())
        return false;
    const std::wstring given = file.version.empty() ? FileVersion(file.source) : file.version;
    return !given.empty() && CompareVersions(there, given) > 0;
}

Written Decide(const Core& core, const FileToWrite& file, const FileFacts& there)
{
    if (there.folder())
        throw engine_error(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), file.target,
                           L"a folder stands in the file's place");
    if (there.size == file.size && there.time == file.time)
        return Written::same;
    if (file.flags & file_never_overwrite)
        return Written::stays;
    if (!(file.flags & file_always_overwrite) && IsNewer(file.target, file))
        return Written::newer_stays;
    if ((there.attributes & FILE_ATTRIBUTE_READONLY) && !IsOurs(core, file, there))
        throw engine_error(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), file.target, L"the file is read-only");
    return Written::written;
}

} // namespace

bool IsOurs(const Core& core, const FileToWrite& file, const FileFacts& facts)
{
    const LogRecord* record = core.log->Newest(file.kind, file.target);
    return record && record->size == facts.size && record->time == facts.time;
}

void LogFolder(Core& core, const std::wstring& folder, const std::wstring& feature)
{
    LogRecord record;
    record.kind = LogKind::folder;
    record.what = folder;
    record.feature = feature;
    core.log->Append(std::move(record));
}

Written WriteFileSafely(Core& core, const FileToWrite& file, bool logged, const std::function<void(uint64_t)>& advance)
{
    const FileFacts there = FactsOf(file.target);
    if (there.exists())
        if (const Written decision = Decide(core, file, there); decision != Written::written) {
            advance(file.size);
            return decision;
        }
    MakeFolders(FolderOf(file.target), [&](const std::wstring& folder) {
        if (logged)
            LogFolder(core, folder, file.feature);
    });

    LogRecord record;
    record.kind = file.kind;
    record.what = file.target;
    record.feature = file.feature;
    record.source = file.source;
    record.version = file.version;
    record.size = file.size;
    record.time = file.time;
    record.permanent = file.flags & file_permanent;
    record.oldData = ToHex(file.previous);
    const std::wstring mark = L".~vh" + Number(core.log->LastId() + 1);
    record.temp = file.target + mark + L"n";
    if (there.exists())
        record.backup = file.target + mark + L"o";
    const std::wstring temp = record.temp;
    const std::wstring backup = record.backup;
    if (logged)
        core.log->Append(std::move(record));

    TempFile unfinished(temp);
    CopyContent(file, temp, advance);
    if (!backup.empty())
        Rename(file.target, backup, file.target, L"can't replace the file");
    try {
        Rename(temp, file.target, file.target, L"can't write the file");
    } catch (...) {
        if (!backup.empty())
            MoveFileExW(LongPath(backup).c_str(), LongPath(file.target).c_str(), 0);
        throw;
    }
    unfinished.Done();
    if (file.attributes & kept_attributes)
        SetFileAttributesW(LongPath(file.target).c_str(), file.attributes & kept_attributes);
    if (!logged && !backup.empty())
        RemoveFile(backup);
    return Written::written;
}

} // namespace vh::engine
