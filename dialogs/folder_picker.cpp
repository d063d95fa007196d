#include "folder_picker.h"

#include <algorithm>

#include "../scriptdata/task_memory.h"
#include "folder_test.h"
#include "late_dialogs.h"

namespace vh {

namespace {

constexpr int32_t no_edit_flags = BIF_BROWSEFORCOMPUTER | BIF_BROWSEFORPRINTER;
// Kinds of choice that may have no path.
constexpr int32_t named_flags = no_edit_flags | BIF_RETURNFSANCESTORS | BIF_DONTGOBELOWDOMAIN;

constexpr const wchar_t* picker_property = L"VHRT.FolderPicker";
// Sent by the dialog to itself: once when it stands on the screen, and to look after the OK button when the platform
// is through with it.
constexpr UINT started_message = WM_APP + 1;
constexpr UINT enable_message = WM_APP + 2;

// COM as the dialog needs it, for as long as it stands. A thread that shares its objects with others keeps its ways,
// and gets the dialog's plain style, which is content with that.
class ole_thread {
public:
    ole_thread() : m_code(late::ole_initialize(nullptr)) {}
    ole_thread(const ole_thread&) = delete;
    ole_thread& operator=(const ole_thread&) = delete;
    ~ole_thread()
    {
        if (ready())
            late::ole_uninitialize();
    }
    bool ready() const { return SUCCEEDED(m_code); }

private:
    HRESULT m_code;
};

constexpr bool IsEditing(int32_t flags) { return (flags & BIF_EDITBOX) && !(flags & no_edit_flags); }

stringx PathOf(PCIDLIST_ABSOLUTE item)
{
    wchar_t path[MAX_PATH] = L"";
    return item && late::path_from_id_list(item, path) ? stringx(path) : stringx();
}

} // namespace

FolderPicker::FolderPicker(const PickerTexts& texts, int32_t flags, bool verify)
    : m_texts(texts), m_flags(flags), m_editing(IsEditing(flags)), m_verify(verify)
{
}

bool FolderPicker::Run(HWND owner, const stringx& start)
{
    m_owner = owner;
    m_path = start;
    const ole_thread thread;
    unique_id_list root;
    if (m_flags & BIF_BROWSEFORCOMPUTER)
        late::special_folder_location(nullptr, CSIDL_NETWORK, root.put());

    int32_t hidden = BIF_EDITBOX;
    if (m_editing)
        hidden |= BIF_STATUSTEXT;
    if (!thread.ready())
        hidden |= BIF_NEWDIALOGSTYLE;
    wchar_t name[MAX_PATH] = L"";
    BROWSEINFOW info{};
    info.hwndOwner = owner;
    info.pidlRoot = root.get();
    info.pszDisplayName = name;
    info.lpszTitle = m_texts.message.c_str();
    info.ulFlags = static_cast<UINT>(m_flags & ~hidden);
    info.lpfn = &OnNotice;
    info.lParam = reinterpret_cast<LPARAM>(this);
    const unique_id_list picked(late::browse_for_folder(&info));
    if (m_failure)
        std::rethrow_exception(m_failure);
    // A typed folder counts whatever the tree shows.
    if (m_editing ? !m_accepted : !picked)
        return false;
    if ((m_flags & named_flags) && m_path.empty())
        m_path = name;
    return true;
}

// Nothing may fly through the platform's frames.
template <class Body>
void FolderPicker::Guarded(Body&& body) noexcept
{
    try {
        body();
    } catch (...) {
        m_failure = std::current_exception();
        if (m_dialog)
            late::post_message(m_dialog, static_cast<UINT>(WM_COMMAND), WPARAM{IDCANCEL}, LPARAM{0});
    }
}

int CALLBACK FolderPicker::OnNotice(HWND dialog, UINT notice, LPARAM parameter, LPARAM data)
{
    auto& picker = *reinterpret_cast<FolderPicker*>(data);
    picker.m_dialog = dialog;
    picker.Guarded([&] {
        if (notice == BFFM_INITIALIZED)
            picker.Start();
        else if (notice == BFFM_SELCHANGED)
            picker.TakeSelection(reinterpret_cast<PCIDLIST_ABSOLUTE>(parameter));
    });
    return 0;
}

void FolderPicker::Start()
{
    const LONG_PTR style = late::get_window_long(m_dialog, GWL_EXSTYLE);
    late::set_window_long(m_dialog, GWL_EXSTYLE, style & ~LONG_PTR{WS_EX_CONTEXTHELP});
    late::set_window_pos(m_dialog, nullptr, 0, 0, 0, 0,
                         SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    late::set_text(m_dialog, m_texts.title.c_str());
    if (m_editing) {
        StartEditing();
    } else {
        const auto tell = [&](UINT message, BOOL kind, const stringx& text) {
            late::send_message(m_dialog, message, static_cast<WPARAM>(kind), reinterpret_cast<LPARAM>(text.c_str()));
        };
        tell(BFFM_SETSTATUSTEXTW, FALSE, m_texts.second_label);
        // A copy, since the selection changes the path.
        if (const stringx start = m_path; !start.empty())
            tell(BFFM_SETSELECTIONW, TRUE, start);
    }
    Centre(m_dialog, m_owner);
}

void FolderPicker::StartEditing()
{
    m_edit.Create(m_dialog, m_texts.label, m_texts.second_label, m_path);
    EnableOk();
    late::set_prop(m_dialog, picker_property, static_cast<HANDLE>(this));
    m_platform = reinterpret_cast<WNDPROC>(
        late::set_window_long(m_dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OnMessage)));
    late::post_message(m_dialog, started_message, WPARAM{0}, LPARAM{0});
}

void FolderPicker::TakeSelection(PCIDLIST_ABSOLUTE item)
{
    if (!m_editing) {
        m_path = PathOf(item);
        return;
    }
    // What the tree selects of its own accord while it comes up does not replace the starting path.
    if (m_started)
        m_edit.SetText(PathOf(item).c_str());
    if (m_edit)
        late::post_message(m_dialog, enable_message, WPARAM{0}, LPARAM{0});
}

void FolderPicker::EnableOk() const
{
    if (const HWND ok = late::get_dialog_item(m_dialog, IDOK))
        late::enable_window(ok, TrimmedText(m_edit.Text().view()).empty() ? FALSE : TRUE);
}

bool FolderPicker::Accept()
{
    const stringx typed = m_edit.Text();
    stringx folder(TypedFolder(typed.view()));
    if (IsFolderAccepted(folder, m_verify)) {
        m_path = std::move(folder);
        return true;
    }
    late::message_box(m_dialog, TextWithPath(m_texts.bad_folder.view(), folder.view()).c_str(),
                      m_texts.bad_folder_title.c_str(), static_cast<UINT>(MB_OK | MB_ICONEXCLAMATION));
    m_edit.Select();
    return false;
}

LRESULT CALLBACK FolderPicker::OnMessage(HWND dialog, UINT message, WPARAM wide, LPARAM parameter)
{
    auto* picker = static_cast<FolderPicker*>(late::get_prop(dialog, picker_property));
    if (!picker)
        return late::def_window_proc(dialog, message, wide, parameter);
    LRESULT result = 0;
    picker->Guarded([&] { result = picker->Handle(message, wide, parameter); });
    return result;
}

LRESULT FolderPicker::HandleByPlatform(UINT message, WPARAM wide, LPARAM parameter) const
{
    return late::call_window_proc(m_platform, m_dialog, message, wide, parameter);
}

LRESULT FolderPicker::Handle(UINT message, WPARAM wide, LPARAM parameter)
{
    switch (message) {
    case started_message:
        m_started = true;
        m_edit.Select();
        EnableOk();
        return 0;
    case enable_message:
        EnableOk();
        return 0;
    case WM_COMMAND:
        if (LOWORD(wide) == PickerEdit::edit_id) {
            if (HIWORD(wide) == EN_CHANGE)
                EnableOk();
            return 0;
        }
        if (LOWORD(wide) == IDCANCEL)
            m_accepted = false;
        else if (LOWORD(wide) == IDOK && !(m_accepted = Accept()))
            return 0;
        break;
    case WM_WINDOWPOSCHANGING: {
        const LRESULT result = HandleByPlatform(message, wide, parameter);
        auto& place = *reinterpret_cast<WINDOWPOS*>(parameter);
        if (!(place.flags & SWP_NOSIZE))
            place.cy = std::max(place.cy, m_edit.LeastHeight());
        return result;
    }
    case WM_SIZE: {
        const LRESULT result = HandleByPlatform(message, wide, parameter);
        m_edit.Arrange();
        return result;
    }
    case WM_NCDESTROY: {
        const WNDPROC platform = m_platform;
        const HWND dialog = m_dialog;
        Detach();
        return late::call_window_proc(platform, dialog, message, wide, parameter);
    }
    default:
        break;
    }
    return HandleByPlatform(message, wide, parameter);
}

// Gives the dialog back to the platform, unless somebody else has stepped in between.
void FolderPicker::Detach()
{
    late::remove_prop(m_dialog, picker_property);
    if (late::get_window_long(m_dialog, GWLP_WNDPROC) == reinterpret_cast<LONG_PTR>(&OnMessage))
        late::set_window_long(m_dialog, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(m_platform));
    m_dialog = nullptr;
}

} // namespace vh
