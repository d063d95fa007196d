// Whole installations by the embedded engine, against a bare program that makes the same files and log.
#include <filesystem>

#include <windows.h>

#include <psapi.h>

#include "../engine/engine.h"
#include "../engine/files.h"
#include "../tests/support/temp_folder.h"
#include "areas.h"

namespace bench {

namespace {

using namespace vh::engine;

constexpr DWORD block_size = 256 * 1024;
constexpr long files_in_folder = 100;

struct shape {
    long files;
    std::size_t size;
};

// A setup folder with its payload, and a place to install to.
class product {
public:
    product(const vh::test::TempFolder& folder, shape of)
        : m_root(folder / std::to_wstring(of.files)), m_files(of.files)
    {
        std::filesystem::create_directories(Setup());
        std::string content(of.size, 'x');
        for (long i = 0; i < of.files; ++i) {
            // No two files are the same.
            content.replace(0, std::min(content.size(), sizeof i), reinterpret_cast<const char*>(&i),
                            std::min(content.size(), sizeof i));
            const std::wstring name = Name(i);
            std::filesystem::create_directories(std::filesystem::path(JoinPath(Setup(), name)).parent_path());
            WriteWhole(JoinPath(Setup(), name), content);
            m_names.push_back(name);
        }
        WriteWhole(JoinPath(Setup(), L"product.json"),
                   R"({"format": 1, "name": "Bench", "version": "1", "guid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D77}",
                    "payload": "p", "features": [{"name": "F", "files": [{"name": "g", "files":
                    [{"path": "*", "recurse": true}]}]}]})");
    }

    long files() const { return m_files; }
    std::wstring Setup() const { return m_root + L"\\setup"; }
    std::wstring Target() const { return m_root + L"\\target"; }
    std::wstring Data() const { return m_root + L"\\data"; }
    const std::vector<std::wstring>& names() const { return m_names; }

    void Clear() const
    {
        std::filesystem::remove_all(Target());
        std::filesystem::remove_all(Data());
    }
    // One run of the engine. Result: the most private memory that it had at a time, in bytes, above what was there.
    std::size_t Run() const
    {
        Options options;
        options.setupFolder = Setup();
        options.targetDir = Target();
        options.dataDir = Data();
        const std::size_t before = Memory();
        std::size_t most = 0;
        options.onProgress = [&](const Progress& progress) {
            if (progress.done == progress.total)
                most = Memory();
            return true;
        };
        const auto engine = Engine::Open(std::move(options));
        const auto features = engine->Host().query<ISetupFeatureHost>();
        if (FAILED(features->Move(nullptr)))
            throw std::runtime_error("the bench's product can't be installed");
        engine->Commit();
        most = std::max(most, Memory());
        return most > before ? most - before : 0;
    }
    std::string Log() const
    {
        return ReadWhole(JoinPath(Data(), L"{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D77}\\install.log"), 1u << 30);
    }

private:
    static std::size_t Memory()
    {
        PROCESS_MEMORY_COUNTERS_EX counters{};
        GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                             sizeof counters);
        return counters.PrivateUsage;
    }
    static std::wstring Name(long i)
    {
        return L"p\\" + std::to_wstring(i / files_in_folder) + L"\\file" + std::to_wstring(i) + L".bin";
    }

    std::wstring m_root;
    long m_files;
    std::vector<std::wstring> m_names;
};

vh::unique_file Open(const std::wstring& path, DWORD access, DWORD disposition)
{
    return vh::unique_file(
        CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, disposition, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

// Folders, copies under another name, times, the exchange of names, and the bytes of the log, written for each 64 files
// and flushed at the end.
void InstallBare(const product& p, const std::string& log)
{
    const auto block = std::make_unique<char[]>(block_size);
    std::filesystem::create_directories(p.Data());
    const auto journal = Open(JoinPath(p.Data(), L"bare.log"), GENERIC_WRITE, CREATE_ALWAYS);
    const long batches = (p.files() + 63) / 64;
    const std::size_t part = log.size() / static_cast<std::size_t>(batches) + 1;
    std::size_t logged = 0;
    DWORD count = 0;
    for (long i = 0; i < p.files(); ++i) {
        if (i % 64 == 0) {
            const std::size_t size = std::min(part, log.size() - logged);
            WriteFile(journal.get(), log.data() + logged, static_cast<DWORD>(size), &count, nullptr);
            logged += size;
        }
        const std::wstring& name = p.names()[static_cast<std::size_t>(i)];
        const std::wstring target = JoinPath(p.Target(), name.substr(2));
        if (i % files_in_folder == 0)
            std::filesystem::create_directories(std::filesystem::path(target).parent_path());
        const auto from = Open(JoinPath(p.Setup(), name), GENERIC_READ, OPEN_EXISTING);
        const std::wstring draft = target + L".new";
        {
            const auto to = Open(draft, GENERIC_WRITE, CREATE_NEW);
            while (ReadFile(from.get(), block.get(), block_size, &count, nullptr) && count)
                WriteFile(to.get(), block.get(), count, &count, nullptr);
            FILETIME written{};
            GetFileTime(from.get(), nullptr, nullptr, &written);
            SetFileTime(to.get(), nullptr, nullptr, &written);
        }
        MoveFileExW(draft.c_str(), target.c_str(), 0);
    }
    FlushFileBuffers(journal.get());
}

// Looks at the size and time of every file.
void Walk(const std::wstring& folder)
{
    uint64_t sum = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            sum += entry.file_size() + static_cast<uint64_t>(entry.last_write_time().time_since_epoch().count());
    Keep(sum);
}

work Installs(const product& p, int rounds)
{
    return {[&p](long) { p.Run(); }, [&p] { p.Clear(); }, {}, p.files(), rounds};
}

void Compare(suite& s, const std::string& name, double goal, const product& p, int rounds)
{
    p.Clear();
    p.Run();
    const std::string log = p.Log();
    s.Compare(name, goal, Installs(p, rounds),
              {[&p, log](long) { InstallBare(p, log); }, [&p] { p.Clear(); }, {}, p.files(), rounds});
}

} // namespace

void Setups(suite& s)
{
    const vh::test::TempFolder folder;
    const bool quick = s.quick();
    const product few(folder, {quick ? 200 : 2000, 4096});
    const product many(folder, {quick ? 2000 : 20000, 1024});
    Compare(s, "2,000 files of 4 KB", 1.3, few, 5);
    Compare(s, "20,000 files of 1 KB", 1.3, many, 3);
    s.Compare("20,000 files to 2,000, for each", 1.2, Installs(many, 3), Installs(few, 3));
    many.Clear();
    s.AtMost("MB of memory for 20,000 files", 40, static_cast<long>(many.Run() >> 20));
    s.Compare("a run with nothing to do, to a walk", 1.5, {[&](long) { many.Run(); }, {}, {}, many.files(), 3},
              {[&](long) {
                   Walk(many.Setup());
                   Walk(many.Target());
               },
               {},
               {},
               many.files(),
               3});
    const product one(folder, {1, quick ? std::size_t{1} << 24 : std::size_t{1} << 30});
    Compare(s, "one file of 1 GB", 1.1, one, 3);
}

} // namespace bench
