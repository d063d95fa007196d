// The install log as a journal: claims, damage, full disks, and the way back of every step.
#include <limits>

#include "../../engine/transfer/log_record.h"
#include "../support/replaced.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

// What the tests of this file have in common: files of the user's around the product.
class Journal : public OnTree {
protected:
    void SetUp() override
    {
        OnTree::SetUp();
        WriteText(folder.Target(L"c.bin"), "older");
        WriteText(folder.Target(L"bin\\mine.txt"), "mine");
        before = Tree(folder.Target());
    }
    void ExpectAsBefore(const std::string& where = {})
    {
        EXPECT_EQ(before, Tree(folder.Target())) << where;
        EXPECT_EQ("older", ReadWhole(folder.Target(L"c.bin"), 100)) << where;
        EXPECT_EQ("mine", ReadWhole(folder.Target(L"bin\\mine.txt"), 100)) << where;
    }
    std::wstring LogFile() const { return LogFileOf(folder.Setup(), folder.Data()); }
    // A run that saves a shortcut, noted in a log or not.
    void SaveShortcut(const std::wstring& path, const wchar_t* target, const com_ptr<ISetupLog>& log)
    {
        com_ptr<ISetupShortcut> shortcut;
        ASSERT_EQ(S_OK, ServiceOf<ISetupShell>(*engine)->NewItem(shortcut.put()));
        shortcut->SetTarget(bstr(target).get());
        variant name(path.c_str());
        ASSERT_EQ(S_OK, shortcut->Save(log.get(), &name.get())) << ToUtf8(LastReason(*engine));
        shortcut.reset();
        engine->Commit();
    }

    std::vector<std::wstring> before;
};

std::string Lines(const std::vector<LogRecord>& records)
{
    std::string lines;
    for (const LogRecord& record : records)
        lines += ToLine(record) + '\n';
    return lines;
}

// Writes to the log go half way and fail while this is set.
bool log_disk_is_full = false;

BOOL WINAPI WriteToFullDisk(HANDLE file, const void* bytes, DWORD size, DWORD* written, OVERLAPPED* overlapped)
{
    if (!log_disk_is_full || !size || *static_cast<const char*>(bytes) != '{')
        return OfSystem<decltype(WriteFile)>("WriteFile")(file, bytes, size, written, overlapped);
    OfSystem<decltype(WriteFile)>("WriteFile")(file, bytes, size / 2, written, overlapped);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

// How often the log went to the disk.
int log_flushes = 0;

BOOL WINAPI CountLogFlushes(HANDLE file)
{
    wchar_t name[MAX_PATH] = L"";
    GetFinalPathNameByHandleW(file, name, MAX_PATH, 0);
    log_flushes += std::wstring_view(name).ends_with(L".log");
    return OfSystem<decltype(FlushFileBuffers)>("FlushFileBuffers")(file);
}

// A file system that keeps even seconds, as FAT does.
BOOL WINAPI SetEvenTime(HANDLE file, const FILETIME* made, const FILETIME* read, const FILETIME* written)
{
    constexpr uint64_t unit = 20'000'000;
    const uint64_t exact = static_cast<uint64_t>(written->dwHighDateTime) << 32 | written->dwLowDateTime;
    const uint64_t even = exact / unit * unit;
    const FILETIME kept{static_cast<DWORD>(even & 0xFFFFFFFF), static_cast<DWORD>(even >> 32)};
    return OfSystem<decltype(SetFileTime)>("SetFileTime")(file, made, read, &kept);
}

} // namespace

TEST_F(Journal, BelongsToOneSetupAtATimeFromTheStart)
{
    for (const bool removal : {false, true})
        try {
            removal ? static_cast<void>(Uninstall(LogFile())) : static_cast<void>(folder.Open());
            ADD_FAILURE() << "two setups of one product";
        } catch (const engine_error& error) {
            EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION), error.code());
            const std::wstring& reason = error.message().reason;
            EXPECT_NE(std::wstring::npos, reason.find(L"another setup of this product is running"));
            EXPECT_NE(std::wstring::npos, reason.find(L"process " + Number(GetCurrentProcessId()) + L","));
        }
    Install();
    EXPECT_TRUE(folder.Open()->Maintenance());
}

