#include "product_command.h"

#include <stdexcept>

#include <objbase.h>

#include "engine/check.h"
#include "exit_codes.h"
#include "host/console.h"
#include "host/script_site.h"
#include "host/text.h"

namespace tools {

namespace {

class Apartment {
public:
    Apartment() : m_code(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
    ~Apartment()
    {
        if (SUCCEEDED(m_code))
            CoUninitialize();
    }

private:
    HRESULT m_code;
};

// The fault of a script that can't be read or parsed; empty for a good one.
std::wstring ScriptFault(const std::wstring& script)
{
    try {
        const auto site = vh::make_object<host::ScriptSite>();
        return site->Parse({script}) ? std::wstring() : site->Failure().Text();
    } catch (const std::runtime_error& error) {
        return host::Wide(error.what());
    }
}

int CheckSetup(const std::wstring& folder)
{
    const vh::engine::SetupCheck check = vh::engine::CheckSetup(folder);
    int faults = 0;
    for (const vh::engine::SetupFault& fault : check.faults) {
        host::Say(fault.Text());
        ++faults;
    }
    for (const std::wstring& script : check.scripts)
        if (const std::wstring fault = ScriptFault(script); !fault.empty()) {
            host::Say(fault);
            ++faults;
        }
    host::Say(folder + L": " + (faults ? std::to_wstring(faults) + L" faults" : L"no faults") + L", " +
              std::to_wstring(check.features) + L" features, " + std::to_wstring(check.files) + L" files with " +
              std::to_wstring(check.bytes) + L" bytes, " + std::to_wstring(check.scripts.size()) + L" scripts");
    return faults ? exit_found : exit_done;
}

} // namespace

int CheckSetups(const std::vector<std::wstring>& folders)
{
    const Apartment apartment;
    int result = exit_done;
    for (const std::wstring& folder : folders)
        if (CheckSetup(folder) != exit_done)
            result = exit_found;
    return result;
}

} // namespace tools
