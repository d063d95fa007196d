#include "driver_packages.h"

#include <algorithm>
#include <new>
#include <utility>

#include "../scriptdata/bstr.h"
#include "../scriptdata/exception.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/unique.h"
#include "../scriptdata/variant.h"
#include "fs_redirection.h"

namespace vh {

namespace {

constexpr auto no_library = static_cast<int32_t>(0x80029C4A);
constexpr auto no_function = static_cast<int32_t>(0x80070001);
constexpr auto too_small = static_cast<int32_t>(0x8007007A);
constexpr int32_t raised = -1;

} // namespace

void DriverPackages::Initialise(std::wstring_view directory, const com_ptr<IServiceProvider>& from)
{
    m_services = from;
    m_library = directory;
    PathAppend(m_library, std::wstring_view(L"difxapi.dll"));
    if (m_services && IsWow64())
        m_services->QueryService(driver_helper_service, iid_of<ISetupDriverHelper>, m_helper.put_void());
}

template <class Function, class... Arguments>
int32_t DriverPackages::CallLibrary(const char* name, Arguments... arguments)
try {
    const unique_module library(LoadLibraryW(m_library.c_str()));
    if (!library)
        return no_library;
    m_set_log =
        reinterpret_cast<set_log>(reinterpret_cast<void*>(GetProcAddress(library.get(), "DIFXAPISetLogCallbackW")));
    if (m_set_log)
        m_set_log(&OnLog, this);
    const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library.get(), name)));
    if (!function)
        return no_function;
    const auto code = static_cast<int32_t>(function(arguments...));
    return code > 0 ? static_cast<int32_t>(0x80070000u | (static_cast<uint32_t>(code) & 0xFFFF)) : code;
} catch (const std::exception&) {
    return raised;
}

// A helper that is not there is a failure like any other on this way.
template <class Body>
int32_t DriverPackages::CallHelper(Body&& body)
try {
    return m_helper ? body(*m_helper.get(), bstr(m_library.view())) : raised;
} catch (const std::exception&) {
    return raised;
}

int32_t DriverPackages::Preinstall(const wchar_t* package, int32_t flags)
{
    if (!IsWow64())
        return CallLibrary<DWORD(WINAPI*)(const wchar_t*, DWORD)>("DriverPackagePreinstallW", package,
                                                                  static_cast<DWORD>(flags));
    return CallHelper([&](ISetupDriverHelper& helper, const bstr& service) {
        return helper.Preinstall(service.get(), bstr(package).get(), flags);
    });
}

int32_t DriverPackages::Change(const char* name, bool install, const wchar_t* package, int32_t flags,
                               const INSTALLERINFO* installer, int32_t* reboot)
{
    if (!IsWow64())
        return CallLibrary<DWORD(WINAPI*)(const wchar_t*, DWORD, const INSTALLERINFO*, int32_t*)>(
            name, package, static_cast<DWORD>(flags), installer, reboot);
    return CallHelper([&](ISetupDriverHelper& helper, const bstr& service) -> int32_t {
        if (installer)
            helper.SetInfo(bstr(installer->applicationId).get(), bstr(installer->displayName).get(),
                           bstr(installer->productName).get(), bstr(installer->manufacturerName).get());
        const auto has_info = static_cast<unsigned short>(installer ? 65535 : 0);
        short restart = 0;
        const auto method = install ? &ISetupDriverHelper::Install : &ISetupDriverHelper::Uninstall;
        const HRESULT code = (helper.*method)(service.get(), bstr(package).get(), flags, has_info, &restart);
        if (restart != 0 && reboot)
            *reboot = 1;
        return code;
    });
}

int32_t DriverPackages::Install(const wchar_t* package, int32_t flags, const INSTALLERINFO* installer, int32_t* reboot)
{
    return Change("DriverPackageInstallW", true, package, flags, installer, reboot);
}

int32_t DriverPackages::Uninstall(const wchar_t* package, int32_t flags, const INSTALLERINFO* installer,
                                  int32_t* reboot)
{
    return Change("DriverPackageUninstallW", false, package, flags, installer, reboot);
}

int32_t DriverPackages::GetPath(const wchar_t* package, wchar_t* buffer, uint32_t* size)
{
    if (!IsWow64())
        return CallLibrary<DWORD(WINAPI*)(const wchar_t*, wchar_t*, uint32_t*)>("DriverPackageGetPathW", package,
                                                                                buffer, size);
    return CallHelper([&](ISetupDriverHelper& helper, const bstr& service) -> int32_t {
        const bstr name(package);
        long length = 0;
        HRESULT code = helper.GetPath(service.get(), name.get(), &length, nullptr);
        if (FAILED(code) || length <= 0 || !size)
            return code;
        const auto needed = static_cast<uint32_t>(length);
        bstr path;
        path.attach(SysAllocStringLen(nullptr, needed));
        if (!path)
            throw std::bad_alloc();
        code = helper.GetPath(service.get(), name.get(), &length, path.get());
        if (FAILED(code))
            return code;
        const uint32_t room = std::exchange(*size, needed);
        if (!buffer || room < needed)
            return too_small;
        // The text ends where it says, within what was made for it.
        const std::size_t units = wcsnlen(path.get(), needed - 1);
        std::copy_n(path.get(), units, buffer);
        buffer[units] = L'\0';
        return code;
    });
}

void CALLBACK DriverPackages::OnLog(int32_t event, uint32_t error, const wchar_t* text, void* packages)
try {
    const auto& self = *static_cast<const DriverPackages*>(packages);
    com_ptr<ISetupHost> host(HostOf(*self.m_context));
    if (const auto events = host.query<ISetupScriptEvents>()) {
        const variant shown(text ? text : L""), code(static_cast<long>(error)), kind(static_cast<long>(event));
        events->Raise(bstr(L"OnDIFxLogCallbackImpl").get(), shown.get(), code.get(), kind.get());
    }
} catch (const std::exception&) {
    // The driver library is never thrown at.
}

} // namespace vh
