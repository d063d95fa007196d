// Real processes that end in the middle: the test program runs itself and the child terminates at a step.
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

constexpr DWORD killed_code = 77;

std::wstring Environment(const wchar_t* name)
{
    wchar_t text[MAX_PATH] = {};
    GetEnvironmentVariableW(name, text, MAX_PATH);
    return text;
}

// Ends the process at the step that the parent asked for.
void KillAtStep()
{
    static int step = 0;
    if (++step == std::stoi(Environment(L"VH_KILL_STEP")))
        TerminateProcess(GetCurrentProcess(), killed_code);
}

// True when the child got to the step and was ended there; false when it came to its own end.
bool RunKilled(const SetupFolder& folder, const wchar_t* test, int step)
{
    SetEnvironmentVariableW(L"VH_KILL_FOLDER", folder.Root().c_str());
    SetEnvironmentVariableW(L"VH_KILL_STEP", std::to_wstring(step).c_str());
    wchar_t program[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring command =
        L"\"" + std::wstring(program) + L"\" --gtest_also_run_disabled_tests --gtest_brief=1 --gtest_filter=" + test;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION made{};
    if (!CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made)) {
        ADD_FAILURE() << "no child: " << GetLastError();
        return false;
    }
    const unique_handle process(made.hProcess), thread(made.hThread);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.get(), 60'000));
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    EXPECT_TRUE(code == killed_code || code == 0) << code;
    return code == killed_code;
}

using Kill = OnTree;

} // namespace

TEST(Child, DISABLED_Installs)
{
    Options options = SetupFolder(Environment(L"VH_KILL_FOLDER")).Given();
    options.onProgress = [](const Progress&) { return KillAtStep(), true; };
    const auto engine = Engine::Open(std::move(options));
    ASSERT_EQ(S_OK, MoveAll(*engine));
    engine->Commit();
}

// Replaces, adds and takes away: all that a second run can do.
TEST(Child, DISABLED_Maintains)
{
    Options options = SetupFolder(Environment(L"VH_KILL_FOLDER")).Given();
    options.onProgress = [](const Progress&) { return KillAtStep(), true; };
    options.onMessage = [](const Message&) { KillAtStep(); };
    const auto engine = Engine::Open(std::move(options));
    KillAtStep();
    Feature(*engine, {L"Tools", L"Extra"})->SetSelected(0);
    Feature(*engine, {L"Tools", L"Help"})->SetSelected(2);
    engine->Host().query<ISetupFeatureHost>()->Reinstall(VARIANT_FALSE);
    ASSERT_EQ(S_OK, MoveAll(*engine));
    KillAtStep();
    engine->Commit();
    KillAtStep();
}

TEST(Child, DISABLED_Removes)
{
    const SetupFolder folder(Environment(L"VH_KILL_FOLDER"));
    Uninstall(LogFileOf(folder.Setup(), folder.Data()), [](const Removal&) { KillAtStep(); });
}

TEST_F(Kill, DuringAnInstallationLeavesNoHalfFileAndTheNextStartCleansUp)
{
    engine.reset();
    WriteText(folder.Target(L"c.bin"), "older");
    int step = 1;
    for (; RunKilled(folder, L"Child.DISABLED_Installs", step); ++step) {
        for (const auto& [name, size] :
             {std::pair(L"a.bin", 10u), std::pair(L"bin\\b.bin", 20u), std::pair(L"d.bin", 40u)})
            EXPECT_TRUE(!Exists(folder.Target(name)) || FactsOf(folder.Target(name)).size == size) << step;
        if (step % 2)
            continue;
        // The child after this one cleans up by itself; here it is the parent.
        Reopen();
        EXPECT_EQ((std::vector<std::wstring>{L"c.bin"}), Tree(folder.Target())) << step;
        EXPECT_EQ("older", ReadWhole(folder.Target(L"c.bin"), 100));
        EXPECT_FALSE(engine->Maintenance());
        ASSERT_FALSE(engine->Messages().empty());
        EXPECT_NE(std::wstring::npos, engine->Messages().front().reason.find(L"unfinished"));
        engine.reset();
    }
    EXPECT_GT(step, 4);
    EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"c.bin", L"d.bin"}), Tree(folder.Target()));
}

TEST_F(Kill, DuringMaintenanceEndsInOneOfTwoStates)
{
    WriteText(folder.Target(L"c.bin"), "older");
    Feature(*engine, {L"Tools", L"Help"})->SetSelected(0);
    Install();
    const auto first = Tree(folder.Target());
    folder.Payload(L"a.bin", std::string(11, 'A'));
    int ended = 0;
    bool killed = true;
    for (int step = 1; killed; ++step) {
        killed = RunKilled(folder, L"Child.DISABLED_Maintains", step);
        Reopen();
        const bool committed = Exists(folder.Target(L"d.bin"));
        // The user's own file is back with the feature that had replaced it.
        EXPECT_EQ(committed ? (std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"c.bin", L"d.bin"}) : first,
                  Tree(folder.Target()))
            << step;
        EXPECT_EQ(committed ? "older" : std::string(30, 'c'), ReadWhole(folder.Target(L"c.bin"), 100)) << step;
        EXPECT_EQ(committed ? std::string(11, 'A') : std::string(10, 'a'), ReadWhole(folder.Target(L"a.bin"), 100));
        EXPECT_EQ(committed ? 0 : 2, Selected(*engine, {L"Tools", L"Extra"}));
        ended += committed;
        engine.reset();
    }
    EXPECT_EQ(2, ended) << "the kill behind the commit, and the run to the end";
    Uninstall(LogFileOf(folder.Setup(), folder.Data()));
    EXPECT_EQ((std::vector<std::wstring>{L"c.bin"}), Tree(folder.Target()));
}

// The new file waits beside the old one, and takes its place or goes.
TEST_F(Kill, WhileAFileIsInUseEndsInOneOfTwoStates)
{
    Feature(*engine, {L"Tools", L"Help"})->SetSelected(0);
    Install();
    const auto first = Tree(folder.Target());
    folder.Payload(L"a.bin", std::string(11, 'A'));
    int ended = 0;
    bool killed = true;
    for (int step = 1; killed; ++step) {
        unique_file held = Hold(folder.Target(L"a.bin"));
        killed = RunKilled(folder, L"Child.DISABLED_Maintains", step);
        held.reset();
        Reopen();
        const bool committed = Exists(folder.Target(L"d.bin"));
        EXPECT_EQ(committed ? (std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"d.bin"}) : first,
                  Tree(folder.Target()))
            << step;
        EXPECT_EQ(committed ? std::string(11, 'A') : std::string(10, 'a'), ReadWhole(folder.Target(L"a.bin"), 100));
        EXPECT_FALSE(engine->NeedsRestart());
        ended += committed;
        engine.reset();
    }
    EXPECT_EQ(2, ended) << "the kill when the waiting file is told, and the run to the end";
    Uninstall(LogFileOf(folder.Setup(), folder.Data()));
    EXPECT_FALSE(Exists(folder.Target()) || Exists(folder.Data() + L"\\in-use.log"));
}

TEST_F(Kill, DuringARemovalLetsTheNextOneGoOn)
{
    Install();
    std::size_t left = Tree(folder.Target()).size();
    while (RunKilled(folder, L"Child.DISABLED_Removes", 1)) {
        const std::size_t now = Tree(folder.Target()).size();
        ASSERT_TRUE(now < left || now == 0);
        left = now;
        if (!Exists(LogFileOf(folder.Setup(), folder.Data())))
            break;
    }
    EXPECT_FALSE(Exists(folder.Target()));
}
