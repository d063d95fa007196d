#include "print_runtime.h"

#include <cstdarg>
#include <cwchar>

#include "../scriptdata/format.h"
#include "late_shell.h"

namespace vh {

namespace {

constexpr DWORD longest_wait_ms = 10000;
constexpr DWORD dialog_flags = PD_NOSELECTION | PD_NOPAGENUMS | PD_USEDEVMODECOPIESANDCOLLATE | PD_NOCURRENTPAGE;
static_assert(dialog_flags == 0x84000C);

// Memory of the print dialog, locked while it is looked at.
class locked_memory {
public:
    explicit locked_memory(HGLOBAL memory) : m_memory(memory), m_start(memory ? GlobalLock(memory) : nullptr) {}
    locked_memory(const locked_memory&) = delete;
    locked_memory& operator=(const locked_memory&) = delete;
    ~locked_memory()
    {
        if (m_start)
            GlobalUnlock(m_memory);
        if (m_memory)
            GlobalFree(m_memory);
    }
    const void* get() const { return m_start; }

private:
    HGLOBAL m_memory;
    void* m_start;
};

struct OwnerSearch {
    HWND parent;
    HWND found;
};

BOOL CALLBACK TakeOwner(HWND window, LPARAM parameter)
{
    auto& search = *reinterpret_cast<OwnerSearch*>(parameter);
    if (!(late::get_window_long(window, GWL_STYLE) & WS_VISIBLE) || late::get_parent(window) != search.parent)
        return TRUE;
    search.found = window;
    return FALSE;
}

} // namespace

bool CPrintRuntime::AddError(const wchar_t* format, ...)
{
    if (!m_record)
        return false;
    wchar_t text[1024];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(text, std::size(text), format, arguments);
    va_end(arguments);
    if (!m_error.empty())
        m_error += L"; ";
    m_error += text;
    return false;
}

template <class Body>
bool CPrintRuntime::Guarded(const wchar_t* operation, Body&& body)
try {
    return body();
} catch (const std::exception&) {
    return AddError(L"An unhandled exception occurred in 'CPrintRuntime::%s'.", operation);
}

void CPrintRuntime::SetPath(const wchar_t* path)
{
    const std::size_t units = path ? wcsnlen(path, std::size(m_path) - 1) : 0;
    std::copy_n(path, units, m_path);
    m_path[units] = L'\0';
}

void CPrintRuntime::Wait(HANDLE process)
{
    switch (WaitForSingleObject(process, longest_wait_ms)) {
    case WAIT_TIMEOUT:
        AddError(L"%s", L"After waiting for 10 seconds, it appears the file is still printing.  Because the file is "
                        L"still being accessed, this program will move on without deleting the file.");
        break;
    case WAIT_FAILED:
        AddError(L"WaitForSingleObject returned an error code while attempting to print.");
        break;
    default:
        if (m_delete)
            DeleteFileW(m_path);
    }
}

bool CPrintRuntime::PrintFileWithShellExecute()
{
    return Guarded(L"PrintFileWithShellExecute", [&] {
        PRINTDLGW dialog{};
        dialog.lStructSize = sizeof(dialog);
        dialog.hwndOwner = m_owner;
        dialog.Flags = dialog_flags;
        if (!late::print_dialog(&dialog))
            return AddError(L"Print cancelled");
        const locked_memory names(dialog.hDevNames);
        const locked_memory mode(dialog.hDevMode);
        stringx printer;
        if (const auto* devices = static_cast<const DEVNAMES*>(names.get())) {
            printer = L"\"";
            printer += reinterpret_cast<const wchar_t*>(devices) + devices->wDeviceOffset;
            printer += L"\"";
        }
        SHELLEXECUTEINFOW order{};
        order.cbSize = sizeof(order);
        order.fMask = SEE_MASK_NOCLOSEPROCESS;
        order.lpVerb = printer.empty() ? L"print" : L"printto";
        order.lpFile = m_path;
        order.lpParameters = printer.empty() ? nullptr : printer.c_str();
        if (!late::shell_execute_ex(&order)) {
            const DWORD error = GetLastError();
            AddError(L"ShellExecute failed.");
            GetShellExecuteReturnValue(error);
            return false;
        }
        if (const unique_handle process(order.hProcess); process)
            Wait(process.get());
        return true;
    });
}

bool CPrintRuntime::GetShellExecuteReturnValue(DWORD code)
{
    return Guarded(L"GetShellExecuteReturnValue", [&] {
        wchar_t text[512] = L"";
        DWORD units = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0, text,
                                     static_cast<DWORD>(std::size(text)), nullptr);
        while (units > 0 && (text[units - 1] == L'\r' || text[units - 1] == L'\n' || text[units - 1] == L' '))
            text[--units] = L'\0';
        AddError(L"ShellExecute returned: %s", text);
        return units > 0;
    });
}