TEST_F(Journal, OneChangedByteCostsNoMoreThanItsLine)
{
    const std::wstring log = Install();
    const std::string content = ReadWhole(log, 100'000);
    const auto installed = Tree(folder.Target());
    for (std::size_t place = 3; place < content.size(); place += content.size() / 40) {
        std::string damaged = content;
        damaged[place] = damaged[place] == 'x' ? 'y' : 'x';
        WriteText(log, damaged);
        {
            // A next run sees what is left, and commits nothing of its own.
            const auto again = folder.Open();
            EXPECT_TRUE(again->Maintenance()) << place;
            EXPECT_NE(std::wstring::npos, again->Messages().front().reason.find(L"is damaged")) << place;
        }
        EXPECT_EQ(installed, Tree(folder.Target())) << place;
        const auto removals = Uninstall(log);
        EXPECT_EQ(1, std::ranges::count(removals, RemovalOutcome::unreadable, &Removal::outcome)) << place;
        EXPECT_EQ("mine", ReadWhole(folder.Target(L"bin\\mine.txt"), 100));
        EXPECT_LE(Tree(folder.Target()).size(), 5u) << place << ": more than one record was lost";
        EXPECT_FALSE(Exists(log));
        for (const wchar_t* name : {L"a.bin", L"bin\\b.bin", L"c.bin", L"d.bin"})
            RemoveFile(folder.Target(name));
        WriteText(folder.Target(L"c.bin"), "older");
        Reopen();
        Install();
        WriteText(log, content);
    }
}

// A replaced file can't be had a second time: the record of where it lies is safe before it moves.
TEST_F(Journal, IsOnTheDiskBeforeAFileIsReplaced)
{
    const vh::test::Patched flushes("FlushFileBuffers", CountLogFlushes);
    static int at_replacement;
    at_replacement = -1;
    const vh::test::Patched moves(
        "MoveFileExW", +[](const wchar_t* from, const wchar_t* to, DWORD flags) WINAPI -> BOOL {
            if (std::wstring_view(from).ends_with(L"\\c.bin"))
                at_replacement = log_flushes;
            return OfSystem<decltype(MoveFileExW)>("MoveFileExW")(from, to, flags);
        });
    log_flushes = 0;
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_EQ(1, at_replacement);
    EXPECT_EQ(1, log_flushes) << "new files need none";
}

// A run that lost its end line to damage is over when the next one begins right behind it.
TEST_F(Journal, ADamagedEndOfAnEarlierRunIsItsEnd)
{
    const std::wstring log = Install();
    const std::string first = ReadWhole(log, 100'000);
    const std::size_t end = first.size(), start = first.rfind('{');
    Reopen();
    Feature(*engine, {L"Tools", L"Extra"})->SetSelected(0);
    Install();
    const auto installed = Tree(folder.Target());
    std::string content = ReadWhole(log, 100'000);
    content.erase(start, end - start);
    content[content.rfind('{', start - 2) + 3] ^= 1;
    WriteText(log, content);
    Reopen();
    EXPECT_EQ(installed, Tree(folder.Target()));
    EXPECT_EQ(0, Selected(*engine, {L"Tools", L"Extra"}));
}

TEST_F(Journal, AnEditorsMarksDoNoHarm)
{
    const std::wstring log = Install();
    std::string content = ReadWhole(log, 100'000);
    for (std::size_t end = 0; (end = content.find('\n', end)) != content.npos; end += 2)
        content.replace(end, 1, "\r\n");
    WriteText(log, content);
    SetFileAttributesW(log.c_str(), FILE_ATTRIBUTE_READONLY);
    Reopen();
    EXPECT_TRUE(engine->Messages().empty());
    EXPECT_EQ(4u, engine->Installed().size());
    engine.reset();
    Uninstall(log);
    ExpectAsBefore();
}

TEST_F(Journal, CutAnywhereLeavesTheUsersFilesAndANextRun)
{
    ASSERT_EQ(S_OK, MoveAll(*engine));
    const std::wstring log = engine->LogFile();
    engine.reset();
    ExpectAsBefore("rolled back");
    Reopen();
    Install();
    const std::string content = ReadWhole(log, 100'000);
    for (std::size_t size = 0; size < content.size(); size += content.size() / 40) {
        WriteText(log, content.substr(0, size));
        Reopen();
        Reopen();
        EXPECT_TRUE(engine->Messages().empty()) << size << ": a half record does not spoil the next one";
        engine.reset();
        EXPECT_EQ("mine", ReadWhole(folder.Target(L"bin\\mine.txt"), 100)) << size;
        if (Exists(log))
            Uninstall(log);
        for (const std::wstring& name : Tree(folder.Target()))
            EXPECT_EQ(std::wstring::npos, name.find(L".~vh")) << size;
        Reopen();
        Install();
    }
}

TEST_F(Journal, AFullDiskFailsTheRunAndNothingElse)
{
    const vh::test::Patched patch("WriteFile", WriteToFullDisk);
    log_disk_is_full = true;
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), MoveAll(*engine));
    log_disk_is_full = false;
    ExpectAsBefore("first record");
    // The disk fills up in the middle: the steps go back although nothing can be noted any more.
    ASSERT_EQ(S_OK, MoveAll(*engine));
    log_disk_is_full = true;
    const auto results = engine->Rollback();
    engine.reset();
    log_disk_is_full = false;
    EXPECT_FALSE(AnyFailed(results));
    EXPECT_EQ(4u, CountDone(results));
    ExpectAsBefore("rollback");
    Reopen();
    EXPECT_FALSE(engine->Maintenance());
    Install();
    EXPECT_EQ(std::string(30, 'c'), ReadWhole(folder.Target(L"c.bin"), 100));
}

TEST_F(Journal, AStepThatCantBeUndoneIsTriedAgainByTheNextRun)
{
    ASSERT_EQ(S_OK, MoveAll(*engine));
    {
        const unique_file held = Hold(folder.Target(L"c.bin"), FILE_SHARE_READ);
        const auto results = engine->Rollback();
        EXPECT_TRUE(AnyFailed(results));
        engine.reset();
        Reopen();
        EXPECT_NE(std::wstring::npos, engine->Messages().back().reason.find(L"tries again"));
    }
    Reopen();
    ExpectAsBefore();
    EXPECT_FALSE(engine->Maintenance());
    engine.reset();
    EXPECT_FALSE(Exists(LogFile()));
}

TEST_F(Journal, TheOriginalOfAStepThatCouldNotBeUndoneComesBackAtRemoval)
{
    ASSERT_EQ(S_OK, MoveAll(*engine));
    {
        const unique_file held = Hold(folder.Target(L"c.bin"), FILE_SHARE_READ);
        engine->Rollback();
        Reopen();
        // The file is there and the same; this run makes it its own.
        Install();
        Reopen();
    }
    EXPECT_EQ(std::string(30, 'c'), ReadWhole(folder.Target(L"c.bin"), 100));
    engine.reset();
    Uninstall(LogFile());
    ExpectAsBefore();
}

// A removal that can't finish a killed run's rollback says so and keeps the record of what waits.
TEST_F(Journal, ARemovalForgetsNothingThatCouldNotBeUndone)
{
    const std::wstring path = folder.Target(L"one.lnk"), waiting = folder.Target(L".~vh123456789abc-1.old");
    WriteText(waiting, "user's");
    LogRecord taken;
    taken.kind = LogKind::taken;
    taken.id = taken.run = 1;
    taken.what = path;
    taken.backup = waiting;
    const std::wstring log = engine->LogFile();
    engine.reset();
    WriteText(log, Lines({taken}));
    WriteText(path, "somebody else's");
    EXPECT_EQ(1u, Uninstall(log).size());
    EXPECT_EQ("user's", ReadWhole(waiting, 100));
    RemoveFile(path);
    EXPECT_FALSE(AnyFailed(Uninstall(log)));
    EXPECT_EQ("user's", ReadWhole(path, 100));
    EXPECT_FALSE(Exists(log));
}

// Each destructive step of a maintenance run, and a rollback of all.
TEST_F(Journal, EveryStepOfAMaintenanceRunHasItsWayBack)
{
    Install();
    const auto installed = Tree(folder.Target());
    WriteText(folder.Target(L"read-only.txt"), "fixed");
    SetFileAttributesW(folder.Target(L"read-only.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    Reopen();
    folder.Payload(L"read-only.txt", "new");
    ASSERT_EQ(S_OK, Copy(*engine, L"read-only.txt", L"<TARGETDIR>\\", 0x4100));
    EXPECT_EQ("new", ReadWhole(folder.Target(L"read-only.txt"), 100));
    Feature(*engine, {L"Tools"})->SetSelected(0);
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_FALSE(Exists(folder.Target(L"bin\\b.bin")));
    ServiceOf<ISetupData>(*engine).query<ISetupDataEx>()->SetRemoveAllMode(VARIANT_TRUE);
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_FALSE(Exists(folder.Target(L"a.bin")));
    EXPECT_FALSE(AnyFailed(engine->Rollback()));
    EXPECT_EQ("fixed", ReadWhole(folder.Target(L"read-only.txt"), 100));
    EXPECT_TRUE(FactsOf(folder.Target(L"read-only.txt")).attributes & FILE_ATTRIBUTE_READONLY);
    RemoveFile(folder.Target(L"read-only.txt"));
    EXPECT_EQ(installed, Tree(folder.Target()));
    EXPECT_EQ(std::string(20, 'b'), ReadWhole(folder.Target(L"bin\\b.bin"), 100));
    Reopen();
    EXPECT_EQ(2, Selected(*engine, {L"Tools", L"Extra"}));
    engine.reset();
    Uninstall(LogFile());
    ExpectAsBefore();
}

TEST_F(Journal, AnUnloggedCopyComesBackWhenALaterFileOfItsJobFails)
{
    folder.Payload(L"set\\1.txt", "first");
    folder.Payload(L"set\\2.txt", "second");
    WriteText(folder.Target(L"1.txt"), "user's");
    MakeFolders(folder.Target(L"2.txt"));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), Copy(*engine, L"set\\*.txt", L"<TARGETDIR>", 0x100, true));
    EXPECT_EQ("user's", ReadWhole(folder.Target(L"1.txt"), 100));
}

TEST_F(Journal, FoldersStayOwnedUntilTheyAreGoneAndUnselectingIsRemembered)
{
    RemoveFile(folder.Target(L"bin\\mine.txt"));
    RemoveDirectoryW(folder.Target(L"bin").c_str());
    Install();
    Reopen();
    // The folder "bin" is not empty while a file of the user's is in it.
    WriteText(folder.Target(L"bin\\mine.txt"), "mine");
    Feature(*engine, {L"Tools"})->SetSelected(0);
    Install();
    EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\mine.txt", L"c.bin"}), Tree(folder.Target()));
    RemoveFile(folder.Target(L"bin\\mine.txt"));
    Reopen();
    EXPECT_EQ(0, Selected(*engine, {L"Tools", L"Help"}));
    engine.reset();
    Uninstall(LogFile());
    EXPECT_EQ((std::vector<std::wstring>{L"c.bin"}), Tree(folder.Target()));
}

// A later product file gives the target to another feature: it goes with that one, and no older record stays.
TEST_F(Journal, AFileGoesWithTheFeatureThatWroteItLast)
{
    for (const char* files : {R"(["a.bin"]}]}, {"name": "G")", R"(["c.bin"]}]}, {"name": "G", "files": [{"name": "g",
                              "files": [{"path": "b.bin", "name": "a.bin"}]}])"}) {
        folder.Product(R"("features": [{"name": "F", "files": [{"name": "g", "files": )" + std::string(files) + "}]");
        Reopen();
        engine->Host().query<ISetupFeatureHost>()->Reinstall(VARIANT_FALSE);
        Feature(*engine, {L"G"})->SetSelected(2);
        Install();
    }
    Reopen();
    Feature(*engine, {L"G"})->SetSelected(0);
    Install();
    Reopen();
    ASSERT_EQ(1u, engine->Installed().size());
    EXPECT_EQ(folder.Target(L"c.bin"), engine->Installed().front().target);
}

TEST_F(Journal, AShortcutOfTheUsersComesBackWithItsUnselectedFeature)
{
    const std::wstring path = folder.Target(L"menu\\one.lnk");
    SaveShortcut(path, L"C:\\of the user.exe", {});
    const std::string users = ReadWhole(path, 10'000);
    folder.Product(R"("features": [{"name": "F"}, {"name": "G"}], "shellObjects": [
        {"name": "one", "folder": "menu", "target": "C:\\a.exe", "feature": "F"}])");
    Options options = folder.Given();
    options.variables.emplace_back(L"PROGRAMS", folder.Target());
    Reopen(options);
    ASSERT_EQ(S_OK, ServiceOf<ISetupData>(*engine)->CreateShellObjects(ServiceOf<ISetupLog>(*engine).get()))
        << ToUtf8(LastReason(*engine));
    engine->Commit();
    const std::string ours = ReadWhole(path, 10'000);
    EXPECT_NE(users, ours);
    const auto installed = Tree(folder.Target());
    for (const bool commit : {false, true}) {
        Reopen(options);
        Feature(*engine, {L"F"})->SetSelected(0);
        ASSERT_EQ(S_OK, MoveAll(*engine));
        EXPECT_EQ(users, ReadWhole(path, 10'000));
        commit ? engine->Commit() : static_cast<void>(engine->Rollback());
        EXPECT_EQ(commit ? users : ours, ReadWhole(path, 10'000));
        EXPECT_EQ(installed, Tree(folder.Target()));
    }
    engine.reset();
    EXPECT_FALSE(Exists(LogFile()));
}

TEST_F(Journal, AShortcutOfTheUsersComesBackHoweverOftenOursIsWritten)
{
    const std::wstring path = folder.Target(L"menu\\one.lnk");
    std::string users;
    for (const wchar_t* target : {L"C:\\of the user.exe", L"C:\\one.exe", L"C:\\the second.exe"}) {
        Reopen();
        SaveShortcut(path, target, users.empty() ? com_ptr<ISetupLog>() : ServiceOf<ISetupLog>(*engine));
        if (users.empty())
            users = ReadWhole(path, 10'000);
    }
    engine.reset();
    Uninstall(LogFile());
    EXPECT_EQ(users, ReadWhole(path, 10'000));
}

TEST_F(Journal, ARunThatOnlyUnselectsWhatHasNoFilesIsRecorded)
{
    folder.Product(R"("features": [{"name": "F", "files": [{"name": "g", "files": ["a.bin"]}]}, {"name": "Empty"}])");
    Reopen();
    Install();
    Reopen();
    Feature(*engine, {L"Empty"})->SetSelected(0);
    engine->Commit();
    Reopen();
    EXPECT_EQ(0, Selected(*engine, {L"Empty"}));
}

TEST_F(Journal, ALostLogIsMadeAgainWithoutClaimingTheFiles)
{
    const std::wstring log = Install();
    RemoveFile(log);
    Reopen();
    EXPECT_FALSE(engine->Maintenance());
    Install();
    Reopen();
    EXPECT_TRUE(engine->Maintenance());
    EXPECT_EQ(4u, engine->Installed().size());
    engine.reset();
    for (const Removal& removal : Uninstall(log))
        EXPECT_EQ(RemovalOutcome::kept_found, removal.outcome) << ToUtf8(removal.what);
    EXPECT_TRUE(Exists(folder.Target(L"a.bin")));
}

TEST_F(Journal, CoarseFileTimesAreReadBack)
{
    const vh::test::Patched patch("SetFileTime", SetEvenTime);
    const FILETIME odd{12345678, 30'000'000};
    SetTime(folder.Setup(L"a.bin"), odd);
    Reopen();
    MoveAll(*engine);
    engine.reset();
    ExpectAsBefore("rollback");
    Reopen();
    Install();
    Reopen();
    engine->Host().query<ISetupFeatureHost>()->Reinstall(VARIANT_FALSE);
    const std::size_t records = engine->LogLines().size();
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_EQ(records, engine->LogLines().size()) << "written again";
    engine.reset();
    Uninstall(LogFile());
    ExpectAsBefore();
}

// Lines that only somebody else can have written, each with its right sum.
TEST_F(Journal, ForgedRecordsReachNoFileOfOthers)
{
    const std::wstring log = Install();
    const std::string content = ReadWhole(log, 100'000);
    const std::wstring victim = folder.Root() + L"\\victim.txt";
    LogRecord file;
    file.kind = LogKind::file;
    file.id = 900;
    file.run = 1;
    file.what = folder.Target(L"a.bin");
    std::vector<LogRecord> forged(7, file);
    forged[0].temp = victim;
    forged[1].backup = victim;
    forged[2].backup = folder.Target(L"bin\\.~vh123456789abc-1.old");
    forged[3].what = folder.Target(L"..\\victim.txt");
    forged[4].kind = LogKind::shell;
    forged[4].what = victim + L".lnk";
    forged[4].oldData = L"6869";
    forged[5].kind = LogKind::taken;
    forged[6].id = std::numeric_limits<long>::max();
    EXPECT_FALSE(FromLine(ToLine(forged[6]))) << "numbers could not go on from there";
    for (const auto& [place, good] :
         {std::pair(L"HKCU\\A", true), {L"HKLM/32\\", true}, {L"HKXX\\A", false}, {L"", false}}) {
        LogRecord key = file;
        key.kind = LogKind::key;
        key.what = place;
        EXPECT_EQ(good, FromLine(ToLine(key)).has_value()) << ToUtf8(place);
    }
    WriteText(folder.Target(L"bin\\.~vh123456789abc-1.old"), "waits");
    for (const bool unfinished : {false, true}) {
        WriteText(victim, "victim");
        for (LogRecord& record : forged)
            record.run = unfinished ? 2 : 1;
        WriteText(log, content + Lines(forged));
        Reopen();
        engine.reset();
        EXPECT_EQ("victim", ReadWhole(victim, 100));
        EXPECT_FALSE(Exists(victim + L".lnk"));
        EXPECT_TRUE(Exists(folder.Target(L"bin\\.~vh123456789abc-1.old")));
        EXPECT_TRUE(Exists(folder.Target(L"a.bin")));
    }
    Uninstall(log);
    EXPECT_EQ("victim", ReadWhole(victim, 100));
    EXPECT_TRUE(Exists(folder.Target(L"bin\\.~vh123456789abc-1.old")));
}

TEST_F(Journal, LeftoversOfKilledRunsGoWithTheNextStart)
{
    // Killed behind the commit: the backup is still there, and no record says that it went.
    ASSERT_EQ(S_OK, MoveAll(*engine));
    std::wstring backup;
    for (const std::wstring& name : Tree(folder.Target()))
        if (name.ends_with(L".old"))
            backup = folder.Target(name);
    ASSERT_FALSE(backup.empty());
    engine->Commit();
    EXPECT_FALSE(Exists(backup));
    const std::wstring stash = JoinPath(FolderOf(LogFile()), L"originals");
    ASSERT_EQ(1u, Tree(stash).size());
    const std::wstring stashed = JoinPath(stash, Tree(stash)[0]);
    engine.reset();
    std::string content = ReadWhole(LogFile(), 100'000);
    content.resize(content.rfind('\n', content.size() - 2) + 1);
    WriteText(LogFile(), content);
    ASSERT_TRUE(MoveFileW(stashed.c_str(), backup.c_str()));
    const std::wstring support = JoinPath(engine::TempFolder(), L"VHSetup{00000000-0000-0000-0000-00000000DEAD}");
    WriteText(support + L"\\deep\\file.txt", "left");
    const auto other = SetupFolder().Root();
    Reopen();
    EXPECT_FALSE(Exists(backup));
    EXPECT_EQ("older", ReadWhole(stashed, 100));
    EXPECT_FALSE(Exists(support));
    EXPECT_EQ(std::string(30, 'c'), ReadWhole(folder.Target(L"c.bin"), 100));
}

TEST_F(Journal, TakesNamesOf250Units)
{
    const std::wstring name = std::wstring(246, L'n') + L".txt";
    folder.Payload(name, "long");
    folder.Product(R"("features": [{"name": "F", "files": [{"name": "g", "files": [")" + ToUtf8(name) + R"("]}]}])");
    WriteText(folder.Target(name), "user's");
    Reopen();
    ASSERT_EQ(S_OK, MoveAll(*engine)) << ToUtf8(LastReason(*engine));
    EXPECT_EQ("long", ReadWhole(folder.Target(name), 100));
    engine.reset();
    EXPECT_EQ("user's", ReadWhole(folder.Target(name), 100));
}
