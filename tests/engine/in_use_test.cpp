// Files in use: who has them, who is asked to exchange them, and what belongs to others.
#include "../../engine/transfer/in_use.h"
#include "../../system/pending_operations.h"
#include "../support/replaced.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;
using vh::test::Replaced;

namespace {

// Stands in for the restart manager: one program has every file open.
struct OneHolder {
    Replaced<decltype(late::start_session)> start{late::start_session,
                                                  +[](DWORD*, DWORD, WCHAR*) -> DWORD { return 0; }};
    Replaced<decltype(late::register_resources)> files{
        late::register_resources,
        +[](DWORD, UINT, LPCWSTR*, UINT, RM_UNIQUE_PROCESS*, UINT, LPCWSTR*) -> DWORD { return 0; }};
    Replaced<decltype(late::get_list)> list{late::get_list,
                                            +[](DWORD, UINT*, UINT* count, RM_PROCESS_INFO* holders, LPDWORD) -> DWORD {
                                                *count = 1;
                                                wcscpy(holders->strAppName, L"Editor");
                                                holders->Process.dwProcessId = 4711;
                                                return 0;
                                            }};
};

// Who has not the rights of an administrator schedules nothing with the system.
BOOL WINAPI MoveNow(const wchar_t* from, const wchar_t* to, DWORD flags)
{
    if (!(flags & MOVEFILE_DELAY_UNTIL_REBOOT))
        return vh::test::OfSystem<decltype(MoveFileExW)>("MoveFileExW")(from, to, flags);
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

class InUse : public OnTree {
protected:
    std::string InPlace(const wchar_t* name) const { return ReadWhole(folder.Target(name), 100); }
    // The same product with another a.bin, while somebody has that file.
    void ReplaceHeld()
    {
        folder.Payload(L"a.bin", std::string(11, 'A'));
        Reopen();
        engine->Host().query<ISetupFeatureHost>()->Reinstall(VARIANT_FALSE);
        EXPECT_EQ(S_OK, MoveAll(*engine)) << ToUtf8(LastReason(*engine));
        EXPECT_TRUE(engine->NeedsRestart());
        EXPECT_EQ(L"-1", PropertyText(ServiceOf<ISetupReboot>(*engine).get(), L"Needed"));
        EXPECT_TRUE(ListPendingOperations().empty());
        engine->Commit();
    }
};

} // namespace

TEST_F(InUse, NamesTheHolderAndGoesToTheLibrarysListWithoutRights)
{
    Install();
    unique_file held = Hold(folder.Target(L"a.bin"));
    const OneHolder holder;
    const vh::test::Patched refused("MoveFileExW", &MoveNow);
    ReplaceHeld();
    const Message& told = engine->Messages().back();
    EXPECT_EQ(folder.Target(L"a.bin") +
                  L": is in use by Editor (process 4711); the new file takes its place with the next "
                  L"start of a setup",
              told.Text());
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_SUCCESS_REBOOT_REQUIRED), told.code);
    ASSERT_EQ(1u, ListPendingOperations().size());
    EXPECT_EQ(folder.Target(L"a.bin"), std::wstring(ListPendingOperations().front().target.view()));
    held.reset();
    Reopen();
    EXPECT_EQ(std::string(11, 'A'), InPlace(L"a.bin"));
    EXPECT_TRUE(ListPendingOperations().empty());
    EXPECT_FALSE(engine->NeedsRestart());
}

