// Printing on a print dialog and a shell of the test's own.
#include "../../system/print_runtime.h"
#include "../../exports/vhrt/printing.h"
#include "../../system/late_shell.h"
#include "../support/test.h"

namespace {

// What the dialog answers, what the shell answers, and what both were given.
enum class dialog { cancelled, printer, plain, raises };
dialog g_dialog;
DWORD g_shell_error;
HANDLE g_process;
std::wstring g_seen;

BOOL WINAPI Dialog(PRINTDLGW* given)
{
    g_seen += L"dialog " + std::to_wstring(given->Flags) + L" " + std::to_wstring(given->lStructSize) +
              (given->hwndOwner ? L" owned|" : L"|");
    if (g_dialog == dialog::raises)
        throw win32_exception(ERROR_OUTOFMEMORY);
    if (g_dialog == dialog::cancelled)
        return FALSE;
    given->hDevMode = GlobalAlloc(GMEM_MOVEABLE, 16);
    if (g_dialog == dialog::printer) {
        constexpr wchar_t names[] = L"driver\0The Printer\0port";
        given->hDevNames = GlobalAlloc(GHND, sizeof(DEVNAMES) + sizeof(names));
        auto* devices = static_cast<DEVNAMES*>(GlobalLock(given->hDevNames));
        constexpr auto start = static_cast<WORD>(sizeof(DEVNAMES) / 2);
        devices->wDriverOffset = start;
        devices->wDeviceOffset = start + 7;
        devices->wOutputOffset = start + 19;
        std::copy(std::begin(names), std::end(names), reinterpret_cast<wchar_t*>(devices) + start);
        GlobalUnlock(given->hDevNames);
    }
    return TRUE;
}

BOOL WINAPI Execute(SHELLEXECUTEINFOW* order)
{
    g_seen += std::to_wstring(order->fMask) + L" " + order->lpVerb + L" " + order->lpFile + L" " +
              (order->lpParameters ? order->lpParameters : L"-");
    order->hProcess = g_process;
    SetLastError(g_shell_error);
    return g_shell_error == 0;
}

struct Printing : testing::Test {
    void SetUp() override
    {
        g_dialog = dialog::printer;
        g_shell_error = 0;
        g_process = nullptr;
        g_seen.clear();
    }
    static HANDLE Ended() { return CreateEventW(nullptr, TRUE, TRUE, nullptr); }

