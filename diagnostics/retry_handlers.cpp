#include "retry_handlers.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace vh {

namespace {

struct registration {
    DWORD thread;
    thread_retry_handler* handler;
};

std::mutex registrations_lock;
std::vector<registration> registrations;

std::vector<thread_retry_handler*> HandlersOfThisThread()
{
    std::vector<thread_retry_handler*> found;
    const std::lock_guard guard(registrations_lock);
    for (auto one = registrations.rbegin(); one != registrations.rend(); ++one)
        if (one->thread == GetCurrentThreadId())
            found.push_back(one->handler);
    return found;
}

class thread_dispatcher final : public inet_retry_handler {
public:
    DWORD on_error(inet_file& file) override
    {
        for (thread_retry_handler* handler : HandlersOfThisThread())
            if (const DWORD answer = handler->on_error(file))
                return answer;
        return 0;
    }
};

} // namespace

thread_retry_handler::thread_retry_handler()
{
    const std::lock_guard guard(registrations_lock);
    registrations.push_back({GetCurrentThreadId(), this});
}

thread_retry_handler::~thread_retry_handler()
{
    const std::lock_guard guard(registrations_lock);
    std::erase_if(registrations, [this](const registration& one) { return one.handler == this; });
}

inet_retry_handler& process_retry_handler()
{
    static thread_dispatcher dispatcher;
    return dispatcher;
}

} // namespace vh
