#include "../support/replaced.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

std::wstring Outcomes(const std::vector<Removal>& removals, RemovalOutcome wanted)
{
    std::wstring names;
    for (const Removal& removal : removals)
        if (removal.outcome == wanted)
            names += FileNameOf(removal.what) + L" ";
    return names;
}

using Maintenance = OnTree;
using Removals = OnTree;
using Transfer = OnTree;

} // namespace

TEST_F(Transfer, PutsSelectedFilesIntoTheirFoldersWithTimeAndContent)
{
    ASSERT_EQ(S_FALSE, Feature(*engine, {L"Core"})->SetSelected(0));
    ASSERT_EQ(S_OK, Feature(*engine, {L"Tools", L"Extra"})->SetSelected(0));
    ASSERT_EQ(S_OK, MoveAll(*engine)) << ToUtf8(LastReason(*engine));
    EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"d.bin"}), Tree(folder.Target()));
    EXPECT_EQ(std::string(20, 'b'), ReadWhole(folder.Target(L"bin\\b.bin"), 100));
    EXPECT_EQ(FactsOf(folder.Setup(L"b.bin")).time, FactsOf(folder.Target(L"bin\\b.bin")).time);
}

TEST_F(Transfer, ReportsProgressUpToTheTotalAndNamesEachFile)
{
    Options options = folder.Given();
    std::vector<Progress> seen;
    options.onProgress = [&](const Progress& progress) { return seen.push_back(progress), true; };
    Reopen(std::move(options));
    com_ptr<IUnknown> sink;
    ASSERT_EQ(S_OK, ServiceOf<ISetupProgress>(*engine)->BeginTransfer(100, 0, 80, sink.put()));
    ASSERT_EQ(S_OK, engine->Host().query<ISetupFeatureHost>()->Move(sink.get()));
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(10u, seen.front().done);
    EXPECT_EQ(folder.Target(L"a.bin"), seen.front().file);
    EXPECT_EQ(100u, seen.back().done);
    EXPECT_EQ(100, seen.back().percent);
    short position = 0;
    ServiceOf<ISetupProgress>(*engine)->ReadPosition(&position);
    EXPECT_EQ(80, position) << "where the bar was to stop";
}

TEST_F(Transfer, CancelTakesBackWhatWasWritten)
{
    Options options = folder.Given();
    options.onProgress = [](const Progress& progress) { return progress.done < 30; };
    Reopen(std::move(options));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_CANCELLED), MoveAll(*engine));
    EXPECT_FALSE(Exists(folder.Target()));
    EXPECT_NE(std::wstring::npos, LastReason(*engine).find(L"cancelled"));
}

// A target that can't be written fails the move with its name, and everything is as it was before.
TEST(Obstacles, RollTheMoveBackAndAreNamed)
{
    vh::test::Table<const char*, HRESULT, std::function<unique_file(const SetupFolder&)>> obstacles = {
        {"locked target", HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION),
         [](const SetupFolder& folder) {
             WriteText(folder.Target(L"c.bin"), "in use");
             return Hold(folder.Target(L"c.bin"));
         }},
        {"read-only target", HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED),
         [](const SetupFolder& folder) {
             WriteText(folder.Target(L"c.bin"), "fixed");
             SetFileAttributesW(folder.Target(L"c.bin").c_str(), FILE_ATTRIBUTE_READONLY);
             return unique_file();
         }},
        {"folder in place", HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS),
         [](const SetupFolder& folder) { return MakeFolders(folder.Target(L"c.bin")), unique_file(); }},
        {"missing payload", HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND),
         [](const SetupFolder& folder) { return RemoveFile(folder.Setup(L"c.bin")), unique_file(); }},
        {"changed payload", HRESULT_FROM_WIN32(ERROR_FILE_INVALID),
         [](const SetupFolder& folder) { return folder.Payload(L"c.bin", "shorter"), unique_file(); }}};
    for (const auto& [name, code, put] : obstacles) {
        SCOPED_TRACE(name);
        const SetupFolder folder;
        MakeTree(folder);
        WriteText(folder.Target(L"a.bin"), "older");
        const auto before = FactsOf(folder.Target(L"a.bin")).time;
        auto engine = folder.Open();
        const unique_file held = put(folder);
        const auto tree = Tree(folder.Target());
        EXPECT_EQ(code, MoveAll(*engine));
        EXPECT_NE(std::wstring::npos, LastReason(*engine).find(L"c.bin")) << ToUtf8(LastReason(*engine));
        EXPECT_EQ(tree, Tree(folder.Target()));
        EXPECT_EQ("older", ReadWhole(folder.Target(L"a.bin"), 100));
        EXPECT_EQ(before, FactsOf(folder.Target(L"a.bin")).time);
        engine.reset();
        EXPECT_EQ(tree, Tree(folder.Target()));
        EXPECT_FALSE(Exists(folder.Data() + L"\\{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D01}\\install.log"));
    }
}

