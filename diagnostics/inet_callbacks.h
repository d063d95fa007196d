// The way from WinInet's threads to the objects that wait for them. WinInet gets a number as its context value; only
// here it leads to an object, so that news of a request that is given up reaches nothing that has gone.
#pragma once

#include <memory>

#include "late_wininet.h"

namespace vh {

class wininet_async_handle;

// Where WinInet writes during a read. It outlives the request, also one that is given up while WinInet still writes.
struct read_block {
    explicit read_block(std::size_t size) : bytes(new (std::nothrow) std::byte[size]), capacity(bytes ? size : 0) {}

    std::unique_ptr<std::byte[]> bytes;
    std::size_t capacity;
    DWORD count = 0;
};

// One request's number. All but the destructor belong to the object's own thread.
class inet_context {
public:
    inet_context() = default;
    inet_context(const inet_context&) = delete;
    inet_context& operator=(const inet_context&) = delete;
    ~inet_context() { end(); }

    // A number of its own for the next request.
    void begin(wininet_async_handle& target);
    // From here on WinInet's news are dropped; a handle that it still makes is closed.
    void end();
    DWORD_PTR value() const { return m_value; }

    // Around a call that WinInet may finish later. `block` is what it writes to.
    void call_begins(std::shared_ptr<read_block> block = nullptr);
    void call_ended();

private:
    DWORD_PTR m_value = 0;
};

// Registered for every session of the library.
void CALLBACK inet_status_callback(HINTERNET handle, DWORD_PTR context, DWORD status, void* information, DWORD length);

} // namespace vh
