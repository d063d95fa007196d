// A WinInet session in asynchronous mode.
#pragma once

#include <memory>

#include "../scriptdata/stringx.h"
#include "late_wininet.h"

namespace vh {

struct inet_version {
    DWORD major = 0;
    DWORD minor = 0;
};
// Of the system's WinInet; zeros when it doesn't say.
inet_version wininet_version();

// What InternetOpenW is told.
struct inet_settings {
    stringx agent;
    DWORD access_type = INTERNET_OPEN_TYPE_PRECONFIG;
    stringx proxy{};
    stringx bypass{};
    DWORD flags = 0;
};

// Copies share the session; the last one closes it.
class inet_session {
public:
    inet_session() = default;
    // One that can't be opened is empty, with the thread's last error set.
    explicit inet_session(const inet_settings& settings);
    inet_session(const inet_session&) = default;
    inet_session& operator=(const inet_session&) = default;
    virtual ~inet_session() = default;

    HINTERNET handle() const { return m_session ? m_session->get() : nullptr; }
    // Lets the status callback hear of the session's requests.
    bool watch() const;

private:
    std::shared_ptr<unique_inet> m_session;
};

} // namespace vh
