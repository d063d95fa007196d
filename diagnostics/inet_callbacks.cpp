#include "inet_callbacks.h"

#include <mutex>
#include <unordered_map>

#include "wininet_async_handle.h"

namespace vh {

namespace {

struct request {
    // Null once the object has given the request up.
    wininet_async_handle* target = nullptr;
    std::shared_ptr<read_block> block;
    int handles = 0;
    bool in_call = false;

    bool over() const { return !target && handles <= 0 && !in_call; }
};

std::mutex requests_lock;
std::unordered_map<DWORD_PTR, request> requests;
DWORD_PTR last_context = 0;

// Late news come to this code, so it has to stay.
void KeepThisModule()
{
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<const wchar_t*>(&KeepThisModule), &module);
}

} // namespace

void inet_context::begin(wininet_async_handle& target)
{
    end();
    const std::lock_guard guard(requests_lock);
    const DWORD_PTR value = ++last_context;
    requests[value].target = &target;
    m_value = value;
}

void inet_context::end()
{
    if (!m_value)
        return;
    bool stays = false;
    {
        const std::lock_guard guard(requests_lock);
        const auto found = requests.find(m_value);
        found->second.target = nullptr;
        stays = !found->second.over();
        if (!stays)
            requests.erase(found);
    }
    m_value = 0;
    if (stays)
        KeepThisModule();
}

void inet_context::call_begins(std::shared_ptr<read_block> block)
{
    const std::lock_guard guard(requests_lock);
    request& found = requests[m_value];
    found.in_call = true;
    found.block = std::move(block);
}

void inet_context::call_ended()
{
    const std::lock_guard guard(requests_lock);
    requests[m_value].in_call = false;
}

void CALLBACK inet_status_callback(HINTERNET, DWORD_PTR context, DWORD status, void* information, DWORD)
{
    // Closed at the end, outside the lock: closing brings further news.
    unique_inet orphan;
    const std::lock_guard guard(requests_lock);
    const auto found = requests.find(context);
    if (found == requests.end())
        return;
    request& about = found->second;
    switch (status) {
    case INTERNET_STATUS_HANDLE_CREATED: {
        const auto handle = reinterpret_cast<HINTERNET>(static_cast<INTERNET_ASYNC_RESULT*>(information)->dwResult);
        ++about.handles;
        if (about.target)
            about.target->handle_created(handle);
        else
            orphan.reset(handle);
        break;
    }
    case INTERNET_STATUS_HANDLE_CLOSING:
        --about.handles;
        if (about.target)
            about.target->handle_closing();
        break;
    case INTERNET_STATUS_REQUEST_COMPLETE:
        about.in_call = false;
        if (about.target)
            about.target->request_complete(*static_cast<INTERNET_ASYNC_RESULT*>(information));
        break;
    default:
        break;
    }
    if (about.over())
        requests.erase(found);
}

} // namespace vh
