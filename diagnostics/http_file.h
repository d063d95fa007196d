// The reader of http and https addresses.
#pragma once

#include "inet_file.h"

namespace vh {

class http_file final : public inet_file {
public:
    // The system's own settings of proxy and connection, under the library's name.
    static inet_settings default_settings() { return {.agent = L"Orchard::file"}; }

    explicit http_file(const inet_settings& settings = default_settings(), DWORD timeout_ms = default_timeout_ms);

    bool wait(DWORD timeout_ms, HANDLE event, bool closing) override;
    // Another position drops the request; the next read asks for the rest from there.
    DWORD seek(LONG offset, DWORD whence) override;
    // Questions ask for the data and drop the answer's body; the next read makes a request of its own.
    DWORD size() override;
    bool last_modified(FILETIME* time) override;
    // A status outside 200 to 299 is a failure of 0x8004D3C0 plus the status. An answer with the whole data to a
    // request for a part counts as a refused range, status 416: it would not fit to what has come before.
    bool check_response() override;

private:
    ~http_file() override;
    bool query(DWORD what, void* value, DWORD size) const;
    // Connects for the question, and drops the answer's body.
    bool ask(DWORD what, void* value, DWORD size);
    bool is_asked_part() const;

    bool m_uses_shared_session = false;
};

} // namespace vh
