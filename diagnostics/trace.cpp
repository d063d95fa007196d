#include "trace.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstring>
#include <memory>
#include <vector>

#include "../scriptdata/format.h"
#include "../scriptdata/last_error.h"
#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"
#include "file.h"
#include "trace_record.h"
#include "trace_switch.h"
#include "trace_text.h"

namespace vh {

bool trace_enabled = false;

namespace {

constexpr std::size_t line_units = 16384;
// The details end in two units of their own behind this many.
constexpr std::size_t detail_units = 16381;

// What only a tracing process has.
struct trace_state {
    CRITICAL_SECTION lock;
    stringx path;
    std::array<std::byte, trace_record_limit> payload;
};
trace_state* state = nullptr;

// Set from the registry and kept; nothing depends on it.
bool trace_std = false;

class trace_lock {
public:
    trace_lock() { EnterCriticalSection(&state->lock); }
    trace_lock(const trace_lock&) = delete;
    trace_lock& operator=(const trace_lock&) = delete;
    ~trace_lock() { LeaveCriticalSection(&state->lock); }
};

// Narrow text of the record in the state's buffer, up to its NUL or the buffer's end.
std::size_t FillPayload(std::wstring_view text)
{
    char* bytes = reinterpret_cast<char*>(state->payload.data());
    const auto units = static_cast<int>(text.size());
    int count =
        units ? WideCharToMultiByte(CP_THREAD_ACP, 0, text.data(), units, bytes, trace_record_limit, nullptr, nullptr)
              : 0;
    if (count == 0 && units) {
        const stringx whole(text);
        const char* narrow = whole.AsNarrow();
        count = static_cast<int>(strnlen(narrow, trace_record_limit));
        std::memcpy(bytes, narrow, static_cast<std::size_t>(count));
    }
    return strnlen(bytes, static_cast<std::size_t>(count));
}

void WriteOrFail(HANDLE handle, const void* bytes, DWORD count)
{
    DWORD written = 0;
    if (!WriteFile(handle, bytes, count, &written, nullptr))
        throw file_exception(GetLastError(), state->path);
}

// Line ends inside the details become "_"; one at the end goes.
std::size_t CleanDetails(wchar_t* text, std::size_t length)
{
    if (length && text[length - 1] == L'\n')
        --length;
    if (length && text[length - 1] == L'\r')
        --length;
    std::size_t out = 0;
    for (std::size_t in = 0; in < length; ++in) {
        if (text[in] == L'\r' && in + 1 < length && text[in + 1] == L'\n')
            ++in;
        text[out++] = text[in] == L'\n' ? L'_' : text[in];
    }
    return out;
}

// In place, up to `room` units and a NUL.
void HidePasswords(wchar_t* text, std::size_t room, bool cut)
{
    const std::wstring_view shown(text);
    if (shown.find(L"://") == shown.npos)
        return;
    const std::wstring masked = WithoutPasswords(shown, cut);
    text[masked.copy(text, room)] = L'\0';
}

void WriteLineV(const wchar_t* category, const wchar_t* subcategory, const wchar_t* format, va_list arguments)
{
    std::array<wchar_t, line_units> line;
    bool cut = FormatText(line.data(), line.size(), L"%ls|%ls|", category ? category : L"",
                          subcategory ? subcategory : L"") < 0;
    HidePasswords(line.data(), line.size() - 1, cut);
    TraceWriteRecord(line.data());

    cut = FormatTextV(line.data(), detail_units + 1, format, arguments) < 0;
    HidePasswords(line.data(), detail_units, cut);
    const std::size_t length = CleanDetails(line.data(), std::wcslen(line.data()));
    line[length] = L'\r';
    line[length + 1] = L'\n';
    TraceWriteRecord({line.data(), length + 2});
}

// `name` says whose line was lost when something went wrong.
template <class Write>
void Guarded(const wchar_t* name, Write&& write) noexcept
{
    keep_last_error keep;
    try {
        write();
        return;
    } catch (...) {
    }
    try {
        TraceWriteRecord(Concat(L"VHException|", name, L"\r\n"));
    } catch (...) {
        // The trace can't be written at all, which is not the caller's concern.
    }
}

void WriteHeader()
{
    const auto record = [](const wchar_t* format, auto... arguments) {
        std::array<wchar_t, 512> text;
        FormatText(text.data(), text.size(), format, arguments...);
        TraceWriteRecord(text.data());
    };
    SYSTEMTIME now;
    GetLocalTime(&now);
    const executable_facts exe = ReadExecutableFacts();
    record(L"FormatVersion=00000112\r\n\r\n");
    record(L"VHRT setup trace. Copyright (c) The VHRT authors. Licensed under the MIT license.\r\n\r\n");
    record(L"TraceStarted: %.2ld/%.2ld/%.2ld %.2ld:%.2ld:%.2ld\r\n", static_cast<long>(now.wMonth),
           static_cast<long>(now.wDay), static_cast<long>(now.wYear), static_cast<long>(now.wHour),
           static_cast<long>(now.wMinute), static_cast<long>(now.wSecond));
    record(L"SetupExe: %ls\r\n", exe.path);
    record(L"SetupExeVersion: %ld.%ld.%ld.%ld\r\n", exe.version[0], exe.version[1], exe.version[2], exe.version[3]);
    record(L"\r\nTraceData:\r\n");
    record(L"Category|SubCategory|Details\r\n");
}

} // namespace

void TraceInitialize(HMODULE)
{
    keep_last_error keep;
    trace_switch wanted;
    if (!ReadTraceSwitch(wanted))
        return;
    try {
        auto made = std::make_unique<trace_state>();
        made->path = std::move(wanted.path);
        trace_std = wanted.trace_std;
        InitializeCriticalSectionAndSpinCount(&made->lock, 0);
        state = made.release();
        trace_enabled = true;
        if (GetFileAttributesW(state->path.c_str()) == INVALID_FILE_ATTRIBUTES)
            WriteHeader();
    } catch (...) {
        // Without memory there is no trace; without a writable file there may be one later.
    }
}

void TraceShutdown()
{
    if (!state)
        return;
    trace_enabled = false;
    DeleteCriticalSection(&state->lock);
    delete state;
    state = nullptr;
}

void TraceWriteRecord(std::wstring_view text)
{
    if (!state)
        return;
    trace_lock lock;
    const std::size_t length = FillPayload(text);
    TraceScramble(std::span(state->payload).first(length));

    const unique_file file(CreateFileW(state->path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file)
        return;
    SetFilePointerEx(file.get(), {}, nullptr, FILE_END);
    const auto count = static_cast<DWORD>(length);
    WriteOrFail(file.get(), &count, sizeof(count));
    WriteOrFail(file.get(), state->payload.data(), count);
}

void VHTracingInternal_TraceEx(const wchar_t* category, const wchar_t* subcategory, const wchar_t* format, ...)
{
    if (!trace_enabled)
        return;
    va_list arguments;
    va_start(arguments, format);
    Guarded(L"VHTracingInternal_TraceEx", [&] { WriteLineV(category, subcategory, format, arguments); });
    va_end(arguments);
}

void TraceScriptLine(const wchar_t* category, const wchar_t* subcategory, const wchar_t* text)
{
    if (!trace_enabled)
        return;
    Guarded(L"VHTracingInternal_TraceEx", [&] {
        const std::wstring format = HarmlessFormat(std::wstring_view(text));
        // On this platform an argument list is its slots in a row; each conversion takes three at most.
        std::vector<std::int64_t> zeros(1 + 3 * static_cast<std::size_t>(std::ranges::count(format, L'%')));
        WriteLineV(category, subcategory, format.c_str(), reinterpret_cast<va_list>(zeros.data()));
    });
}

void VHTracingInternal_Trace(const wchar_t* format, ...)
{
    if (!trace_enabled)
        return;
    va_list arguments;
    va_start(arguments, format);
    Guarded(L"VHTracingInternal_Trace", [&] { WriteLineV(L"Comment", L"", format, arguments); });
    va_end(arguments);
}

int32_t TraceDecodeFile(const wchar_t* input, const wchar_t* output)
{
    file source;
    if (const DWORD error = source.open(input, GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING))
        return static_cast<int32_t>(error);
    file target;
    if (const DWORD error = target.open(output, GENERIC_WRITE, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, CREATE_ALWAYS))
        return static_cast<int32_t>(error);

    std::array<std::byte, trace_record_limit> payload;
    std::array<std::byte, 4> prefix;
    while (source.read_bytes(prefix.data(), 4) == 4) {
        const std::uint32_t length = TraceRecordLength(prefix);
        if (length > payload.size())
            return ERROR_INVALID_DATA;
        const DWORD count = source.read_bytes(payload.data(), length);
        TraceDescramble(std::span(payload).first(count));
        target.write_bytes(payload.data(), count);
    }
    return 0;
}

} // namespace vh
