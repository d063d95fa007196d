// A stand-in for a download agent: a window that answers requests for disks and writes down what it is told.
//     vhrt_test_agent LOG
// Disk 1 is answered late, disk 2 after reports of small codes, disk 3 with a failure, disk 9 by going away. A link
// that ends is the end of the program.
#include <cstdio>
#include <initializer_list>
#include <windows.h>

namespace {

FILE* notes;
HWND late_reply;

void Note(UINT message, WPARAM wparam, LPARAM lparam)
{
    wchar_t window[32] = L"";
    GetClassNameW(reinterpret_cast<HWND>(lparam), window, 32);
    if (*window)
        fprintf(notes, "%u %d %ls\n", message, static_cast<int>(wparam), window);
    else
        fprintf(notes, "%u %d %d\n", message, static_cast<int>(wparam), static_cast<int>(lparam));
    fflush(notes);
}

void Answer(int disk, HWND reply)
{
    constexpr UINT done = 1135, report = 1136, late_timer = 1;
    switch (disk) {
    case 1:
        late_reply = reply;
        SetTimer(FindWindowW(nullptr, L"FetchOnDemand"), late_timer, 400, nullptr);
        return;
    case 2:
        for (const LPARAM code : {1, 99, 0xFFFB})
            PostMessageW(reply, report, 0, code);
        PostMessageW(reply, done, 0, 0);
        return;
    case 3:
        PostMessageW(reply, report, 0, MAKELONG(100, 7));
        return;
    case 9:
        PostQuitMessage(0);
        return;
    default:
        PostMessageW(reply, done, 0, 0);
    }
}

LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    if (message >= WM_USER)
        Note(message, wparam, lparam);
    switch (message) {
    case 1124:
        Answer(static_cast<int>(wparam), reinterpret_cast<HWND>(lparam));
        return 0;
    case 1128:
        PostQuitMessage(0);
        return 0;
    case WM_TIMER:
        KillTimer(window, wparam);
        PostMessageW(late_reply, 1135, 0, 0);
        return 0;
    default:
        return DefWindowProcW(window, message, wparam, lparam);
    }
}

} // namespace

int wmain(int count, wchar_t** words)
{
    notes = count == 2 ? _wfopen(words[1], L"wb") : nullptr;
    if (!notes)
        return 2;
    WNDCLASSW kind{};
    kind.lpfnWndProc = Procedure;
    kind.hInstance = GetModuleHandleW(nullptr);
    kind.lpszClassName = L"VHRT test agent";
    RegisterClassW(&kind);
    if (!CreateWindowW(kind.lpszClassName, L"FetchOnDemand", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, kind.hInstance,
                       nullptr))
        return 4;
    // A test that fails must not leave an agent behind for the next one.
    SetTimer(nullptr, 0, 60000, [](HWND, UINT, UINT_PTR, DWORD) { PostQuitMessage(0); });
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    fclose(notes);
    return 0;
}
