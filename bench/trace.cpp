// Trace records of a copy of the library that traces, and what tracing costs while it is off.
#include <filesystem>
#include <memory>

#include "../scriptdata/unique.h"
#include "../tests/support/temp_folder.h"
#include "areas.h"
#include "counting.h"
#include "modules.h"

namespace bench {

namespace {

// While it lives, the registry of the current user is an empty key of our own, with the trace switched on: the
// user's own switch is neither read nor touched.
class trace_switch {
public:
    explicit trace_switch(const std::wstring& path)
    {
        vh::unique_key root, traced;
        RegCreateKeyExW(HKEY_CURRENT_USER, name, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, root.put(),
                        nullptr);
        RegCreateKeyExW(root.get(), L"VHlogit", 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, traced.put(),
                        nullptr);
        RegSetValueExW(traced.get(), L"FileNamePath", 0, REG_SZ, reinterpret_cast<const BYTE*>(path.c_str()),
                       static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t)));
        RegOverridePredefKey(HKEY_CURRENT_USER, root.get());
    }
    trace_switch(const trace_switch&) = delete;
    trace_switch& operator=(const trace_switch&) = delete;
    ~trace_switch()
    {
        RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
        RegDeleteTreeW(HKEY_CURRENT_USER, name);
    }

private:
    static constexpr const wchar_t* name = L"VHRT benchmark";
};

// A copy of the library under another name, which reads the switch at its own load.
class tracing_library {
public:
    tracing_library(const vh::test::TempFolder& folder, const std::wstring& trace)
    {
        const std::wstring copy = folder / L"VHRT traced.dll";
        std::filesystem::copy_file(ProgramFolder() + L"VHRT.dll", copy);
        const trace_switch on(trace);
        m_module = std::make_unique<module>(copy.c_str());
    }
    const module& operator*() const { return *m_module; }

private:
    std::unique_ptr<module> m_module;
};

work WriteLines(decltype(&_SetupTraceWrite) write, const wchar_t* text)
{
    return {[=](long count) {
        for (; count > 0; --count)
            write(L"Bench", L"Record", text);
    }};
}

void CountCalls(suite& s, const module& traced, decltype(&_SetupTraceWrite) write)
{
    constexpr long records = 2;
    const call_counter opens(traced.handle(), "CreateFileW");
    const call_counter seeks(traced.handle(), "SetFilePointerEx");
    const call_counter writes(traced.handle(), "WriteFile");
    const call_counter closes(traced.handle(), "CloseHandle");
    write(L"Bench", L"Record", L"counted");
    s.Count("opens of a line, two records", records, opens.calls());
    s.Count("seeks", records, seeks.calls());
    s.AtMost("writes", 2 * records, writes.calls());
    s.Count("closes", records, closes.calls());
}

} // namespace

void Trace(suite& s)
{
    constexpr const wchar_t* details = L"one line of ordinary details, about sixty units in length";
    const vh::test::TempFolder folder;
    const std::wstring path = folder / L"library.bin";
    const std::wstring floor_path = folder / L"floor.bin";
    {
        const tracing_library traced(folder, path);
        const auto write = BENCH_GET(*traced, _SetupTraceWrite);
        const auto bare = BENCH_GET(Floor(), _SetupTraceWrite);
        const auto trace_to = Floor().Get<void(const wchar_t*)>("TraceTo");
        trace_to(floor_path.c_str());
        s.Compare("a line, to two bare records", 1.05, WriteLines(write, details), WriteLines(bare, details));
        CountCalls(s, *traced, write);
        // The twin's file stays short.
        std::filesystem::resize_file(path, 100000000);
        s.Compare("a line behind 100 MB, to two bare records", 1.1, WriteLines(write, details),
                  WriteLines(bare, details));
        trace_to(nullptr);
    }
    s.Extra("a traced export while the trace is off", 3, WriteLines(BENCH_GET(Library(), _SetupTraceWrite), details),
            WriteLines(BENCH_GET(Floor(), _SetupTraceWrite), details));
}

} // namespace bench
