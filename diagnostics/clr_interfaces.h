// The parts of the common language runtime's hosting interfaces that are called here; the positions are those of the
// public declarations in mscoree.h, metahost.h and the runtime's own type library.
#pragma once

#include <oaidl.h>

#include "../Src/inc/identifiers.h"
#include "../Src/inc/slots.h"

namespace vh {

struct ICorRuntimeHost : unnamed_slots<IUnknown, 3, 9> {
    static constexpr GUID iid = Guid("{CB2F6722-AB3A-11D2-9C40-00C04FA30A3E}");
    static constexpr GUID clsid = Guid("{CB2F6723-AB3A-11D2-9C40-00C04FA30A3E}");
    VH_SLOTS_FROM(10);
    VH_SLOT(10) Start() = 0;
    VH_SLOT(11) Stop() = 0;
    VH_SLOT(12) CreateDomain(const wchar_t* name, IUnknown* evidence, IUnknown** domain) = 0;
    VH_SLOT(13) GetDefaultDomain(IUnknown** domain) = 0;
    VH_SLOT(14) EnumDomains(void** walk) = 0;
    // S_FALSE behind the last one.
    VH_SLOT(15) NextDomain(void* walk, IUnknown** domain) = 0;
    VH_SLOT(16) CloseEnum(void* walk) = 0;
    VH_UNNAMED(17)
    VH_UNNAMED(18)
    VH_UNNAMED(19)
    VH_SLOT(20) UnloadDomain(IUnknown* domain) = 0;
};

struct ICLRMetaHost : unnamed_slots<IUnknown, 3, 3> {
    static constexpr GUID iid = Guid("{D332DB9E-B9B3-4125-8207-A14884F53216}");
    static constexpr GUID clsid = Guid("{9280188D-0E8E-4867-B30C-7FA83884E8DE}");
    VH_SLOTS_FROM(4);
    // *size counts units, the terminator among them.
    VH_SLOT(4) GetVersionFromFile(const wchar_t* path, wchar_t* version, DWORD* size) = 0;
    VH_SLOT(5) EnumerateInstalledRuntimes(IEnumUnknown** runtimes) = 0;
};

struct ICLRRuntimeInfo : IUnknown {
    static constexpr GUID iid = Guid("{BD39D1D2-BA2F-486A-89B0-B4B0CB466891}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) GetVersionString(wchar_t* version, DWORD* size) = 0;
    VH_UNNAMED(4)
    VH_UNNAMED(5)
    VH_UNNAMED(6)
    VH_UNNAMED(7)
    VH_UNNAMED(8)
    VH_SLOT(9) GetInterface(REFCLSID clsid, REFIID iid_wanted, void** object) = 0;
    VH_UNNAMED(10)
    VH_UNNAMED(11)
    VH_UNNAMED(12)
    VH_SLOT(13) BindAsLegacyV2Runtime() = 0;
};

// What a created instance comes in.
struct IObjectHandle : IUnknown {
    static constexpr GUID iid = Guid("{C460E2B4-E199-412A-8456-84DC3E4838C3}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) Unwrap(VARIANT* object) = 0;
};

struct IAppDomain : unnamed_slots<IUnknown, 3, 37> {
    static constexpr GUID iid = Guid("{05F696DC-2B29-3663-AD8B-C4389CF2A713}");
    VH_SLOTS_FROM(38);
    VH_SLOT(38) CreateInstanceFrom(BSTR assembly, BSTR className, IUnknown** handle) = 0;
    VH_UNNAMED(39)
    VH_UNNAMED(40)
    VH_UNNAMED(41)
    VH_UNNAMED(42)
    VH_UNNAMED(43)
    VH_UNNAMED(44)
    VH_UNNAMED(45)
    VH_UNNAMED(46)
    VH_UNNAMED(47)
    VH_UNNAMED(48)
    VH_UNNAMED(49)
    VH_UNNAMED(50)
    VH_UNNAMED(51)
    VH_UNNAMED(52)
    VH_SLOT(53) GetFriendlyName(BSTR* name) = 0;
};

} // namespace vh
