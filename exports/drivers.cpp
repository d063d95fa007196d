// Exported functions of driver packages.
#include "vhrt/drivers.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"

using namespace vh;

int32_t _DIFxDriverPackagePreinstall(ObjectContext* context, const wchar_t* package, int32_t flags)
{
    return Framed(context, [&](ObjectContext& found) { return found.driverPackages.Preinstall(package, flags); });
}

int32_t _DIFxDriverPackageInstall(ObjectContext* context, const wchar_t* package, int32_t flags,
                                  const INSTALLERINFO* installer, int32_t* reboot)
{
    return Framed(
        context, [&](ObjectContext& found) { return found.driverPackages.Install(package, flags, installer, reboot); });
}

int32_t _DIFxDriverPackageUninstall(ObjectContext* context, const wchar_t* package, int32_t flags,
                                    const INSTALLERINFO* installer, int32_t* reboot)
{
    return Framed(context, [&](ObjectContext& found) {
        return found.driverPackages.Uninstall(package, flags, installer, reboot);
    });
}

int32_t _DIFxDriverPackageGetPath(ObjectContext* context, const wchar_t* package, wchar_t* buffer, uint32_t* size)
{
    return Framed(context, [&](ObjectContext& found) { return found.driverPackages.GetPath(package, buffer, size); });
}
