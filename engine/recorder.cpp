#include "recorder.h"

#include <algorithm>

namespace vh::engine {

long Recorder::Count(std::wstring_view start) const
{
    return static_cast<long>(
        std::count_if(m_lines.begin(), m_lines.end(), [&](const auto& line) { return line.starts_with(start); }));
}

void Recorder::FailCall(long n, HRESULT code)
{
    m_failAt = n > 0 ? m_calls + n : 0;
    m_failCode = code;
}

void Recorder::FailCall(std::wstring start, HRESULT code)
{
    std::erase_if(m_failures, [&](const Failure& failure) { return failure.start == start; });
    if (code != S_OK)
        m_failures.push_back({std::move(start), code});
}

void Recorder::Reset()
{
    m_calls = 0;
    m_failAt = 0;
    m_failures.clear();
    m_lines.clear();
}

HRESULT Recorder::Enter(std::wstring line)
{
    // Counted before it looks: who shuts sees the call, or the call sees that.
    ++m_inside;
    if (m_shut)
        return E_ABORT;
    const bool failNow = ++m_calls == m_failAt;
    const auto failure =
        std::find_if(m_failures.begin(), m_failures.end(), [&](const Failure& f) { return line.starts_with(f.start); });
    const HRESULT code = failNow ? m_failCode : failure != m_failures.end() ? failure->code : S_OK;
    if (m_recording)
        m_lines.push_back(std::move(line));
    return code;
}

} // namespace vh::engine
