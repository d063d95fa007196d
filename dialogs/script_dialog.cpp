#include "script_dialog.h"

#include "delivery.h"
#include "dialog_manager.h"
#include "dialog_procedure.h"
#include "folder_test.h"
#include "late_dialogs.h"

namespace {

// Which answers silent mode gives in the place of a user: one check box off, one on.
struct SilentAnswer {
    const wchar_t* dialog;
    int off;
    int on;
};
constexpr SilentAnswer silent_answers[] = {
    {L"SdWelcomeMaint", 301, 302}, {L"SdFinishReboot", 502, 503}, {L"SdFinishUpdateReboot", 502, 503}};

constexpr int most_failures = 100;
constexpr UINT forwarded_message = 895;

bool IsKey(UINT message) { return message >= WM_KEYFIRST && message <= 265; }
bool IsMouse(UINT message) { return message >= WM_MOUSEFIRST && message <= 525; }

// The child of the dialog that a window in it belongs to.
HWND DirectChild(HWND dialog, HWND window)
{
    HWND parent = vh::late::get_parent(window);
    while (parent && parent != dialog) {
        window = parent;
        parent = vh::late::get_parent(window);
    }
    return window;
}

} // namespace

CScriptDialog::CScriptDialog(CDialogManager& manager, const stringx& name, const DialogDefinition& definition)
    : m_manager(manager), m_name(name), m_fontName(manager.font_name()), m_mainImage(manager.main_image()),
      m_branding(manager.branding), m_fontSize(manager.font_size()), m_definition(definition),
      m_delivery(static_cast<Delivery>(definition.style & ~style_centred))
{
}

CScriptDialog::~CScriptDialog() { DropWindow(); }

// The handle goes first: messages of the window's end may end the dialog again.
void CScriptDialog::DropWindow()
{
    const HWND window = std::exchange(m_window, nullptr);
    // The window of another thread stays, and must not know this object any more.
    if (window && vh::late::is_window(window) && !vh::late::destroy_window(window))
        vh::late::remove_prop(window, dialog_property);
}

HWND CScriptDialog::Control(int id) const { return vh::late::get_dialog_item(m_window, id); }

bool CScriptDialog::Delivers() const
{
    return vh::Leaves(m_delivery, m_event, m_links.contains(static_cast<int32_t>(LOWORD(m_event.wParam))));
}

void CScriptDialog::SetFont(const stringx& face, uint16_t size)
{
    m_fontName = face;
    m_fontSize = size;
}

// The first call for a dialog that has no window.
int32_t CScriptDialog::Open()
{
    // Asked for inside its own creation.
    if (m_window)
        return wait_failed;
    const unsigned ends = m_ends;
    const bool done = Create();
    if (m_raised && !m_created)
        DropWindow();
    RaiseWhatIsRaised();
    if (m_ends != ends)
        return wait_failed;
    if (!done) {
        ++m_failedCreations;
        return wait_failed;
    }
    m_created = true;
    m_imageButtonsPending = vh::WantsImageButtons(m_window);
    m_failedCreations = 0;
    m_manager.Push(m_name);
    return m_ends == ends ? created : wait_failed;
}

// Whatever lets messages through may end the dialog, and its manager with it.
int32_t CScriptDialog::Wait()
{
    if (m_failedCreations >= most_failures) {
        TellOfFailures();
        m_failedCreations = 0;
        return wait_failed;
    }
    if (!m_created)
        return Open();
    const unsigned ends = m_ends;
    if (!m_shown) {
        PrepareToShow();
        if (m_ends == ends && m_manager.scene().silentEx)
            return AnswerSilently();
    }
    const WaitingDialog waiting(*this);
    while (m_ends == ends) {
        RaiseWhatIsRaised();
        if (m_queue.empty() && !m_shown) {
            Show();
            continue;
        }
        if (m_queue.empty() && !m_manager.fetched) {
            MSG message{};
            if (vh::late::get_message(&message, nullptr, 0u, 0u) <= 0)
                return loop_ended;
            if (!m_abandoned)
                m_manager.fetched = message;
            continue;
        }
        Reactivate();
        if (m_ends != ends)
            break;
        if (!m_queue.empty()) {
            if (int32_t result = 0; TakeEvent(result))
                return result;
            continue;
        }
        // A wait inside may have taken it.
        if (!m_manager.fetched)
            continue;
        MSG message = *m_manager.fetched;
        m_manager.fetched.reset();
        if (message.message == WM_KEYDOWN && message.wParam == VK_F1)
            return help_key;
        Handle(message);
    }
    // Ended by its own events.
    return wait_failed;
}

void CScriptDialog::PrepareToShow()
{
    if (m_skinAttr) {
        vh::late::remove_prop(m_window, skin_property);
        m_manager.skin.Apply(*std::exchange(m_skinAttr, {}));
    }
    if (!std::exchange(m_imageButtonsPending, false))
        return;
    m_failedCreations = 0;
    const vh::ResourceModules modules = m_manager.scene().modules;
    vh::SetUpImageButtons(m_window, modules, m_drawing.pictures);
}

