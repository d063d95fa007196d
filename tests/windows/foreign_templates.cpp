// Dialog templates from elsewhere: those of the system's own libraries, against the window system's own call.
#include "../support/handle_counts.h"
#include "../support/script_dialogs.h"

namespace {

// Name or number of each template.
using Found = std::vector<std::pair<std::wstring, WORD>>;

BOOL CALLBACK AddTemplate(HMODULE, const wchar_t*, wchar_t* name, LONG_PTR list)
{
    const bool named = !IS_INTRESOURCE(name);
    const auto number = named ? WORD{0} : static_cast<WORD>(reinterpret_cast<ULONG_PTR>(name));
    reinterpret_cast<Found*>(list)->emplace_back(named ? name : L"", number);
    return TRUE;
}

INT_PTR CALLBACK Quiet(HWND, UINT message, WPARAM, LPARAM) { return message == WM_INITDIALOG; }

// Place, style and text of each control, one line each; what the runtime itself changes is left out.
std::wstring ControlsOf(HWND dialog)
{
    std::wstring all;
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        const RECT place = PlaceWithin(dialog, child);
        all += ClassOf(child) + L" " + std::to_wstring(GetDlgCtrlID(child)) + L" " + std::to_wstring(place.left) +
               L"," + std::to_wstring(place.top) + L"," + std::to_wstring(place.right) + L"," +
               std::to_wstring(place.bottom) + L" " + TextOf(child) + L"\n";
    }
    return all;
}

TEST(ForeignTemplates, GiveTheDialogsThatTheSystemMakesOfThem)
{
    TextSession session{DialogTemplates(), StandardTexts()};
    int made = 0;
    for (const wchar_t* library : {L"comdlg32.dll", L"shell32.dll", L"comctl32.dll", L"inetcpl.cpl", L"cryptui.dll",
                                   L"mshtml.dll", L"wininet.dll"}) {
        const HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
        if (!module)
            continue;
        const std::wstring path = Filled([module](auto... to) { GetModuleFileNameW(module, to...); });
        Found templates;
        EnumResourceNamesW(module, RT_DIALOG, &AddTemplate, reinterpret_cast<LONG_PTR>(&templates));
        for (const auto& [name, number] : templates) {
            const wchar_t* found = name.empty() ? MAKEINTRESOURCEW(number) : name.c_str();
            const HWND bare = CreateDialogParamW(module, found, nullptr, &Quiet, 0);
            const std::wstring wanted = bare ? ControlsOf(bare) : L"";
            if (bare)
                DestroyWindow(bare);
            const TestDialog dialog(session, Stage::defined, L"d", number, DialogAllCommands, path, name);
            EXPECT_EQ(dialog.Wait(), bare ? int32_t{DialogCreated} : -1) << path << number;
            const HWND window = dialog.window();
            EXPECT_EQ(window ? ControlsOf(window) : L"", wanted) << path << number;
            if (window) {
                ++made;
                PostMessageW(window, WM_KEYDOWN, VK_F1, 0);
                while (dialog.Wait() > 8)
                    continue;
            }
            EXPECT_EQ(dialog.End(), 0);
        }
        FreeLibrary(module);
    }
    EXPECT_GT(made, 20);
    EXPECT_EQ(Windows(), 0);
}

} // namespace