    const TempFolder folder;
    const std::wstring file = folder.Write(L"read me.txt", "text");
    const Replaced<decltype(late::print_dialog)> prints{late::print_dialog, &Dialog};
    const Replaced<decltype(late::shell_execute_ex)> executes{late::shell_execute_ex, &Execute};
};

const std::wstring shown = L"dialog 8650764 " + std::to_wstring(sizeof(PRINTDLGW)) + L"|";

TEST_F(Printing, TakesThePrinterOfTheDialogAndTheShellsVerb)
{
    const std::wstring refused = L"ShellExecute failed.; ShellExecute returned: ";
    const Table<dialog, DWORD, bool, std::wstring, std::wstring> cases = {
        {dialog::cancelled, 0, false, L"", L"Print cancelled"},
        {dialog::raises, 0, false, L"",
         L"An unhandled exception occurred in 'CPrintRuntime::PrintFileWithShellExecute'."},
        {dialog::printer, 0, true, L"64 printto " + file + L" \"The Printer\"", L""},
        {dialog::plain, 0, true, L"64 print " + file + L" -", L""},
        {dialog::plain, 0xFFFFFFF0, false, L"64 print " + file + L" -", refused}};
    for (const auto& [answer, error, result, order, errors] : cases) {
        SetUp();
        g_dialog = answer;
        g_shell_error = error;
        CPrintRuntime printing(nullptr);
        printing.SetPath(file.c_str());
        EXPECT_GIVES(printing.PrintFileWithShellExecute(), result, g_seen, shown + order);
        EXPECT_EQ(printing.GetErrorStream(), errors);
    }
    CPrintRuntime known(nullptr);
    EXPECT_TRUE(known.GetShellExecuteReturnValue(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(
        std::wstring(known.GetErrorStream()), L"ShellExecute returned: " + [] {
            wchar_t text[512] = L"";
            FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_FILE_NOT_FOUND, 0, text, 512, nullptr);
            return std::wstring(text, wcscspn(text, L"\r\n"));
        }());
}

TEST_F(Printing, TakesAwayWhatIsPrintedUnlessItIsToStay)
{
    for (const bool stays : {true, false}) {
        g_process = Ended();
        CPrintRuntime printing(nullptr);
        printing.SetPath(file.c_str());
        EXPECT_TRUE(!stays || printing.SetDelete(false)) << "it would go at first";
        EXPECT_TRUE(printing.PrintFileWithShellExecute());
        EXPECT_EQ(GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES, stays);
    }
    folder.Write(L"read me.txt", "text");
    static DWORD waited;
    const Patched waits(
        "WaitForSingleObject", +[](HANDLE, DWORD time) WINAPI -> DWORD {
            EXPECT_EQ(time, 10000u);
            return waited;
        });
    const Table<DWORD, const wchar_t*> cases = {
        {WAIT_TIMEOUT, L"After waiting for 10 seconds, it appears the file is still printing.  Because the file is "
                       L"still being accessed, this program will move on without deleting the file."},
        {WAIT_FAILED, L"WaitForSingleObject returned an error code while attempting to print."}};
    for (const auto& [answer, error] : cases) {
        waited = answer;
        g_process = Ended();
        CPrintRuntime printing(nullptr);
        printing.SetPath(file.c_str());
        EXPECT_GIVES(printing.PrintFileWithShellExecute(), true, std::wstring(printing.GetErrorStream()), error);
        EXPECT_NE(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES);
    }
}

TEST_F(Printing, OfTextGoesThroughATemporaryFile)
{
    g_dialog = dialog::plain;
    g_process = Ended();
    CPrintRuntime printing(nullptr);
    EXPECT_TRUE(printing.PrintStream("a text", L"rtf"));
    const std::wstring path = printing.Path();
    EXPECT_TRUE(path.ends_with(L"\\Ins1.rtf")) << path;
    EXPECT_EQ(g_seen, shown + L"64 print " + path + L" -");
    EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);

    EXPECT_TRUE(printing.CreateTempFile(L"txt") && printing.WriteStreamToFile("12345"));
    WIN32_FILE_ATTRIBUTE_DATA facts{};
    GetFileAttributesExW(printing.Path(), GetFileExInfoStandard, &facts);
    EXPECT_EQ(facts.nFileSizeLow, 5u);
    EXPECT_FALSE(CPrintRuntime(nullptr).WriteStreamToFile("no file"));

    const Table<const char*, void*, std::wstring> cases = {
        {"GetTempPathW", reinterpret_cast<void*>(+[](DWORD, wchar_t*) WINAPI -> DWORD { return 0; }),
         L"GetTempPath Failed."},
        {"GetTempFileNameW",
         reinterpret_cast<void*>(+[](const wchar_t*, const wchar_t* prefix, UINT number, wchar_t*) WINAPI -> UINT {
             EXPECT_TRUE(wcscmp(prefix, L"Ins") == 0 && number == 1);
             return 0;
         }),
         L"GetTempFileName Failed.  The file was to be created in '" + path.substr(0, path.size() - 8) + L".'"},
        {"CreateFileW",
         reinterpret_cast<void*>(+[](const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE)
                                      WINAPI -> HANDLE { return INVALID_HANDLE_VALUE; }),
         L"Invalid handle to file " + path + L"."},
        {"WriteFile",
         reinterpret_cast<void*>(+[](HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) WINAPI -> BOOL { return FALSE; }),
         L"WriteFile returned 0."}};
    for (const auto& [function, replacement, error] : cases) {
        const ImportPatch patch(GetModuleHandleW(nullptr), function, replacement);
        CPrintRuntime failing(nullptr);
        EXPECT_FALSE(failing.PrintStream("a text", L"rtf")) << function;
        EXPECT_EQ(failing.GetErrorStream(),
                  error + L"; This error occurred while processing the file '" + failing.Path() + L"'.");
        EXPECT_EQ(GetFileAttributesW(path.c_str()), INVALID_FILE_ATTRIBUTES);
    }
}

TEST_F(Printing, FindsTheVisibleWindowThatBelongsToTheGivenOne)
{
    const HWND parent = NewWindow(L"Static", WS_POPUP);
    static HWND owner;
    const Replaced dialogs(late::print_dialog, [](PRINTDLGW* given) WINAPI -> BOOL {
        owner = given->hwndOwner;
        return FALSE;
    });
    EXPECT_EQ(_PrintFile(parent, file.c_str()), -1);
    EXPECT_EQ(owner, parent);
    const auto child = [&](DWORD style) { return NewWindow(L"Static", WS_POPUP | style, {0, 0, 9, 9}, parent); };
    const HWND hidden = child(0), visible = child(WS_VISIBLE);
    EXPECT_FALSE(PrintFile(parent, file.c_str()));
    EXPECT_EQ(owner, visible) << hidden;
    DestroyWindow(parent);
    const Replaced prints_now(late::print_dialog, &Dialog);
    g_process = Ended();
    EXPECT_EQ(_PrintFile(nullptr, file.c_str()), 0);
    EXPECT_NE(GetFileAttributesW(file.c_str()), INVALID_FILE_ATTRIBUTES) << "a script's file stays";
    EXPECT_TRUE(PrintFile(nullptr, nullptr));
    EXPECT_TRUE(g_seen.ends_with(L"64 printto  \"The Printer\"")) << g_seen;
}

} // namespace
