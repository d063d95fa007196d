// Exported functions of permissions: no engine service is asked yet.
#include "vhrt/permissions.h"

#include "pending.h"

using namespace vh::pending;

// Permissions, services, printing.
int32_t _SetObjectPermissions(ObjectContext* context, const wchar_t*, int32_t, const wchar_t*, const wchar_t*, int32_t,
                              int32_t)
{
    return Missing(context, general_failure);
}
