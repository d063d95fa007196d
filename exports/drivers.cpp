// Exported functions of driver packages: as without the driver library.
#include "vhrt/drivers.h"

#include "pending.h"

using namespace vh::pending;

int32_t _DIFxDriverPackagePreinstall(ObjectContext* context, const wchar_t*, int32_t)
{
    return Missing(context, no_driver_library);
}
int32_t _DIFxDriverPackageInstall(ObjectContext* context, const wchar_t*, int32_t, const INSTALLERINFO*, int32_t*)
{
    return Missing(context, no_driver_library);
}
int32_t _DIFxDriverPackageUninstall(ObjectContext* context, const wchar_t*, int32_t, const INSTALLERINFO*, int32_t*)
{
    return Missing(context, no_driver_library);
}
int32_t _DIFxDriverPackageGetPath(ObjectContext* context, const wchar_t*, wchar_t*, uint32_t*)
{
    return Missing(context, no_driver_library);
}
