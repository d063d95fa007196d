// Dialogs of scripts, against the window system's own calls.
#include <string>

#include "../exports/vhrt.h"
#include "areas.h"
#include "modules.h"

namespace bench {

namespace {

constexpr int32_t twenty_controls = 600;
constexpr int button = 1102;

std::wstring Templates()
{
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    return std::wstring(own, std::wstring_view(own).rfind(L'\\') + 1) + L"vhtexts_dialogs.dll";
}

struct dialog_api {
    decltype(&_DefineDialog) define = BENCH_GET(Library(), _DefineDialog);
    decltype(&_WaitOnDialog) wait = BENCH_GET(Library(), _WaitOnDialog);
    decltype(&_EndDialog) end = BENCH_GET(Library(), _EndDialog);
    decltype(&_CmdGetHwndDlg) window = BENCH_GET(Library(), _CmdGetHwndDlg);
};

INT_PTR CALLBACK Bare(HWND, UINT message, WPARAM, LPARAM) { return message == WM_INITDIALOG || message == WM_COMMAND; }

HWND MakeBare(HMODULE module)
{
    return CreateDialogParamW(module, MAKEINTRESOURCEW(twenty_controls), nullptr, &Bare, 0);
}

void PostClick(HWND dialog)
{
    PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

// The next message of that kind, with what comes before it.
void PumpTo(UINT wanted)
{
    for (MSG message{}; message.message != wanted;)
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
}

} // namespace

void Dialogs(suite& s)
{
    const std::wstring templates = Templates();
    // Held, so that neither side loads the file anew.
    const HMODULE module = LoadLibraryW(templates.c_str());
    const dialog_api api;
    const auto make_context = BENCH_GET(Library(), __CreateObjectContext);
    ObjectContext* context = make_context(nullptr, nullptr);
    api.define(context, L"d", nullptr, templates.c_str(), twenty_controls, L"", 0, nullptr, 1);
    const work created{[&](long count) {
        for (; count > 0; --count) {
            api.wait(context, L"d");
            api.end(context, L"d");
        }
    }};
    const work created_bare{[&](long count) {
        for (; count > 0; --count)
            DestroyWindow(MakeBare(module));
    }};
    s.Compare("create and destroy, 20 controls, to the bare call", 1.1, created, created_bare);

    api.wait(context, L"d");
    const HWND dialog = reinterpret_cast<HWND>(api.window(context, L"d"));
    const HWND bare = MakeBare(module);
    const work event{[&](long count) {
        for (; count > 0; --count) {
            PostClick(dialog);
            Keep(api.wait(context, L"d"));
        }
    }};
    const work event_bare{[&](long count) {
        for (; count > 0; --count) {
            PostClick(bare);
            PumpTo(WM_COMMAND);
        }
    }};
    s.Compare("an event to the script, to post, peek and dispatch", 1.2, event, event_bare);
    DestroyWindow(bare);
    api.end(context, L"d");
    BENCH_GET(Library(), __ReleaseObjectContext)(context);
    FreeLibrary(module);
}

} // namespace bench
