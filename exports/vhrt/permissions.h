/* Access rights of files, folders and registry keys. */
#pragma once

#include "types.h"

enum { ObjectFile = 0, ObjectFolder = 1, ObjectRegistryKey = 2 };

/* Deny instead of grant; the entry goes no further than one level down; the key of the 64-bit registry. */
enum { PermissionDeny = 1, PermissionLimitInheritance = 2, PermissionKey64 = 4 };

/* Adds one entry to the object's access list; on folders and keys what lies in them inherits it. A key's name begins
   with "MACHINE", "CURRENT_USER", "CLASSES_ROOT" or "USERS". `account` is a well-known name, a SID as text or an
   account, of `domain` when that is not empty. `access` is an access mask. A key with the flags 2, 4 or 16 is left
   to the engine's helper. Each step is a line in the engine's log for scripts.
   Result: 0 or the code of the step that failed, a system error as it is or an HRESULT; a list that can't be written
   back at the end is not reported. -1 for a null context. */
VHRT_FUNCTION(int32_t)
_SetObjectPermissions(ObjectContext* context, const wchar_t* object, int32_t kind, const wchar_t* domain,
                      const wchar_t* account, int32_t access, int32_t flags);