TEST_F(Transfer, RefusesWhatDoesNotFitOnTheDrive)
{
    ASSERT_EQ(S_OK,
              Feature(*engine, {L"Core"}).query<ISetupItemFiles>()->AddCost(0, 0x7FFFFFFF, bstr(L"<TARGETDIR>").get()));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), MoveAll(*engine));
    EXPECT_NE(std::wstring::npos, LastReason(*engine).find(L"not enough space"));
    EXPECT_FALSE(Exists(folder.Target()));
}

TEST_F(Transfer, LeavesEqualNewerAndProtectedFilesAlone)
{
    folder.Payload(L"keep.txt", "new");
    folder.Payload(L"win.txt", "new");
    WriteText(folder.Target(L"keep.txt"), "user's");
    // A system library has a version resource, so a payload of version 0.1 is older.
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    CopyFileW(JoinPath(system, L"kernel32.dll").c_str(), folder.Target(L"win.txt").c_str(), FALSE);
    const uint64_t size = FactsOf(folder.Target(L"win.txt")).size;
    folder.Product(R"("features": [{"name": "F", "files": [{"name": "g", "files": [
        {"path": "keep.txt", "flags": ["never-overwrite"]}, {"path": "win.txt", "version": "0.1"}]}]}])");
    Reopen();
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_EQ("user's", ReadWhole(folder.Target(L"keep.txt"), 100));
    EXPECT_EQ(size, FactsOf(folder.Target(L"win.txt")).size);
    EXPECT_TRUE(engine->Installed().empty());
}

