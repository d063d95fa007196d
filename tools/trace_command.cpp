#include "trace_command.h"

#include "diagnostics/trace_record.h"
#include "exit_codes.h"
#include "file_bytes.h"
#include "host/console.h"
#include "host/text.h"

namespace tools {

namespace {

constexpr DWORD poll_milliseconds = 100;

// Record texts are in the system's code page.
std::string PlainText(std::span<const std::byte> payload)
{
    std::vector<std::byte> bytes(payload.begin(), payload.end());
    vh::TraceDescramble(bytes);
    const auto* narrow = reinterpret_cast<const char*>(bytes.data());
    const int count = static_cast<int>(bytes.size());
    std::wstring text(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, narrow, count, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, narrow, count, text.data(), static_cast<int>(text.size()));
    return host::Utf8(text);
}

struct Decoded {
    std::string text;
    // Bytes of whole records.
    std::size_t taken = 0;
    vh::trace_status status = vh::trace_status::end;
};

Decoded Decode(std::span<const std::byte> data)
{
    Decoded decoded;
    vh::trace_reader reader(data);
    std::span<const std::byte> payload;
    while ((decoded.status = reader.next(payload)) == vh::trace_status::record)
        decoded.text += PlainText(payload);
    decoded.taken = reader.offset();
    return decoded;
}

void ComplainOfDamage(const std::wstring& file, uint64_t offset, vh::trace_status status)
{
    host::Complain(file + L": " +
                   (status == vh::trace_status::partial ? L"ends inside the record" : L"no trace record") +
                   L" at offset " + std::to_wstring(offset));
}

HANDLE stop_event;

BOOL WINAPI OnConsoleSignal(DWORD) { return SetEvent(stop_event); }

// Records from an offset on; a file that is not there has none.
std::vector<std::byte> NewBytes(const std::wstring& file, uint64_t& offset)
{
    const vh::unique_file handle = OpenShared(file);
    LARGE_INTEGER size{};
    if (!handle || !GetFileSizeEx(handle.get(), &size)) {
        const DWORD code = GetLastError();
        if (code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND)
            ThrowFor(file, code);
        offset = 0;
        return {};
    }
    if (static_cast<uint64_t>(size.QuadPart) < offset)
        offset = 0;
    return static_cast<uint64_t>(size.QuadPart) == offset ? std::vector<std::byte>() : ReadBytes(file, offset);
}

} // namespace

int DecodeTrace(const std::wstring& file, const std::wstring& output)
{
    const Decoded decoded = Decode(ReadBytes(file));
    vh::unique_file target;
    if (!output.empty()) {
        target.reset(CreateFileW(host::LongPath(output).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!target) {
            const DWORD code = GetLastError();
            ThrowFor(output, code);
        }
    }
    WriteBytes(target ? target.get() : GetStdHandle(STD_OUTPUT_HANDLE), output.empty() ? L"standard output" : output,
               decoded.text);
    if (decoded.status == vh::trace_status::end)
        return exit_done;
    ComplainOfDamage(file, decoded.taken, decoded.status);
    return exit_found;
}

int FollowTrace(const std::wstring& file, unsigned seconds)
{
    const vh::unique_handle stop(CreateEventW(nullptr, TRUE, FALSE, nullptr));
    stop_event = stop.get();
    SetConsoleCtrlHandler(OnConsoleSignal, TRUE);
    const ULONGLONG end = GetTickCount64() + seconds * 1000ull;
    uint64_t offset = 0;
    do {
        const std::vector<std::byte> data = NewBytes(file, offset);
        const Decoded decoded = Decode(data);
        WriteBytes(GetStdHandle(STD_OUTPUT_HANDLE), L"standard output", decoded.text);
        offset += decoded.taken;
        if (decoded.status == vh::trace_status::damaged) {
            ComplainOfDamage(file, offset, decoded.status);
            return exit_found;
        }
    } while ((seconds == 0 || GetTickCount64() < end) &&
             WaitForSingleObject(stop.get(), poll_milliseconds) == WAIT_TIMEOUT);
    return exit_done;
}

} // namespace tools