int32_t CScriptDialog::AnswerSilently() const
{
    for (const SilentAnswer& answer : silent_answers) {
        if (m_name != answer.dialog)
            continue;
        if (const HWND off = Control(answer.off))
            vh::late::send_message(off, UINT{BM_SETCHECK}, WPARAM{BST_UNCHECKED}, LPARAM{0});
        if (const HWND on = Control(answer.on))
            vh::late::send_message(on, UINT{BM_SETCHECK}, WPARAM{BST_CHECKED}, LPARAM{0});
    }
    return silent;
}

void CScriptDialog::Show()
{
    // An end that comes from the messages of showing takes it back.
    m_shown = true;
    vh::late::show_window(m_window, SW_SHOWNORMAL);
    if (!m_abandoned && m_manager.scene().windowEx1)
        m_manager.scene().windowEx1->DropPicture();
}

// A dialog that lost its activation is pulled forward once in its lifetime.
void CScriptDialog::Reactivate()
{
    if (m_neverDeactivated || m_activatedOnce)
        return;
    m_activatedOnce = true;
    vh::late::set_active_window(m_window);
}

void CScriptDialog::RaiseWhatIsRaised()
{
    if (m_raised)
        std::rethrow_exception(std::exchange(m_raised, nullptr));
}

bool CScriptDialog::TakeEvent(int32_t& result)
{
    const DialogEvent next = m_queue.front();
    m_queue.pop_front();
    m_event.message = next.message;
    m_event.wParam = next.wParam;
    m_event.lParam = next.lParam;
    // Other messages leave what the last notification said.
    if (next.message == WM_NOTIFY) {
        m_event.code = next.code;
        m_event.source = next.source;
        m_event.sourceId = next.sourceId;
    }
    if (!Delivers())
        return false;
    m_failedCreations = 0;
    switch (m_event.message) {
    case WM_CLOSE:
        result = closed;
        return true;
    case WM_COMMAND:
        result = LOWORD(m_event.wParam);
        return true;
    case WM_NOTIFY:
        result = static_cast<int32_t>(m_event.sourceId);
        return true;
    default:
        return false;
    }
}

void CScriptDialog::Handle(MSG& message)
{
    if (IsKey(message.message) || IsMouse(message.message)) {
        const HWND focus = vh::late::get_focus();
        if (focus && vh::late::is_child(m_window, focus) &&
            vh::late::send_message(DirectChild(m_window, focus), forwarded_message, WPARAM{0},
                                   reinterpret_cast<LPARAM>(&message)) != 0)
            return;
        if (vh::late::is_dialog_message(m_window, &message))
            return;
    }
    vh::late::translate_message(&message);
    vh::late::dispatch_message(&message);
}

void CScriptDialog::TellOfFailures()
{
    enum : UINT { format_text = 11113, caption_text = 11115 };
    const vh::ResourceModules& modules = m_manager.scene().modules;
    wchar_t format[200] = L"";
    wchar_t caption[100] = L"";
    modules.LoadText(format_text, format, static_cast<int>(std::size(format)));
    modules.LoadText(caption_text, caption, static_cast<int>(std::size(caption)));
    const stringx text = vh::TextWithPath(*format ? static_cast<const wchar_t*>(format) : L"%s", L"WaitOnDialog");
    vh::late::message_box(m_manager.scene().MainWindow(), text.c_str(), static_cast<const wchar_t*>(caption),
                          UINT{MB_ICONSTOP});
}

void CScriptDialog::End()
{
    if (m_manager.scene().windowEx1)
        m_manager.scene().windowEx1->DialogClosing(m_window);
    // All of it is over when the messages of the window's end come.
    m_created = false;
    m_shown = false;
    m_failedCreations = 0;
    ++m_ends;
    const DrawingObjects drawing = std::exchange(m_drawing, {});
    DropWindow();
    m_queue.clear();
    if (!m_abandoned)
        m_manager.Pop();
}

void CScriptDialog::Abandon()
{
    m_abandoned = true;
    ++m_ends;
    DropWindow();
}

void CScriptDialog::OnUrlClicked(HWND control)
{
    DialogEvent event;
    event.message = WM_COMMAND;
    event.wParam = static_cast<WPARAM>(vh::late::get_control_id(control));
    event.lParam = reinterpret_cast<LPARAM>(control);
    m_queue.push_back(event);
}

const CLinkControlHolder* CScriptDialog::FindLink(int32_t id) const
{
    const auto found = m_links.find(id);
    return found == m_links.end() ? nullptr : found->second.get();
}

int32_t CScriptDialog::SetHtmlContent(HWND control, int32_t id, std::wstring_view text)
{
    const stringxi type = vh::ClassNameOf(control);
    if (type != L"Static" && type != L"SysLink" && !vh::HostsPages(type))
        return 0;
    const vh::LinkKind kind = vh::TakeLinkMark(text);
    if (kind == vh::LinkKind::none)
        return -1;
    // A control that has a link keeps its kind.
    auto found = m_links.find(id);
    if (found == m_links.end()) {
        auto made = vh::MakeLinkControl(kind, control, id, *this);
        if (!made->Create())
            return -1;
        found = m_links.emplace(id, std::move(made)).first;
    }
    found->second->SetContent(stringx(text));
    return 0;
}