bool CPrintRuntime::PrintStream(std::string_view text, const wchar_t* extension)
{
    return Guarded(L"PrintStream", [&] {
        const bool written = CreateTempFile(extension) && WriteStreamToFile(text);
        m_file.reset();
        if (written && PrintFileWithShellExecute())
            return true;
        AppendFileNameToError();
        if (m_path[0] && m_delete)
            DeleteFileW(m_path);
        return false;
    });
}

bool CPrintRuntime::CreateTempFile(const wchar_t* extension)
{
    return Guarded(L"CreateTempFile", [&] {
        if (!GetTempFilePathAndName(extension))
            return false;
        m_file.reset(CreateFileW(m_path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
        return m_file || AddError(L"Invalid handle to file %s.", m_path);
    });
}

bool CPrintRuntime::GetTempFilePathAndName(const wchar_t* extension)
{
    return Guarded(L"GetTempFilePathAndName", [&] {
        m_path[0] = L'\0';
        wchar_t folder[260] = L"";
        const DWORD units = GetTempPathW(static_cast<DWORD>(std::size(folder)), folder);
        if (units == 0 || units >= std::size(folder))
            return AddError(L"GetTempPath Failed.");
        if (!GetTempFileNameW(folder, L"Ins", 1, m_path))
            return AddError(L"GetTempFileName Failed.  The file was to be created in '%s.'", folder);
        return ChangeFileExtension(extension);
    });
}

bool CPrintRuntime::ChangeFileExtension(const wchar_t* extension)
{
    return Guarded(L"ChangeFileExtension", [&] {
        wchar_t stem[260];
        wcscpy(stem, m_path);
        wchar_t* const name = wcsrchr(stem, L'\\');
        if (wchar_t* const dot = wcsrchr(name ? name : stem, L'.'))
            *dot = L'\0';
        wchar_t changed[260];
        if (FormatText(changed, std::size(changed), L"%s.%s", stem, extension) < 0)
            return false;
        SetPath(changed);
        return true;
    });
}

bool CPrintRuntime::WriteStreamToFile(std::string_view text)
{
    return Guarded(L"WriteStreamToFile", [&] {
        DWORD written = 0;
        return WriteFile(m_file.get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr)
                   ? written == text.size()
                   : AddError(L"WriteFile returned 0.");
    });
}

bool CPrintRuntime::AppendFileNameToError()
{
    return Guarded(L"AppendFileNameToError", [&] {
        AddError(L"This error occurred while processing the file '%s'.", m_path);
        return true;
    });
}

bool PrintFile(HWND window, const wchar_t* path)
{
    OwnerSearch search{window, window};
    if (late::enum_windows)
        late::enum_windows(&TakeOwner, reinterpret_cast<LPARAM>(&search));
    CPrintRuntime printing(search.found);
    const bool before = printing.SetDelete(false);
    printing.SetPath(path);
    const bool printed = printing.PrintFileWithShellExecute();
    printing.SetDelete(before);
    return printed;
}

} // namespace vh
