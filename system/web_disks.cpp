#include "web_disks.h"

#include <string>

#include "../diagnostics/message_pump.h"
#include "../scriptdata/path_text.h"

namespace late = vh::late;

namespace {

constexpr const wchar_t* agent_title = L"FetchOnDemand";
constexpr const wchar_t* reply_class = L"INetClassInfo";
constexpr const wchar_t* handler_property = L"FODHandler";

// The conversation with the agent.
enum agent_message : UINT {
    agent_get_disk = WM_USER + 100,      // disk index, reply window
    agent_link_ends = WM_USER + 104,     // 10, 1
    agent_request_done = WM_USER + 111,  // from the agent
    agent_reports = WM_USER + 112,       // from the agent: a code in the low 16 bits of lParam
    agent_progress_here = WM_USER + 113, // 0, window
    agent_transfer_ends = WM_USER + 114
};
constexpr short first_failure = 100;

constexpr int32_t disk_is_there = 4;
constexpr int32_t disk_is_not_there = 3;
constexpr int32_t request_failed = -2;
constexpr int32_t agent_went_away = -3;

constexpr DWORD between_checks_ms = 15000;
constexpr DWORD poll_ms = 50;

} // namespace

int32_t DiskIndex(std::wstring_view path)
{
    const std::wstring stem(vh::PathFileName(path));
    const std::size_t last = stem.find_last_not_of(L"1234567890");
    const std::size_t begin = last == stem.npos ? 0 : last + 1;
    return static_cast<int32_t>(std::wcstol(stem.c_str() + begin, nullptr, 10)) - 1;
}

FODHandler::FODHandler(ObjectContext& context, progress_query progress_window)
    : m_agent_window(late::find_window(nullptr, agent_title)), m_context(context), m_progress_window(progress_window)
{
    if (!m_agent_window)
        throw fod_no_agent;
    MakeReplyWindow();
    m_created = true;
}

void FODHandler::MakeReplyWindow()
{
    const HINSTANCE program = GetModuleHandleW(nullptr);
    WNDCLASSW known{};
    if (!late::get_class_info(program, reply_class, &known)) {
        WNDCLASSW made{};
        made.style = CS_HREDRAW | CS_VREDRAW;
        made.lpfnWndProc = &ReplyProcedure;
        made.hInstance = program;
        made.lpszClassName = reply_class;
        if (!late::register_class(&made))
            throw fod_no_reply_window;
    }
    m_reply_window = late::create_window_ex(0u, reply_class, reply_class, static_cast<DWORD>(WS_POPUP), 0, 0, 10, 10,
                                            nullptr, nullptr, program, nullptr);
    if (!m_reply_window) {
        late::unregister_class(reply_class, program);
        throw fod_no_reply_window;
    }
    late::set_prop(m_reply_window, handler_property, this);
}

void FODHandler::Close()
{
    if (!m_created)
        return;
    m_created = false;
    if (m_waiting) {
        m_result = agent_went_away;
        m_waiting = false;
    }
    if (late::is_window(m_agent_window))
        late::post_message(m_agent_window, agent_link_ends, WPARAM{10}, LPARAM{1});
    if (late::is_window(m_reply_window)) {
        late::remove_prop(m_reply_window, handler_property);
        late::destroy_window(m_reply_window);
    }
    // Its procedure lies in this library, which may go. A class that another link uses stays.
    late::unregister_class(reply_class, GetModuleHandleW(nullptr));
}

LRESULT CALLBACK FODHandler::ReplyProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam)
{
    auto* handler = static_cast<FODHandler*>(late::get_prop(window, handler_property));
    if (handler && handler->HandleReply(message, lparam))
        return 0;
    return late::def_window_proc(window, message, wparam, lparam);
}

bool FODHandler::HandleReply(UINT message, LPARAM lparam)
{
    if (message == agent_request_done) {
        m_waiting = false;
        return true;
    }
    if (message != agent_reports)
        return false;
    if (static_cast<short>(LOWORD(lparam)) >= first_failure) {
        m_result = request_failed;
        m_waiting = false;
    }
    return true;
}

// One that can't be told now is told with the next request.
void FODHandler::TellProgressWindow()
{
    HWND window = nullptr;
    if (!m_progress_sent && m_progress_window(m_context, window))
        m_progress_sent = late::post_message(m_agent_window, agent_progress_here, WPARAM{0},
                                             reinterpret_cast<LPARAM>(window)) != FALSE;
}

int32_t FODHandler::RequestDisk(int32_t index)
{
    if (m_waiting || !late::is_window(m_agent_window))
        return disk_is_not_there;
    TellProgressWindow();
    m_result = 0;
    m_waiting = true;
    late::post_message(m_agent_window, agent_get_disk, static_cast<WPARAM>(static_cast<LONG_PTR>(index)),
                       reinterpret_cast<LPARAM>(m_reply_window));
    WaitForReply();
    return m_result < 0 ? disk_is_not_there : disk_is_there;
}

// Serves one message each time, whatever arrives.
void FODHandler::WaitForReply()
{
    vh::message_pump queue;
    DWORD checked = GetTickCount();
    while (m_waiting) {
        MSG message;
        if (queue.take(message) && !HandleReply(message.message, message.lParam))
            vh::message_pump::dispatch(message);
        Sleep(poll_ms);
        if (!m_waiting || GetTickCount() - checked < between_checks_ms)
            continue;
        if (!late::is_window(m_agent_window)) {
            m_result = agent_went_away;
            m_waiting = false;
        }
        checked = GetTickCount();
    }
}

void FODHandler::EndTransfer() const { late::post_message(m_agent_window, agent_transfer_ends, WPARAM{0}, LPARAM{0}); }