TEST_F(Transfer, InstallsAndRemovesTwoThousandFilesInDeepFoldersWithForeignNames)
{
    std::wstring deep = L"tree";
    for (int level = 0; level < 24; ++level)
        deep += L"\\Ordner \u00e4\u00f6\u00fc " + std::to_wstring(level);
    for (int i = 0; i < 2000; ++i)
        folder.Payload(i % 10 ? L"tree\\\u65e5\u672c " + std::to_wstring(i) + L".txt"
                              : deep + L"\\" + std::to_wstring(i) + L".txt",
                       std::to_string(i));
    folder.Product(
        R"("features": [{"name": "Alles", "files": [{"name": "g", "files": [{"path": "tree/*", "recurse": true}]}]}])");
    Reopen();
    ASSERT_EQ(S_OK, MoveAll(*engine)) << ToUtf8(LastReason(*engine));
    EXPECT_EQ(2000u, engine->Installed().size());
    EXPECT_EQ(Tree(folder.Setup(L"tree")), Tree(folder.Target()));
    const std::wstring log = End();
    EXPECT_EQ(2000u + 25u, Uninstall(log).size());
    EXPECT_FALSE(Exists(folder.Target()) || Exists(log));
}

TEST_F(Removals, TakesExactlyWhatWasInstalledAndLeavesTheUsersFiles)
{
    const std::wstring log = Install();
    WriteText(folder.Target(L"bin\\mine.txt"), "mine");
    WriteText(folder.Target(L"c.bin"), "changed by me");
    const auto removals = Uninstall(log);
    EXPECT_EQ((std::vector<std::wstring>{L"bin", L"bin\\mine.txt", L"c.bin"}), Tree(folder.Target()));
    EXPECT_EQ(L"d.bin b.bin a.bin ", Outcomes(removals, RemovalOutcome::removed));
    EXPECT_EQ(L"c.bin ", Outcomes(removals, RemovalOutcome::kept_changed));
    EXPECT_EQ(L"bin target ", Outcomes(removals, RemovalOutcome::kept_not_empty));
    EXPECT_THROW(Uninstall(log), engine_error);
}

TEST_F(Removals, LeaveToAnotherProductWhatItHasToo)
{
    for (int round = 0; round < 4; ++round) {
        const bool newestFirst = round & 1;
        const bool replaced = round & 2;
        MakeTree(folder);
        Reopen();
        const std::wstring first = Install();
        const auto whole = Tree(folder.Target());
        folder.Product(R"("installGuid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D02}", )" + std::string(tree_features));
        if (replaced)
            folder.Payload(L"a.bin", "another");
        Reopen();
        ASSERT_EQ(S_OK, MoveAll(*engine));
        engine->Rollback();
        EXPECT_EQ(whole, Tree(folder.Target()));
        Reopen();
        const std::wstring second = Install();
        ASSERT_NE(first, second);
        Uninstall(newestFirst ? second : first);
        EXPECT_EQ(whole, Tree(folder.Target())) << round;
        EXPECT_EQ(replaced && !newestFirst ? "another" : "aaaaaaaaaa", ReadWhole(folder.Target(L"a.bin"), 100));
        Uninstall(newestFirst ? first : second);
        EXPECT_FALSE(Exists(folder.Target())) << round;
    }
}

TEST_F(Removals, NameAFileOfTheUserThatIsLost)
{
    WriteText(folder.Target(L"a.bin"), "mine");
    Reopen();
    const std::wstring log = Install();
    RemoveTree(FolderOf(log) + L"\\originals");
    EXPECT_EQ(L"a.bin ", Outcomes(Uninstall(log), RemovalOutcome::failed));
    EXPECT_FALSE(Exists(folder.Target(L"a.bin")));
    EXPECT_FALSE(AnyFailed(Uninstall(log)));
    EXPECT_TRUE(Tree(folder.Data()).empty());
}

TEST_F(Removals, ContinuesAfterAFailureAndAfterAKill)
{
    const std::wstring log = Install();
    {
        const vh::test::Patched broken(
            "DeleteFileW", +[](const wchar_t* path) -> BOOL {
                const bool refused = std::wstring_view(path).ends_with(L"b.bin");
                SetLastError(ERROR_WRITE_PROTECT);
                return refused ? FALSE : vh::test::OfSystem<decltype(DeleteFileW)>("DeleteFileW")(path);
            });
        const auto first = Uninstall(log);
        EXPECT_EQ(L"b.bin ", Outcomes(first, RemovalOutcome::failed).substr(0, 6));
        EXPECT_TRUE(Exists(log));
    }
    // A record that a kill cut short is no damage.
    const unique_file file(CreateFileW(log.c_str(), FILE_APPEND_DATA, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), "{\"id\": 99", 9, &written, nullptr);
    const_cast<unique_file&>(file).reset();
    const auto second = Uninstall(log);
    EXPECT_NE(std::wstring::npos, Outcomes(second, RemovalOutcome::removed).find(L"b.bin"));
    EXPECT_FALSE(Exists(folder.Target()) || Exists(log));
}

TEST_F(Maintenance, TakesOverTheSelectionAndRemovesWhatIsUnselected)
{
    Feature(*engine, {L"Tools", L"Help"})->SetSelected(0);
    Install();
    Reopen();
    EXPECT_TRUE(engine->Maintenance());
    EXPECT_EQ(2, Selected(*engine, {L"Tools", L"Extra"}));
    EXPECT_EQ(0, Selected(*engine, {L"Tools", L"Help"}));
    Feature(*engine, {L"Tools", L"Extra"})->SetSelected(0);
    Feature(*engine, {L"Tools", L"Help"})->SetSelected(2);
    Install();
    EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"d.bin"}), Tree(folder.Target()));
    Reopen();
    ServiceOf<ISetupData>(*engine).query<ISetupDataEx>()->SetRemoveAllMode(VARIANT_TRUE);
    Install();
    EXPECT_FALSE(Exists(folder.Target()));
}

TEST_F(Maintenance, ReinstallRepairsADamagedFile)
{
    Install();
    Reopen();
    WriteText(folder.Target(L"a.bin"), "damaged");
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_EQ("damaged", ReadWhole(folder.Target(L"a.bin"), 100));
    const auto features = engine->Host().query<ISetupFeatureHost>();
    ASSERT_EQ(S_OK, features->Reinstall(VARIANT_FALSE));
    ASSERT_EQ(S_OK, features->Move(nullptr));
    EXPECT_EQ(std::string(10, 'a'), ReadWhole(folder.Target(L"a.bin"), 100));
    engine->Commit();
    EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"c.bin", L"d.bin"}), Tree(folder.Target()));
}

TEST_F(Maintenance, LeavesAFileThatAnotherFeatureNeeds)
{
    folder.Payload(L"both.bin", "both");
    folder.Payload(L"one.bin", "one");
    folder.Product(R"("features": [{"name": "One", "files": [{"name": "g", "files": ["both.bin", "one.bin"]}]},
        {"name": "Two", "files": [{"name": "g", "files": ["both.bin"]}]}])");
    Reopen();
    Install();
    Reopen();
    Feature(*engine, {L"One"})->SetSelected(0);
    Install();
    EXPECT_EQ((std::vector<std::wstring>{L"both.bin"}), Tree(folder.Target()));
}
