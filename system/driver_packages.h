// Driver packages: through the driver library of the support directory or, in a 32-bit process on a 64-bit system,
// through the engine's helper.
#pragma once

#include <servprov.h>

#include "../Src/inc/engine_host.h"
#include "../Src/inc/engine_services.h"
#include "../Src/inc/script_values.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/stringx.h"

namespace vh {

class DriverPackages {
public:
    explicit DriverPackages(ObjectContext& owner) : m_context(&owner) {}

    // The library lies in `directory`.
    void Initialise(std::wstring_view directory, const com_ptr<IServiceProvider>& from);

    // Results: the driver library's code, a positive one as 0x8007xxxx; 0x80029C4A without the library, 0x80070001
    // without its function; -1 when anything is raised on the way.
    int32_t Preinstall(const wchar_t* package, int32_t flags);
    int32_t Install(const wchar_t* package, int32_t flags, const INSTALLERINFO* installer, int32_t* reboot);
    int32_t Uninstall(const wchar_t* package, int32_t flags, const INSTALLERINFO* installer, int32_t* reboot);
    // *size counts units, the terminator among them: the buffer's, then those of the path.
    int32_t GetPath(const wchar_t* package, wchar_t* buffer, uint32_t* size);

    // For the driver library, which calls it while it works: what it says goes to the engine's host.
    static void CALLBACK OnLog(int32_t event, uint32_t error, const wchar_t* text, void* packages);

private:
    using set_log = void(WINAPI*)(decltype(&OnLog), void*);

    template <class Function, class... Arguments>
    int32_t CallLibrary(const char* name, Arguments... arguments);
    template <class Body>
    int32_t CallHelper(Body&& body);
    int32_t Change(const char* name, bool install, const wchar_t* package, int32_t flags,
                   const INSTALLERINFO* installer, int32_t* reboot);

    ObjectContext* m_context;
    com_ptr<IServiceProvider> m_services;
    // Null unless a 32-bit process runs on a 64-bit system.
    com_ptr<ISetupDriverHelper> m_helper;
    // Path of "difxapi.dll".
    stringx m_library;
    set_log m_set_log = nullptr;
};

// Of the context, which only the storeys above see whole.
ISetupHost* HostOf(const ObjectContext& context);

} // namespace vh
