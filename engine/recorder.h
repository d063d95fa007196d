// The record of engine calls, for tests: each call as one line of text, and any call made to fail.
#pragma once

#include <atomic>
#include <string>
#include <string_view>
#include <vector>
#include <windows.h>

namespace vh::engine {

// A line is "Interface.Method(argument, argument)": in arguments only, texts in quotes. A query for another
// interface of an object is "IUnknown.QueryInterface(ISetupDataEx)", one for a service is
// "IServiceProvider.QueryService(ISetupData)". Counting and failing work whether recording is on or off.
class Recorder {
public:
    // Off at the start: a run without tests keeps no lines.
    void Record(bool on) { m_recording = on; }
    const std::vector<std::wstring>& Lines() const { return m_lines; }
    // How many recorded lines begin with `start`.
    long Count(std::wstring_view start) const;
    // Calls since the start or the last Reset.
    long Calls() const { return m_calls; }

    // The n-th call from now on, 1 being the next one, returns `code` and does nothing.
    void FailCall(long n, HRESULT code);
    // Every call whose line begins with `start` returns `code` and does nothing; an S_OK code lifts that.
    void FailCall(std::wstring start, HRESULT code);
    // Forgets lines, counts and failures.
    void Reset();

    // From now on every call returns E_ABORT and does nothing. True when none is under way any more; any thread may
    // ask.
    bool Shut()
    {
        m_shut = true;
        return m_inside == 0;
    }

    // Whether anybody reads the text of a line.
    bool NeedsText() const { return m_recording || !m_failures.empty(); }
    // Notes a call; any other result than S_OK is what the call has to return.
    HRESULT Enter(std::wstring line);
    // The call is over.
    void Leave() { --m_inside; }

private:
    struct Failure {
        std::wstring start;
        HRESULT code;
    };

    std::atomic<bool> m_shut{false};
    std::atomic<int> m_inside{0};
    bool m_recording = false;
    long m_calls = 0;
    long m_failAt = 0;
    HRESULT m_failCode = S_OK;
    std::vector<Failure> m_failures;
    std::vector<std::wstring> m_lines;
};

} // namespace vh::engine
