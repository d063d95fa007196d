#include "kept_host.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <vector>

#include <windows.h>

#include "engine/files.h"
#include "engine/machine_folder.h"
#include "scriptdata/unique.h"
#include "text.h"

namespace host {

namespace {

using vh::engine::FactsOf;
using vh::engine::FileFacts;
using vh::engine::JoinPath;
using vh::engine::LiesIn;

constexpr const wchar_t* replaced_ending = L".old";

std::wstring HostFolder(const std::wstring& data_folder) { return JoinPath(data_folder, L"host"); }

// One setup at a time looks after the kept host.
class Turn {
public:
    Turn() : m_mutex(CreateMutexW(nullptr, FALSE, L"Local\\VHSetup.Host"))
    {
        WaitForSingleObject(m_mutex.get(), INFINITE);
    }
    ~Turn() { ReleaseMutex(m_mutex.get()); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

private:
    vh::unique_handle m_mutex;
};

// A library that is there in one folder but not, or with another size, in the other.
bool AnyLibraryDiffers(const std::wstring& from, const std::wstring& folder)
{
    return std::ranges::any_of(kept_libraries, [&](const wchar_t* name) {
        const FileFacts given = FactsOf(JoinPath(from, name));
        return given.file() && given.size != FactsOf(JoinPath(folder, name)).size;
    });
}

// A higher version, or another build of the same; or the same, and what is kept is not whole.
bool IsNewer(const std::wstring& from, const std::wstring& folder)
{
    const std::wstring ours = JoinPath(from, kept_program);
    const std::wstring kept = JoinPath(folder, kept_program);
    const FileFacts there = FactsOf(kept);
    if (!there.exists())
        return true;
    const int step = vh::engine::CompareVersions(vh::engine::FileVersion(ours), vh::engine::FileVersion(kept));
    const FileFacts given = FactsOf(ours);
    return step > 0 ||
           (step == 0 && (given.time > there.time || given.size != there.size || AnyLibraryDiffers(from, folder)));
}

// A program that runs can be renamed, but not written; the old one goes with the next setup or with the host.
void Replace(const std::wstring& from, const std::wstring& to)
{
    const std::wstring fresh = to + L".new";
    const std::wstring old = to + replaced_ending;
    DeleteFileW(LongPath(old).c_str());
    if (!CopyFileW(LongPath(from).c_str(), LongPath(fresh).c_str(), FALSE) ||
        (!MoveFileExW(LongPath(fresh).c_str(), LongPath(to).c_str(), MOVEFILE_REPLACE_EXISTING) &&
         (!MoveFileExW(LongPath(to).c_str(), LongPath(old).c_str(), MOVEFILE_REPLACE_EXISTING) ||
          !MoveFileExW(LongPath(fresh).c_str(), LongPath(to).c_str(), 0)))) {
        const DWORD code = GetLastError();
        DeleteFileW(LongPath(fresh).c_str());
        throw std::runtime_error(Utf8(to + L": can't keep the host for the removal: " + SystemText(code)));
    }
}

// Logs are there from the start of a setup to its end, and as long as a product is installed.
bool IsNeeded(const std::wstring& data_folder)
{
    const auto entries = vh::engine::ListFolder(data_folder, L"{*}");
    return std::ranges::any_of(entries, [&](const vh::engine::Entry& entry) {
        return FactsOf(JoinPath(JoinPath(data_folder, entry.name), L"install.log")).file();
    });
}

// Only files that were put there.
void RemoveHost(const std::wstring& data_folder)
{
    const std::wstring folder = HostFolder(data_folder);
    // The program goes first: as long as it is there, it stands for all.
    std::vector<std::wstring> names{kept_program};
    names.insert(names.end(), std::begin(kept_libraries), std::end(kept_libraries));
    for (const std::wstring& name : names)
        for (const wchar_t* ending : {L"", replaced_ending})
            vh::engine::RemoveFile(JoinPath(folder, name) + ending);
    RemoveDirectoryW(LongPath(folder).c_str());
    RemoveDirectoryW(LongPath(data_folder).c_str());
}

// The copy is deleted by the system when the last handle to it is closed, which is when it has ended. Nobody else
// writes it, and nobody exchanges it before it runs.
void StartSweeper(const std::wstring& data_folder)
{
    constexpr uint64_t largest_program = 1 << 28;
    const std::wstring copy = JoinPath(vh::engine::TempFolder(), L"VHSetup" + vh::engine::NewIdentifier() + L".exe");
    const std::string program = vh::engine::ReadWhole(ProgramFile(), largest_program);
    vh::unique_file writer = vh::engine::MakePrivateFile(copy);
    DWORD written = 0;
    if (!writer || !WriteFile(writer.get(), program.data(), static_cast<DWORD>(program.size()), &written, nullptr))
        return;
    writer.reset();
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const vh::unique_file life(CreateFileW(LongPath(copy).c_str(), GENERIC_READ, FILE_SHARE_READ, &inherited,
                                           OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    if (life && vh::engine::HasMachineRights())
        vh::engine::RequireTrusted(copy, life.get());
    std::wstring line =
        Quoted(copy) + L" --sweep " + Quoted(data_folder) + L" --after " + std::to_wstring(GetCurrentProcessId());
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(copy.c_str(), line.data(), nullptr, nullptr, TRUE, DETACHED_PROCESS, nullptr,
                        vh::engine::TempFolder().c_str(), &startup, &process))
        return;
    const vh::unique_handle thread(process.hThread);
    const vh::unique_handle started(process.hProcess);
}

} // namespace

void KeepHost(const std::wstring& data_folder, const std::wstring& from)
{
    const Turn turn;
    const std::wstring folder = HostFolder(data_folder);
    if (LiesIn(from, folder) || !IsNewer(from, folder))
        return;
    try {
        vh::engine::MakeFolders(folder);
    } catch (const vh::engine::engine_error& error) {
        throw std::runtime_error(error.what());
    }
    for (const wchar_t* name : kept_libraries)
        if (const std::wstring library = JoinPath(from, name); FactsOf(library).file())
            Replace(library, JoinPath(folder, name));
    // The program comes last: it stands for all.
    Replace(JoinPath(from, kept_program), JoinPath(folder, kept_program));
}

void SweepHost(const std::wstring& data_folder)
{
    const Turn turn;
    if (IsNeeded(data_folder))
        return;
    if (!FactsOf(HostFolder(data_folder)).folder())
        RemoveDirectoryW(LongPath(data_folder).c_str());
    else if (LiesIn(ProgramFolder(), HostFolder(data_folder)))
        StartSweeper(data_folder);
    else
        RemoveHost(data_folder);
}

void SweepAfter(const std::wstring& data_folder, unsigned long process)
{
    constexpr DWORD longest_wait = 60'000;
    if (const vh::unique_handle parent(OpenProcess(SYNCHRONIZE, FALSE, process)); parent)
        WaitForSingleObject(parent.get(), longest_wait);
    const Turn turn;
    if (!IsNeeded(data_folder))
        RemoveHost(data_folder);
}

vh::engine::ProgramEntry EntryFor(const std::wstring& data_folder, bool told, const std::wstring& guid)
{
    const std::wstring program = Quoted(JoinPath(HostFolder(data_folder), kept_program));
    const std::wstring data = told ? L" --data " + Quoted(data_folder) : std::wstring();
    const std::wstring uninstall = program + L" --uninstall " + guid + data;
    return {uninstall, uninstall + L" --silent", program + L" --modify " + guid + data};
}
} // namespace host
