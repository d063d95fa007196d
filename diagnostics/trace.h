// The process-wide trace log. A trace call never fails its caller and leaves the last-error code alone.
#pragma once

#include <cstdint>
#include <string_view>
#include <windows.h>

namespace vh {

// Settled once at load; tested before anything else is prepared.
extern bool trace_enabled;

// Reads the switch in HKEY_CURRENT_USER\VHlogit and begins a new trace file.
void TraceInitialize(HMODULE library);
void TraceShutdown();

// One line of category, subcategory and details, cut at 16381 units.
void VHTracingInternal_TraceEx(const wchar_t* category, const wchar_t* subcategory, const wchar_t* format, ...);
// A script's own line. The text is taken as a format without arguments: its conversions show zeros.
void TraceScriptLine(const wchar_t* category, const wchar_t* subcategory, const wchar_t* text);
// One line of the category "Comment".
void VHTracingInternal_Trace(const wchar_t* format, ...);

// One record of the file, under the trace lock. Raises file_exception when a write fails; a file that
// can't be opened drops the record.
void TraceWriteRecord(std::wstring_view text);

// A trace file as plain text. Result: 0, or the system error of the file that can't be opened.
int32_t TraceDecodeFile(const wchar_t* input, const wchar_t* output);

// Begin and end records of one traced operation. The end is written by a call and not by a destructor:
// some failures leave no end record.
class TracedCall {
public:
    template <class... Fields>
    TracedCall(const wchar_t* name, const wchar_t* format, Fields... fields) : m_name(name)
    {
        if (trace_enabled)
            VHTracingInternal_TraceEx(L"VHFuncBegin", m_name, format, Shown(fields)...);
    }

    // The failure format takes the word and the code before the fields, the success format the word.
    // Passes the code through.
    template <class... Fields>
    int32_t End(int32_t code, const wchar_t* failure, const wchar_t* success, Fields... fields) const
    {
        if (trace_enabled) {
            if (code < 0)
                VHTracingInternal_TraceEx(L"VHFuncEnd", m_name, failure, L"Failure", static_cast<long>(code),
                                          Shown(fields)...);
            else
                VHTracingInternal_TraceEx(L"VHFuncEnd", m_name, success, L"Success", Shown(fields)...);
        }
        return code;
    }

    // With a word of the caller's in the first place.
    template <class... Fields>
    void EndAs(const wchar_t* word, const wchar_t* format, Fields... fields) const
    {
        if (trace_enabled)
            VHTracingInternal_TraceEx(L"VHFuncEnd", m_name, format, word, Shown(fields)...);
    }

private:
    static const wchar_t* Shown(const wchar_t* text) { return text ? text : L""; }
    template <class Number>
    static Number Shown(Number number)
    {
        return number;
    }

    const wchar_t* m_name;
};

} // namespace vh
