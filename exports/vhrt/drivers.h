/* Driver packages, through difxapi.dll of the support directory.

   Result: the driver library's code, positive ones as 0x8007xxxx; -1 for a null context; 0x80029C4A when the library
   is missing; 0x80070001 when it has no such function. */
#pragma once

#include "types.h"

VHRT_FUNCTION(int32_t) _DIFxDriverPackagePreinstall(ObjectContext* context, const wchar_t* package, int32_t flags);

/* *reboot becomes 1 when the system has to be restarted. */
VHRT_FUNCTION(int32_t)
_DIFxDriverPackageInstall(ObjectContext* context, const wchar_t* package, int32_t flags, const INSTALLERINFO* installer,
                          int32_t* reboot);
VHRT_FUNCTION(int32_t)
_DIFxDriverPackageUninstall(ObjectContext* context, const wchar_t* package, int32_t flags,
                            const INSTALLERINFO* installer, int32_t* reboot);

/* *size counts units: the buffer's on entry, the needed ones on return. */
VHRT_FUNCTION(int32_t)
_DIFxDriverPackageGetPath(ObjectContext* context, const wchar_t* package, wchar_t* buffer, uint32_t* size);
