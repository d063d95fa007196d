#include "register_command.h"

#include <objbase.h>

#include "diagnostics/mapped_file.h"
#include "exit_codes.h"
#include "host/console.h"
#include "host/text.h"
#include "scriptdata/path_text.h"
#include "system/registration.h"

namespace tools {

int RegisterFile(const std::wstring& file, bool registers, const RegisterOptions& options)
{
    const std::wstring_view path(file);
    vh::script_fault fault;
    bool done = false;
    const stringxi extension(vh::PathExtension(path));
    const bool is_program = extension == L"exe"; // its exit code may be any
    if (extension == L"rgs") {
        const std::wstring module = options.module.empty() ? std::wstring(vh::PathPart(path)) : options.module;
        done =
            vh::RegisterFromScript(stringx(host::LongPath(file)), stringx(module), registers, options.per_user, fault);
    } else {
        // Servers count on it.
        const HRESULT started = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        done = vh::RegisterModule(stringx(file), registers, options.per_user);
        if (SUCCEEDED(started))
            CoUninitialize();
    }
    if (done)
        return exit_done;
    if (fault.reason)
        host::Complain(file + L": line " + std::to_wstring(fault.line) + L", column " + std::to_wstring(fault.column) +
                       L": " + host::Wide(fault.reason));
    else if (const DWORD code = vh::last_file_failure().code;
             code == ERROR_NOT_SUPPORTED && (options.per_user || !is_program))
        host::Complain(file + (options.per_user ? L": is none of .rgs, .dll, .ocx and .tlb"
                                                : L": is none of .rgs, .dll, .ocx, .exe and .tlb"));
    else
        host::Complain(file + L": " + host::SystemText(code));
    return exit_found;
}

} // namespace tools
