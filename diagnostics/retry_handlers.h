// Who decides about failures of addresses when a file has no handler of its own.
#pragma once

#include "inet_file.h"

namespace vh {

// Registered while it lives, for files on the thread that made it. Answers as any handler; 0 leaves the failure to
// the next one on this thread, and at last to the system's dialog.
class thread_retry_handler : public inet_retry_handler {
public:
    thread_retry_handler();
    thread_retry_handler(const thread_retry_handler&) = delete;
    thread_retry_handler& operator=(const thread_retry_handler&) = delete;

protected:
    ~thread_retry_handler();
};

// Asks the thread's handlers, the newest first, at the time of the failure. Lives as long as the library.
inet_retry_handler& process_retry_handler();

} // namespace vh
