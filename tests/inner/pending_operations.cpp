// Operations that are put off: on a list of the test's own, and to the next start of a system that only seems to be
// asked.
#include "../../system/pending_operations.h"
#include "../../system/reboot_move.h"
#include "../support/registry_root.h"

namespace {

// "source>target;" for each operation.
std::wstring Listed()
{
    std::wstring shown;
    for (const pending_operation& one : ListPendingOperations())
        shown.append(one.source).append(L">").append(one.target).append(L";");
    return shown;
}

void SetValue(HKEY key, const wchar_t* name, DWORD type, const void* data, std::size_t size)
{
    EXPECT_EQ(RegSetKeyValueW(key, pending_operations_key, name, type, data, static_cast<DWORD>(size)), ERROR_SUCCESS);
}
void SetText(HKEY key, const wchar_t* name, const std::wstring& text)
{
    SetValue(key, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

struct PendingOperations : testing::Test {
    RegistryRoot machine{HKEY_LOCAL_MACHINE};
    TempFolder folder;
};

TEST_F(PendingOperations, CollapseToOneForEachTarget)
{
    using Pairs = std::vector<std::pair<const wchar_t*, const wchar_t*>>;
    Table<Pairs, const wchar_t*> cases = {{Pairs{}, L""},
                                          {{{L"a", L"b"}}, L"a>b;"},
                                          {{{L"a", L"b"}, {L"A", L".\\x\\..\\B"}}, L"a>b;A>.\\x\\..\\B;"},
                                          {{{L"c:\\a", L"c:\\b"}, {L"C:\\x\\..\\A", L"c:\\.\\B"}}, L"c:\\a>c:\\b;"},
                                          {{{L"a", L"b"}, {L"c", L"b"}}, L"c>b;"},
                                          // b from a, and now a from c: b comes from c.
                                          {{{L"a", L"b"}, {L"c", L"a"}}, L"c>b;"},
                                          {{{L"a", L"b"}, {L"c", L"a"}, {L"d", L"c"}, {L"e", L"f"}}, L"d>b;e>f;"},
                                          {{{L"a", L""}, {L"a", L""}}, L"a>;"},
                                          {{{L"a", L""}, {L"b", L""}}, L"b>;"},
                                          // The first that fits is taken.
                                          {{{L"a", L"b"}, {L"c", L"d"}, {L"x", L"c"}, {L"y", L"d"}}, L"a>b;y>d;"}};
    for (const auto& [pairs, listed] : cases) {
        for (const auto& [source, target] : pairs)
            RecordPendingOperation(source, target);
        EXPECT_EQ(Listed(), listed);
        EXPECT_EQ(ClearPendingOperations(), ERROR_SUCCESS);
    }
    EXPECT_EQ(machine.Shown(), "Software\n") << "nothing is left of a cleared list";
    EXPECT_EQ(CodeOf<com_exception>([] { RecordPendingOperation(nullptr, L"a"); }), E_FAIL);
    EXPECT_EQ(CodeOf<com_exception>([] { RecordPendingOperation(L"a", nullptr); }), E_FAIL);
    EXPECT_EQ(machine.Shown(), "Software\n");
}

TEST_F(PendingOperations, DeleteWhatWillNotBeMovedAnyMore)
{
    const std::wstring old_one = folder.Write(L"old", "1"), new_one = folder.Write(L"new", "2");
    const std::wstring last = folder.Write(L"last", "3"), target = folder / L"target";
    RecordPendingOperation(old_one.c_str(), target.c_str());
    RecordPendingOperation(old_one.c_str(), target.c_str());
    EXPECT_TRUE(std::filesystem::exists(old_one)) << "the same again changes nothing";
    RecordPendingOperation(new_one.c_str(), target.c_str());
    EXPECT_FALSE(std::filesystem::exists(old_one));
    RecordPendingOperation(last.c_str(), new_one.c_str());
    EXPECT_FALSE(std::filesystem::exists(new_one));
    EXPECT_EQ(Listed(), last + L">" + target + L";");
    EXPECT_EQ(ApplyPendingOperations(), S_OK);
    EXPECT_EQ(BytesOf(target), "3");
}

TEST_F(PendingOperations, AreKeptAsPairsOfTexts)
{
    RecordPendingOperation(L"a", L"b");
    RecordPendingOperation(L"c", L"");
    EXPECT_EQ(machine.Shown(), "Software\nSoftware\\VarnholtPendingOperation\n"
                               "Software\\VarnholtPendingOperation>Count:4\n"
                               "Software\\VarnholtPendingOperation>dest1=b\nSoftware\\VarnholtPendingOperation>dest2=\n"
                               "Software\\VarnholtPendingOperation>source1=a\n"
                               "Software\\VarnholtPendingOperation>source2=c\n");
    stringxi source(L"before");
    FindPendingOperation(L"none", source);
    EXPECT_EQ(source, L"before");
    FindPendingOperation(L".\\x\\..\\none", source);
    FindPendingOperation(L"B\\.", source);
    EXPECT_EQ(source, L"a");
    ForgetPendingOperations({L"A\\."});
    EXPECT_EQ(Listed(), L"c>;");
    ForgetPendingOperations({L"none"});
    ForgetPendingOperations({L"c"});
    EXPECT_EQ(machine.Shown(), "Software\n");
}

TEST_F(PendingOperations, PassOverWhatCanNotBeRead)
{
    // 259 characters and their zero are all that is read.
    const std::wstring longest(259, L'x'), longer(260, L'y');
    const DWORD count = 6;
    RecordPendingOperation(longest.c_str(), L"1");
    RecordPendingOperation(longer.c_str(), L"2");
    RecordPendingOperation(L"c", L"3");
    const std::map<const wchar_t*, const wchar_t*> texts = {
        {L"dest5", L"5"},   {L"source5", L"e"},         {L"source06", L"not a name of ours"},
        {L"dest06", L"06"}, {L"source4", L"no target"}, {L"source7", L"beyond the count"},
        {L"dest7", L"7"}};
    for (const auto& [name, text] : texts)
        SetText(machine.key(), name, text);
    EXPECT_EQ(Listed(), longest + L">1;c>3;");
    SetValue(machine.key(), L"Count", REG_DWORD, &count, sizeof(count));
    EXPECT_EQ(Listed(), longest + L">1;c>3;e>5;");
    SetValue(machine.key(), L"source3", REG_DWORD, &count, sizeof(count));
    // Texts need not end in a zero.
    SetValue(machine.key(), L"source5", REG_SZ, L"xyz", 4);
    EXPECT_EQ(Listed(), longest + L">1;xy>5;");
    const DWORD most = 0xFFFFFFFF;
    SetValue(machine.key(), L"Count", REG_DWORD, &most, sizeof(most));
    EXPECT_EQ(Listed(), longest + L">1;xy>5;beyond the count>7;") << "a wild count makes no endless walk";
    RecordPendingOperation(L"new", L"8");
    EXPECT_EQ(Listed(), longest + L">1;xy>5;beyond the count>7;");
    SetValue(machine.key(), L"Count", REG_DWORD, &count, 3);
    EXPECT_EQ(Listed(), L"");
    RecordPendingOperation(L"new", L"1");
    EXPECT_EQ(Listed(), L"new>1;") << "a count of another size is none";
}

TEST_F(PendingOperations, EndTheirListWhateverFails)
{
    EXPECT_EQ(ApplyPendingOperations(), S_OK) << "no list";
    const std::wstring moved = folder.Write(L"moved", "1"), removed = folder.Write(L"removed", "2");
    const std::wstring replaced = folder.Write(L"replaced", "old");
    RecordPendingOperation((folder / L"none").c_str(), (folder / L"a").c_str());
    RecordPendingOperation(moved.c_str(), (folder / L"no folder\\b").c_str());
    RecordPendingOperation((folder / L"none").c_str(), L"");
    EXPECT_EQ(ApplyPendingOperations(), HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND)) << "the last failure";
    EXPECT_EQ(machine.Shown(), "Software\n");
    RecordPendingOperation((folder / L"none").c_str(), (folder / L"a").c_str());
    RecordPendingOperation(moved.c_str(), replaced.c_str());
    RecordPendingOperation(removed.c_str(), L"");
    EXPECT_EQ(ApplyPendingOperations(), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)) << "the walk goes on";
    EXPECT_EQ(BytesOf(replaced), "1");
    EXPECT_FALSE(std::filesystem::exists(moved) || std::filesystem::exists(removed));
    EXPECT_EQ(machine.Shown(), "Software\n");
}

TEST_F(PendingOperations, OfAUserWithoutRightsAreTheUsersOwn)
{
    const RegistryRoot user(HKEY_CURRENT_USER);
    {
        const Patched no_token(
            "OpenProcessToken", +[](HANDLE, DWORD, HANDLE*) -> BOOL { return FALSE; });
        RecordPendingOperation(L"a", L"b");
    }
    EXPECT_EQ(machine.Shown(), "");
    EXPECT_NE(user.Shown().find("source1=a"), std::string::npos);
    EXPECT_EQ(Listed(), L"");
}

// What the system would do at its next start.
std::wstring g_scheduled;
DWORD g_error = 0;
BOOL WINAPI Schedule(const wchar_t* source, const wchar_t* target, DWORD flags)
{
    g_scheduled = source;
    g_scheduled.append(L">").append(target ? target : L"(null)").append(L">").append(std::to_wstring(flags));
    SetLastError(g_error);
    return g_error == 0;
}
const TempFolder* g_windows = nullptr;
UINT WINAPI WindowsFolder(wchar_t* buffer, UINT)
{
    return static_cast<UINT>(std::wcslen(std::wcscpy(buffer, g_windows->path().c_str())));
}

TEST(AtReboot, TheSystemMovesOrDeletes)
{
    const Patched schedule("MoveFileExW", &Schedule);
    Table<const wchar_t*, DWORD, const wchar_t*> cases = {
        {L"b", 0, L"a>b>5"}, {L"", 0, L"a>(null)>5"}, {L"b", ERROR_ACCESS_DENIED, L"a>b>5"}};
    for (const auto& [target, error, scheduled] : cases) {
        g_error = error;
        EXPECT_EQ(ScheduleAtReboot(L"a", target), error);
        EXPECT_EQ(g_scheduled, scheduled);
    }
}

TEST(AtReboot, ASourceIsTakenOutOfTheSystemsList)
{
    using namespace std::string_view_literals;
    const RegistryRoot machine{HKEY_LOCAL_MACHINE};
    constexpr const wchar_t* key = L"System\\CurrentControlSet\\Control\\Session Manager";
    constexpr const wchar_t* name = L"PendingFileRenameOperations";
    EXPECT_EQ(WithdrawAtReboot({L"C:\\a"}), ERROR_SUCCESS) << "there is no list";
    Table<std::wstring_view, std::wstring_view> lists = {
        {L"\\??\\C:\\b\0!\\??\\C:\\a\0\\??\\C:\\c\0\0\0"sv, L"\\??\\C:\\b\0!\\??\\C:\\a\0\\??\\C:\\c\0\0\0"sv},
        {L"\\??\\C:\\A\0\0\\??\\C:\\c\0\0\0"sv, L"\\??\\C:\\c\0\0\0"sv},
        {L"\\??\\C:\\c\0\0\\??\\C:\\a\0!\\??\\C:\\b\0\0"sv, L"\\??\\C:\\c\0\0\0"sv},
        {L"\\??\\C:\\a\0\0\0"sv, L""sv}};
    for (const auto& [before, after] : lists)
        for (const wchar_t* source : {L"C:\\a", L"\\\\?\\C:\\a"}) {
            RegSetKeyValueW(HKEY_LOCAL_MACHINE, key, name, REG_MULTI_SZ, before.data(),
                            static_cast<DWORD>(before.size() * sizeof(wchar_t)));
            EXPECT_EQ(WithdrawAtReboot({L"C:\\d", source}), ERROR_SUCCESS);
            wchar_t left[100];
            DWORD size = sizeof left;
            if (RegGetValueW(HKEY_LOCAL_MACHINE, key, name, RRF_RT_ANY, nullptr, left, &size))
                size = 0;
            EXPECT_EQ(std::wstring_view(left, size / sizeof(wchar_t)), after);
        }
}

std::wstring ShortOf(const std::wstring& path)
{
    return Filled([&](auto... to) { GetShortPathNameW(path.c_str(), to...); });
}

TEST(AtReboot, AnOldSystemHasAFileForIt)
{
    const TempFolder folder;
    g_windows = &folder;
    g_error = ERROR_CALL_NOT_IMPLEMENTED;
    const Patched schedule("MoveFileExW", &Schedule);
    const Patched windows("GetWindowsDirectoryW", &WindowsFolder);
    const std::wstring init = folder / L"WININIT.INI", source = folder.Write(L"a long source.txt", "x");
    const std::wstring target = folder / L"a long target.txt";
    EXPECT_EQ(ScheduleAtReboot((folder / L"none").c_str(), target.c_str()), 0u);
    EXPECT_EQ(ScheduleAtReboot(source.c_str(), (folder / L"none\\a").c_str()), 0u);
    EXPECT_FALSE(std::filesystem::exists(init)) << "nothing is done when a path can't be shortened";
    EXPECT_EQ(ScheduleAtReboot(source.c_str(), L""), 0u);
    SetFileAttributesW(init.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(ScheduleAtReboot(source.c_str(), target.c_str()), 0u);
    const std::wstring deletion = std::wstring(L"NUL=").append(ShortOf(source)).append(L"|");
    std::wstring lines = deletion;
    lines.append(ShortOf(folder.path().wstring())).append(L"\\a long target.txt=").append(ShortOf(source)).append(L"|");
    const auto section = [&] {
        std::vector<wchar_t> text(1 << 20);
        std::wstring all(text.data(), GetPrivateProfileSectionW(L"rename", text.data(), static_cast<DWORD>(text.size()),
                                                                init.c_str()));
        text.assign(all.begin(), all.end());
        for (wchar_t& unit : text)
            unit = unit ? unit : L'|';
        return std::wstring(text.begin(), text.end());
    };
    EXPECT_EQ(section(), lines);
    WritePrivateProfileStringW(L"rename", nullptr, nullptr, init.c_str());
    // Around the first room of 8191 characters, and far beyond it.
    const std::size_t added = ShortOf(source).size() + 4;
    for (const std::size_t size : {8191 - added - 3, 8191 - added - 2, 8191 - added - 1, std::size_t{8190},
                                   std::size_t{8191}, std::size_t{40000}}) {
        std::vector<wchar_t> before(size + 1, L'x');
        before[1] = L'=';
        before[size - 1] = before[size] = L'\0';
        std::wstring wanted(before.data());
        wanted.append(L"|").append(deletion);
        ASSERT_TRUE(WritePrivateProfileSectionW(L"rename", before.data(), init.c_str()));
        EXPECT_EQ(ScheduleAtReboot(source.c_str(), L""), 0u);
        EXPECT_TRUE(section() == wanted) << size;
    }
    std::filesystem::remove(init);
    std::filesystem::create_directory(init);
    EXPECT_NE(ScheduleAtReboot(source.c_str(), L""), 0u) << "a failed write is told";
}

} // namespace
