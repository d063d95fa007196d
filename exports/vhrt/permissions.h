/* Access rights of files, folders and registry keys. */
#pragma once

#include "types.h"

enum { ObjectFile = 0, ObjectFolder = 1, ObjectRegistryKey = 2 };

/* Flags: deny instead of grant; limit inheritance; a key in the 64-bit registry. */
enum { PermissionDeny = 1, PermissionLimitInheritance = 2 };

/* Adds one entry to the object's access list. `account` is a well-known name, a SID as text or an account, of
   `domain` when that is not empty. `access` is an access mask. Result: 0 or an error code; a final write that
   fails is not reported. */
VHRT_FUNCTION(int32_t)
_SetObjectPermissions(ObjectContext* context, const wchar_t* object, int32_t kind, const wchar_t* domain,
                      const wchar_t* account, int32_t access, int32_t flags);
