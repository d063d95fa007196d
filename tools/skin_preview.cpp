#include "skin_preview.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include <windows.h>

#include <commctrl.h>

#include "diagnostics/file.h"
#include "file_bytes.h"
#include "host/console.h"
#include "host/text.h"
#include "picture_sheet.h"
#include "skin/skin_files.h"
#include "skin/skin_painter.h"

namespace tools {

namespace {

constexpr vh::skin_pair page_size{460, 305};

enum Control : int {
    next = 1,
    cancel = 2,
    back = 10,
    title = 50,
    icon = 100,
    bar,
    check,
    radio,
    down,
    disabled,
    focused
};

// In dialog units.
struct Part {
    const wchar_t* type;
    const wchar_t* text;
    DWORD style;
    int id;
    RECT place;
};
constexpr Part parts[] = {
    {WC_STATICW, L"", SS_NOPREFIX, title, {14, 8, 380, 10}},
    {WC_STATICW, L"What a dialog looks like in this section", 0, 51, {22, 20, 372, 10}},
    {WC_STATICW,
     L"A label. The quick brown fox jumps over the lazy dog, and the next line goes on where this one ends.",
     0,
     -1,
     {22, 58, 416, 18}},
    {WC_BUTTONW, L"Group", BS_GROUPBOX, -1, {22, 84, 196, 80}},
    {WC_BUTTONW, L"Check box", BS_AUTOCHECKBOX, -1, {32, 98, 170, 10}},
    {WC_BUTTONW, L"Checked", BS_AUTOCHECKBOX, check, {32, 112, 170, 10}},
    {WC_BUTTONW, L"Radio button", BS_AUTORADIOBUTTON, -1, {32, 130, 170, 10}},
    {WC_BUTTONW, L"Chosen", BS_AUTORADIOBUTTON, radio, {32, 144, 170, 10}},
    {WC_STATICW, L"Edit:", 0, -1, {240, 84, 198, 10}},
    {WC_EDITW, L"C:\\Programs", ES_AUTOHSCROLL | WS_BORDER, -1, {240, 96, 198, 14}},
    {PROGRESS_CLASSW, L"", 0, bar, {240, 122, 198, 12}},
    {WC_STATICW, L"", SS_ICON, icon, {240, 142, 21, 20}},
    {WC_STATICW, L"An icon", 0, -1, {270, 148, 168, 10}},
    {WC_BUTTONW, L"Up", BS_PUSHBUTTON, -1, {22, 186, 56, 14}},
    {WC_BUTTONW, L"Down", BS_PUSHBUTTON, down, {86, 186, 56, 14}},
    {WC_BUTTONW, L"Disabled", BS_PUSHBUTTON | WS_DISABLED, disabled, {150, 186, 56, 14}},
    {WC_BUTTONW, L"Focus", BS_PUSHBUTTON, focused, {214, 186, 56, 14}},
    {WC_BUTTONW, L"A wide button", BS_PUSHBUTTON, -1, {278, 186, 160, 14}},
    {WC_BUTTONW, L"< &Back", BS_PUSHBUTTON, back, {276, 284, 56, 14}},
    {WC_BUTTONW, L"&Next >", BS_DEFPUSHBUTTON, next, {332, 284, 56, 14}},
    {WC_BUTTONW, L"Cancel", BS_PUSHBUTTON, cancel, {396, 284, 56, 14}},
};

class PreviewDialog {
public:
    explicit PreviewDialog(const std::string& section)
    {
        struct {
            DLGTEMPLATE head{WS_POPUP | WS_VISIBLE | DS_SHELLFONT, WS_EX_TOOLWINDOW, 0, 0, 0, page_size.x, page_size.y};
            WORD menu_class_title[3]{};
            WORD points = 8;
            wchar_t face[13] = L"MS Shell Dlg";
        } shape;
        m_window = CreateDialogIndirectParamW(
            nullptr, &shape.head, nullptr, [](HWND, UINT, WPARAM, LPARAM) -> INT_PTR { return FALSE; }, 0);
        if (!m_window)
            throw std::runtime_error("no dialog can be shown here: " + host::Utf8(host::SystemText(GetLastError())));
        for (const Part& part : parts)
            Add(part);
        SetDlgItemTextW(m_window, title, host::Wide("Section " + section).c_str());
        SendDlgItemMessageW(m_window, icon, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconW(nullptr, IDI_INFORMATION)),
                            0);
        SendDlgItemMessageW(m_window, bar, PBM_SETPOS, 60, 0);
        CheckDlgButton(m_window, check, BST_CHECKED);
        CheckDlgButton(m_window, radio, BST_CHECKED);
    }
    PreviewDialog(const PreviewDialog&) = delete;
    PreviewDialog& operator=(const PreviewDialog&) = delete;
    ~PreviewDialog() { DestroyWindow(m_window); }

