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

std::wstring Counted(uint64_t count, const wchar_t* what)
{
    return std::to_wstring(count) + L" " + what + (count == 1 ? L"" : L"s");
}

int CheckSetup(const std::wstring& folder)
{
    const vh::engine::SetupCheck check = vh::engine::CheckSetup(folder);
    uint64_t faults = 0;
    for (const vh::engine::SetupFault& fault : check.faults) {
        host::Say(fault.Text());
        ++faults;
    }
    for (const std::wstring& script : check.scripts)
        if (const std::wstring fault = ScriptFault(script); !fault.empty()) {
            host::Say(fault);
            ++faults;
        }
    host::Say(folder + L": " + (faults ? Counted(faults, L"fault") : L"no faults") + L", " +
              Counted(check.features, L"feature") + L", " + Counted(check.files, L"file") + L" with " +
              Counted(check.bytes, L"byte") + L", " + Counted(check.scripts.size(), L"script"));
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