// A file that was there before the product comes back, whether it was exchanged by then or not.
TEST_F(InUse, WhatIsNotTheProductsIsKept)
{
    for (const bool exchanged : {false, true}) {
        SCOPED_TRACE(exchanged);
        WriteText(folder.Target(L"a.bin"), "mine");
        {
            const unique_file held = Hold(folder.Target(L"a.bin"), FILE_SHARE_READ);
            Reopen();
            const std::wstring log = Install();
            EXPECT_EQ("mine", InPlace(L"a.bin"));
            if (!exchanged) {
                EXPECT_FALSE(AnyFailed(Uninstall(log)));
            }
        }
        if (exchanged) {
            Reopen();
            EXPECT_EQ(std::string(10, 'a'), InPlace(L"a.bin"));
            EXPECT_FALSE(AnyFailed(Uninstall(End())));
        }
        EXPECT_EQ((std::vector<std::wstring>{L"a.bin"}), Tree(folder.Target()));
        EXPECT_EQ("mine", InPlace(L"a.bin"));
        EXPECT_TRUE(Tree(folder.Data()).empty());
    }
}

// Nobody can copy what a removal left there, and nobody needs to.
TEST_F(InUse, WhatARemovalCouldNotTakeAwayGivesWayToTheNextInstallation)
{
    {
        const std::wstring log = Install();
        const unique_file held = Hold(folder.Target(L"a.bin"));
        EXPECT_FALSE(AnyFailed(Uninstall(log)));
        folder.Payload(L"a.bin", "another");
        Reopen();
        Install();
    }
    Reopen();
    EXPECT_EQ("another", InPlace(L"a.bin"));
    EXPECT_FALSE(AnyFailed(Uninstall(End())));
    EXPECT_FALSE(Exists(folder.Target()));
}

TEST_F(InUse, DamagedLinesOfTheListAreToldOnce)
{
    WriteText(folder.Data() + L"\\in-use.log", "one\ntwo\n");
    Reopen();
    ASSERT_FALSE(engine->Messages().empty());
    EXPECT_EQ(folder.Data() + L"\\in-use.log: damaged lines are left out (2); what they told of stays",
              engine->Messages().front().Text());
    Reopen();
    EXPECT_TRUE(engine->Messages().empty());
}

// Another version, or the one before, takes the place of what still waits.
TEST_F(InUse, OnlyTheLastOneWaits)
{
    Install();
    const std::string first(10, 'a');
    for (const auto& [name, content] : {std::pair("another", std::string(12, 'B')), std::pair("the first", first)}) {
        SCOPED_TRACE(name);
        {
            const unique_file held = Hold(folder.Target(L"a.bin"));
            const FILETIME time = TimeOf(folder.Target(L"a.bin"));
            ReplaceHeld();
            folder.Payload(L"a.bin", content);
            if (content == first)
                SetTime(folder.Setup(L"a.bin"), time);
            Reopen();
            engine->Host().query<ISetupFeatureHost>()->Reinstall(VARIANT_FALSE);
            EXPECT_EQ(S_OK, MoveAll(*engine));
            End();
        }
        Reopen();
        EXPECT_EQ(content, InPlace(L"a.bin"));
        EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"c.bin", L"d.bin"}),
                  Tree(folder.Target()));
        folder.Payload(L"a.bin", first);
        engine->Host().query<ISetupFeatureHost>()->Reinstall(VARIANT_FALSE);
        EXPECT_EQ(S_OK, MoveAll(*engine));
        End();
    }
}

// A feature's file goes later; selected again by then, it stays.
TEST_F(InUse, AFileOfAnUnselectedFeatureGoesUnlessItIsWantedAgain)
{
    Install();
    for (const bool again : {true, false}) {
        SCOPED_TRACE(again);
        {
            const unique_file held = Hold(folder.Target(L"c.bin"));
            for (const short selected : {short{0}, short{2}}) {
                if (selected && !again)
                    break;
                Reopen();
                Feature(*engine, {L"Tools", L"Extra"})->SetSelected(selected);
                EXPECT_EQ(S_OK, MoveAll(*engine)) << ToUtf8(LastReason(*engine));
                engine->Commit();
                EXPECT_EQ(!selected, engine->NeedsRestart());
            }
        }
        Reopen();
        EXPECT_EQ(again, Exists(folder.Target(L"c.bin")));
        engine.reset();
    }
    Uninstall(LogFileOf(folder.Setup(), folder.Data()));
    EXPECT_FALSE(Exists(folder.Target()));
}
