// What the host gives __CreateObjectContext: itself, its objects, its install phases.
#pragma once

#include <cstdint>
#include <oaidl.h>
#include <servprov.h>

#include "identifiers.h"
#include "slots.h"

struct ObjectContext;

namespace vh {

template <>
inline constexpr GUID iid_of<IServiceProvider> = Guid("{6D5140C1-7436-11CE-8034-00AA006009FA}");

} // namespace vh

// The host's objects, by name or by 1-based index.
struct ISetupObjects : IDispatch {
    VH_SLOTS_FROM(7);
    VH_SLOT(7) Count(long* count) = 0;
    VH_SLOT(8) Item(VARIANT index, IUnknown** item) = 0;
};

struct ISetupHost : IUnknown {
    VH_SLOTS_FROM(3);
    VH_UNNAMED(3)
    VH_UNNAMED(4)
    VH_SLOT(5) GetObjects(ISetupObjects** objects) = 0;
    VH_SLOT(6) InitInstall() = 0;
    VH_SLOT(7) ExitInstall() = 0;
    // A move passes its value and the context; a transfer passes the context alone, in the first place.
    VH_SLOT(8) BeginData(intptr_t valueOrContext, ObjectContext* context) = 0;
    VH_SLOT(9) EndData() = 0;
    VH_SLOT(10) CCPSearch() = 0;
    VH_SLOT(11) AppSearch() = 0;
};

// Phases that a host may offer; a host without one is not an error.
struct ISetupUninstallPhases : vh::unnamed_slots<IUnknown, 3, 14> {
    static constexpr GUID iid = vh::Guid("{6FD4EF0B-A1C1-4E35-9437-0743A69C0BED}");
    VH_SLOTS_FROM(15);
    VH_SLOT(15) OnUninstall() = 0;
};

struct ISetupProgramPhases : vh::unnamed_slots<IUnknown, 3, 12> {
    static constexpr GUID iid = vh::Guid("{F2055ECC-8801-464A-A419-D41B9DE44FEF}");
    VH_SLOTS_FROM(13);
    VH_SLOT(13) Preprogram() = 0;
    VH_SLOT(14) Postprogram() = 0;
};

struct ISetupRebootPhase : IUnknown {
    static constexpr GUID iid = vh::Guid("{522573F8-B190-4D6D-9417-3816A124EBC6}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) Rebooted() = 0;
};

// Takes what happens inside a call, by name.
struct ISetupScriptEvents : vh::unnamed_slots<IUnknown, 3, 16> {
    static constexpr GUID iid = vh::Guid("{A77EC47C-3C10-4889-ACBF-75A8B66A4A9A}");
    VH_SLOTS_FROM(17);
    VH_SLOT(17) Raise(BSTR name, VARIANT first, VARIANT second, VARIANT third) = 0;
};

// Also offered by single objects of ISetupObjects.
struct ISetupWizard : IUnknown {
    static constexpr GUID iid = vh::Guid("{D533B2DF-B7DE-4FDC-8200-AAB7DCA43890}");
    VH_SLOTS_FROM(3);
    VH_SLOT(3) ShowPages(long count, long* result) = 0;
};
