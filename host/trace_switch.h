// The registry switch of the library's trace, set for one run and put back afterwards.
#pragma once

#include <optional>
#include <string>

namespace host {

class TraceSwitch {
public:
    // Turns the trace on with the file; has to stand before the library is loaded. Throws std::runtime_error.
    explicit TraceSwitch(const std::wstring& file);
    TraceSwitch(const TraceSwitch&) = delete;
    TraceSwitch& operator=(const TraceSwitch&) = delete;
    // Restores the former file name; a key that was not there goes away again.
    ~TraceSwitch();

private:
    bool m_had_key = false;
    std::optional<std::wstring> m_former_file;
};

} // namespace host
