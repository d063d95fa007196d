// The conversation with a download agent, which is another process here.
#include "../support/session.h"

namespace {

HWND AgentWindow() { return FindWindowW(nullptr, L"FetchOnDemand"); }

// A session with a link to an agent.
struct WebDisks : testing::Test {
    WebDisks()
    {
        std::wstring line = L"\"" + Beside(L"vhrt_test_agent.exe") + L"\" \"" + m_notes + L"\"";
        STARTUPINFOW start{};
        start.cb = sizeof(start);
        PROCESS_INFORMATION made{};
        EXPECT_TRUE(CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, DETACHED_PROCESS, nullptr, nullptr,
                                   &start, &made));
        m_process.reset(made.hProcess);
        const vh::unique_handle thread(made.hThread);
        while (!AgentWindow() && WaitForSingleObject(m_process.get(), 10) == WAIT_TIMEOUT)
            continue;
        EXPECT_NE(AgentWindow(), nullptr);
        EXPECT_EQ(_SetupInet(session), 1);
    }
    bool AgentEnds() const { return WaitForSingleObject(m_process.get(), 10000) == WAIT_OBJECT_0; }
    // What the agent was told, a line each.
    std::string Notes() const { return BytesOf(m_notes); }

    Session session;

private:
    const TempFolder m_folder;
    const std::wstring m_notes = m_folder / L"notes.txt";
    vh::unique_handle m_process;
};

TEST(WebDisksAlone, NeedAnAgent)
{
    const Session session;
    EXPECT_EQ(_SetupInet(session), 0);
    EXPECT_EQ(_InetGetNextDisk(session, L"data2.cab"), 3);
    EXPECT_EQ(_InetGetLastError(session), 0);
    _InetEndofTransfer(session);
    EXPECT_EQ(_CleanupInet(session), 1);
}

TEST_F(WebDisks, AreAskedForByTheNumberInTheirNames)
{
    const HWND reply = FindWindowW(L"INetClassInfo", L"INetClassInfo");
    EXPECT_NE(reply, nullptr);
    EXPECT_FALSE(IsWindowVisible(reply));
    EXPECT_EQ(_SetupInet(session), 1);
    // The progress window can't be told with the first request; it is told with the second, and once only.
    session.calls().FailCall(L"ISetupProgress.GetWindow", E_FAIL);
    EXPECT_EQ(_InetGetNextDisk(session, L"data1.cab"), 4);
    session.calls().Reset();

    Table<const wchar_t*, int32_t, int32_t> requests = {
        {L"data2.cab", 4, 0}, {L"C:\\x\\disk3.cab", 4, 0}, {L"C:\\x2\\disk4.cab", 3, -2},
        {L"data.cab", 4, 0},  {L"C:/a/disk9", 4, 0},       {L"data2.1.cab", 4, 0},
        {nullptr, 4, 0}};
    for (const auto& [file, result, error] : requests) {
        EXPECT_EQ(_InetGetNextDisk(session, file), result) << file;
        EXPECT_EQ(_InetGetLastError(session), error) << file;
    }
    _InetEndofTransfer(session);
    EXPECT_EQ(_CleanupInet(session), 1);
    EXPECT_EQ(FindWindowW(L"INetClassInfo", nullptr), nullptr);
    EXPECT_TRUE(AgentEnds());
    std::string asked;
    for (const char* disk : {"1", "2", "3", "-1", "8", "0", "-1"})
        asked += "1124 " + std::string(disk) + " INetClassInfo\n";
    EXPECT_EQ(Notes(), "1124 0 INetClassInfo\n1137 0 0\n" + asked + "1138 0 0\n1128 10 1\n");
}

// Noticed at the next check, 15 seconds after the request.
TEST_F(WebDisks, AreNotThereWhenTheAgentGoesAway)
{
    EXPECT_EQ(_InetGetNextDisk(session, L"disk10.cab"), 3);
    EXPECT_EQ(_InetGetLastError(session), -3);
    EXPECT_EQ(_InetGetNextDisk(session, L"disk1.cab"), 3) << "no window, no request";
    EXPECT_TRUE(AgentEnds());
}

// A window of the script gets its messages during a request: what it does to the link must not harm the request.
TEST_F(WebDisks, EndWithTheLinkThatAWindowEndsMeanwhile)
{
    static ObjectContext* context;
    static int32_t nested;
    context = session;
    nested = 0;
    SetTimer(nullptr, 0, 10, [](HWND, UINT, UINT_PTR timer, DWORD) {
        KillTimer(nullptr, timer);
        nested = _InetGetNextDisk(context, L"disk1.cab");
        _CleanupInet(context);
    });
    EXPECT_EQ(_InetGetNextDisk(session, L"disk2.cab"), 3) << "the answer would come late";
    EXPECT_EQ(nested, 3) << "one request at a time";
    EXPECT_EQ(_InetGetLastError(session), 0) << "no link, no error";
    EXPECT_TRUE(AgentEnds());
    EXPECT_EQ(Notes().find("1124 0"), std::string::npos);
}

// The context's end tells the agent, and a program that wants to end is not kept from it.
TEST_F(WebDisks, LeaveTheQueueAndTheAgentInOrder)
{
    PostQuitMessage(7);
    EXPECT_EQ(_InetGetNextDisk(session, L"disk2.cab"), 4);
    MSG message;
    ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 7u);
    session.Release();
    EXPECT_TRUE(AgentEnds());
}

} // namespace
