// The link with a download agent: a window of another process that fetches the setup's disks on request.
#pragma once

#include <cstdint>
#include <string_view>

#include <windows.h>

struct ObjectContext;

// Why there is no link.
enum fod_error { fod_no_agent = 1, fod_no_reply_window = 2 };

class FODHandler {
public:
    // Gives the window in which the setup shows its progress; false when there is no answer.
    using progress_query = bool (*)(ObjectContext& context, HWND& window);

    // Raises fod_error.
    FODHandler(ObjectContext& context, progress_query progress_window);
    FODHandler(const FODHandler&) = delete;
    FODHandler& operator=(const FODHandler&) = delete;
    ~FODHandler() { Close(); }

    // Tells the agent, and ends a request that waits: it is not there then.
    void Close();

    // Asks for a disk, counted from 0, and waits as long as the agent lives. Result: 4 it is there, 3 it is not; 3
    // also to a window that asks while another request waits. A window may close this object meanwhile, which then
    // has to stay until the request returns.
    int32_t RequestDisk(int32_t index);
    void EndTransfer() const;
    // Of the last request: 0, -2 for a code of 100 or more from the agent, -3 for an agent that went away.
    int32_t result() const { return m_result; }

private:
    static LRESULT CALLBACK ReplyProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    // False for a message that is not the agent's.
    bool HandleReply(UINT message, LPARAM lparam);
    void TellProgressWindow();
    void WaitForReply();
    void MakeReplyWindow();

    HWND m_agent_window;
    HWND m_reply_window = nullptr;
    bool m_created = false;
    bool m_waiting = false;
    bool m_progress_sent = false;
    int32_t m_result = 0;
    ObjectContext& m_context;
    progress_query m_progress_window;
};

// The disk that a file name stands for, counted from 0, by the digits that end the name before its extension:
// "data2.cab" is disk 1. A name without such digits gives -1.
int32_t DiskIndex(std::wstring_view path);
