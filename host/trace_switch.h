// The registry switch of the library's trace: on only while the library loads, which is when it is read.
#pragma once

#include <string>

#include "scriptdata/unique.h"

namespace host {

// One process at a time stands between construction and destruction, so that no library sees another run's switch.
class TraceSwitch {
public:
    // Puts back what a killed run left, then turns the trace on with the file; an empty one changes nothing. Throws
    // std::runtime_error.
    explicit TraceSwitch(const std::wstring& file);
    TraceSwitch(const TraceSwitch&) = delete;
    TraceSwitch& operator=(const TraceSwitch&) = delete;
    // Puts back what the user had, in its type; a key that was not there goes away again.
    ~TraceSwitch();

private:
    vh::unique_handle m_turn;
};

} // namespace host
