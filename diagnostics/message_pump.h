// The thread's message queue, taken from in the midst of a call that waits.
#pragma once

#include "../scriptdata/late_windows.h"

namespace vh {

// A request to end the program is somebody else's: it goes back into the queue when this object ends.
class message_pump {
public:
    message_pump() = default;
    message_pump(const message_pump&) = delete;
    message_pump& operator=(const message_pump&) = delete;
    ~message_pump()
    {
        if (m_quit)
            late::post_quit_message(m_exit_code);
    }

    // The next message, taken out of the queue; false when there is none.
    bool take(MSG& message)
    {
        while (late::peek_message(&message, nullptr, 0u, 0u, static_cast<UINT>(PM_REMOVE))) {
            if (message.message != WM_QUIT)
                return true;
            m_quit = true;
            m_exit_code = static_cast<int>(message.wParam);
        }
        return false;
    }
    static void dispatch(const MSG& message)
    {
        late::translate_message(&message);
        late::dispatch_message(&message);
    }
    // Lets the thread's windows work until the queue is empty.
    void run()
    {
        MSG message;
        while (take(message))
            dispatch(message);
    }

private:
    bool m_quit = false;
    int m_exit_code = 0;
};

} // namespace vh