    HWND window() const { return m_window; }
    // As it stands on the screen.
    std::string Picture() const
    {
        SendDlgItemMessageW(m_window, down, BM_SETSTATE, TRUE, 0);
        SetFocus(GetDlgItem(m_window, focused));
        RedrawWindow(m_window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
        RECT client{};
        GetClientRect(m_window, &client);
        const PictureSheet sheet({client.right, client.bottom});
        const HDC from = GetDC(m_window);
        BitBlt(sheet.context(), 0, 0, client.right, client.bottom, from, 0, 0, SRCCOPY);
        ReleaseDC(m_window, from);
        return PngOf(sheet);
    }

private:
    void Add(const Part& part) const
    {
        RECT place{part.place.left, part.place.top, part.place.left + part.place.right,
                   part.place.top + part.place.bottom};
        MapDialogRect(m_window, &place);
        const HWND control = CreateWindowExW(0, part.type, part.text, WS_CHILD | WS_VISIBLE | part.style, place.left,
                                             place.top, place.right - place.left, place.bottom - place.top, m_window,
                                             reinterpret_cast<HMENU>(static_cast<intptr_t>(part.id)), nullptr, nullptr);
        SendMessageW(control, WM_SETFONT, static_cast<WPARAM>(SendMessageW(m_window, WM_GETFONT, 0, 0)), FALSE);
    }

    HWND m_window = nullptr;
};

// The container as a file, for the time of loading.
class TemporarySkin {
public:
    explicit TemporarySkin(const SkinSource& skin)
        : m_folder(vh::SkinTempFolder()), m_path(host::Join(std::wstring(m_folder.view()), L"vhskin"))
    {
        const std::vector<std::byte> bytes = ContainerOf(skin);
        m_path = std::wstring(vh::make_temp_name(m_path).view());
        SaveFile(m_path, {reinterpret_cast<const char*>(bytes.data()), bytes.size()}, false);
    }
    TemporarySkin(const TemporarySkin&) = delete;
    TemporarySkin& operator=(const TemporarySkin&) = delete;
    ~TemporarySkin() { DeleteFileW(m_path.c_str()); }

    bool LoadInto(Skin& skin) const { return skin.Load(m_path.c_str(), m_folder); }

private:
    stringx m_folder;
    std::wstring m_path;
};

bool IsOfLanguage(std::string_view section)
{
    const std::size_t dash = section.rfind('-');
    return dash != section.npos && section.size() - dash == 5 &&
           section.find_first_not_of("0123456789abcdef", dash + 1) == section.npos;
}

// A section's name as a file's.
std::wstring FileNameOf(const std::string& section)
{
    std::string name = section;
    for (char& letter : name)
        if (!FaultOfName({&letter, 1}).empty() && letter != ' ' && letter != '.')
            letter = '_';
    return host::Wide((FaultOfName(name + ".png").empty() ? name : "_" + name) + ".png");
}

} // namespace

bool PreviewSkin(const SkinSource& source, const std::wstring& folder, const PreviewOptions& options)
{
    const auto skin = std::make_shared<Skin>();
    if (!TemporarySkin(source).LoadInto(*skin))
        return false;
    // The class of progress bars.
    const vh::unique_module controls(LoadLibraryExW(L"comctl32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
    if (!CreateDirectoryW(host::LongPath(folder).c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS)
        ThrowFor(folder, GetLastError());
    std::vector<std::string> sections;
    for (const auto& [name, section] : skin->sections())
        if (!options.language || !IsOfLanguage(name))
            sections.push_back(name);
    if (!options.section.empty())
        sections = {options.section};
    for (const std::string& section : sections) {
        const PreviewDialog dialog(section);
        SkinAttr attr;
        attr.window = dialog.window();
        std::strncpy(attr.sectionName, section.c_str(), std::size(attr.sectionName) - 1);
        attr.version = 2;
        attr.language = options.language;
        ApplySkin(skin, attr);
        const std::wstring file = host::Join(folder, FileNameOf(section));
        SaveFile(file, dialog.Picture());
        host::Say(file);
    }
    return true;
}

} // namespace tools
