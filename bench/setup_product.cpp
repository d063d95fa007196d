#include "setup_product.h"

#include <algorithm>
#include <filesystem>
#include <memory>

#include <windows.h>

#include <psapi.h>

#include "../engine/engine.h"
#include "../engine/files.h"
#include "../engine/sha256.h"
#include "harness.h"
#include "modules.h"

namespace bench {

using namespace vh::engine;

namespace {

constexpr DWORD block_size = 256 * 1024;
constexpr long files_in_folder = 100;
constexpr long files_in_batch = 64;
constexpr const wchar_t* registry_key = L"Software\\VHRT bench";

void Require(bool done, const wchar_t* what)
{
    if (!done)
        ThrowFileError(what, GetLastError());
}

vh::unique_file Open(const std::wstring& path, DWORD access, DWORD disposition)
{
    vh::unique_file file(
        CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, disposition, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    Require(static_cast<bool>(file), path.c_str());
    return file;
}

std::wstring NameOf(long i)
{
    return L"p\\" + std::to_wstring(i / files_in_folder) + L"\\file" + std::to_wstring(i) + L".bin";
}

// No two files are the same.
void WriteNumbered(const std::wstring& path, long number, std::size_t size)
{
    std::string block(std::min<std::size_t>(size, block_size), 'x');
    const std::string digits = std::to_string(number);
    block.replace(0, digits.size(), digits);
    const auto file = Open(path, GENERIC_WRITE, CREATE_NEW);
    for (std::size_t left = size; left;) {
        DWORD count = 0;
        Require(WriteFile(file.get(), block.data(), static_cast<DWORD>(std::min(left, block.size())), &count, nullptr),
                path.c_str());
        left -= count;
    }
}

PROCESS_MEMORY_COUNTERS_EX MemoryOf(HANDLE process)
{
    PROCESS_MEMORY_COUNTERS_EX counters{};
    GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters), sizeof counters);
    return counters;
}

uint64_t SumOfFacts(const std::wstring& folder)
{
    uint64_t sum = 0;
    WIN32_FIND_DATAW found{};
    const vh::unique_find search(FindFirstFileW((folder + L"\\*").c_str(), &found));
    while (search && FindNextFileW(search.get(), &found)) {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
            sum += found.nFileSizeLow + found.ftLastWriteTime.dwLowDateTime;
        else if (found.cFileName[0] != L'.')
            sum += SumOfFacts(folder + L"\\" + found.cFileName);
    }
    return sum;
}

} // namespace

product::product(const std::wstring& folder, shape of) : m_root(folder), m_files(of.files)
{
    for (long i = 0; i < of.files; ++i) {
        m_names.push_back(NameOf(i));
        const std::wstring path = JoinPath(Setup(), m_names.back());
        if (i % files_in_folder == 0)
            std::filesystem::create_directories(FolderOf(path));
        WriteNumbered(path, i, of.size);
    }
    WriteWhole(JoinPath(Setup(), L"product.json"),
               R"({"format": 1, "name": "Bench", "version": "1", "guid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D77}",
                "payload": "p", "features": [{"name": "F", "files": [{"name": "g", "files":
                [{"path": "*", "recurse": true}]}]}]})");
    WriteWhole(JoinPath(Setup(), L"setup.js"), "if (ComponentMoveData('DATA', 0) < 0) throw new Error('not moved');");
}

void product::Clear() const
{
    RemoveTree(Target());
    RemoveTree(Data());
}

void product::Run() const
{
    Options options;
    options.setupFolder = Setup();
    options.targetDir = Target();
    options.dataDir = Data();
    const auto engine = Engine::Open(std::move(options));
    if (FAILED(engine->Host().query<ISetupFeatureHost>()->Move(nullptr)))
        throw std::runtime_error("the bench's product can't be installed");
    engine->Commit();
}

product::memory product::RunHost() const
{
    std::wstring line = L"\"" + ProgramFolder() + L"vhhost.exe\" \"" + Setup() + L"\" --silent --target \"" + Target() +
                        L"\" --data \"" + Data() + L"\" --registry-root \"HKCU\\" + registry_key + L"\"";
    RegCreateKeyExW(HKEY_CURRENT_USER, registry_key, 0, nullptr, 0, KEY_WRITE, nullptr, vh::unique_key().put(),
                    nullptr);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    Require(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr, &start,
                           &started),
            L"vhhost.exe");
    const vh::unique_handle process(started.hProcess), thread(started.hThread);
    memory most{};
    // An ended process tells nothing any more.
    do {
        const auto now = MemoryOf(process.get());
        most.working = std::max(most.working, now.PeakWorkingSetSize);
        most.of_its_own = std::max({most.of_its_own, now.PeakPagefileUsage, now.PrivateUsage});
    } while (WaitForSingleObject(process.get(), 10) == WAIT_TIMEOUT);
    DWORD code = 1;
    GetExitCodeProcess(process.get(), &code);
    RegDeleteTreeW(HKEY_CURRENT_USER, registry_key);
    if (code != 0)
        throw std::runtime_error("vhhost can't install the bench's product");
    return most;
}

std::string product::Log() const
{
    return ReadWhole(JoinPath(Data(), L"{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D77}\\install.log"), 1u << 30);
}

void product::CopyBare(const std::wstring& name, char* block) const
{
    const std::wstring target = JoinPath(Target(), name.substr(2));
    const std::wstring draft = target + L".new";
    const auto from = Open(JoinPath(Setup(), name), GENERIC_READ, OPEN_EXISTING);
    {
        const auto to = Open(draft, GENERIC_WRITE, CREATE_NEW);
        DWORD count = 0;
        while (ReadFile(from.get(), block, block_size, &count, nullptr) && count)
            Require(WriteFile(to.get(), block, count, &count, nullptr), draft.c_str());
        FILETIME written{};
        GetFileTime(from.get(), nullptr, nullptr, &written);
        SetFileTime(to.get(), nullptr, nullptr, &written);
    }
    Require(MoveFileExW(draft.c_str(), target.c_str(), 0), target.c_str());
}

void product::InstallBare(const std::string& log) const
{
    const auto block = std::make_unique<char[]>(block_size);
    std::filesystem::create_directories(Data());
    const auto journal = Open(JoinPath(Data(), L"bare.log"), GENERIC_WRITE, CREATE_ALWAYS);
    const long batches = (m_files + files_in_batch - 1) / files_in_batch;
    const std::size_t part = log.size() / static_cast<std::size_t>(batches) + 1;
    std::size_t logged = 0;
    for (long i = 0; i < m_files; ++i) {
        if (i % files_in_batch == 0) {
            DWORD count = 0;
            WriteFile(journal.get(), log.data() + logged, static_cast<DWORD>(std::min(part, log.size() - logged)),
                      &count, nullptr);
            logged += count;
        }
        const std::wstring& name = m_names[static_cast<std::size_t>(i)];
        if (i % files_in_folder == 0)
            std::filesystem::create_directories(JoinPath(Target(), FolderOf(name.substr(2))));
        CopyBare(name, block.get());
    }
    Require(FlushFileBuffers(journal.get()), L"bare.log");
}

void product::Walk() const { Keep(SumOfFacts(Setup()) + SumOfFacts(Target())); }

void HashBare(std::size_t size)
{
    const std::vector<std::byte> block(std::min<std::size_t>(size, block_size));
    Sha256 hash;
    for (std::size_t left = size; left; left -= std::min(left, block.size()))
        hash.Add({block.data(), std::min(left, block.size())});
    Keep(hash.Finish());
}

} // namespace bench
