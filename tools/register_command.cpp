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
    if (stringxi(vh::PathExtension(path)) == L"rgs") {
        const std::wstring module = options.module.empty() ? std::wstring(vh::PathPart(path)) : options.module;
        done = vh::RegisterFromScript(stringx(file), stringx(module), registers, options.per_user, fault);
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
    else
        host::Complain(file + L": " + host::SystemText(vh::last_file_failure().code));
    return exit_found;
}

} // namespace tools
