/* Install phases that go on to the host, and the host's objects.

   Without a host the phases answer 0x80004003. */
#pragma once

#include "types.h"

/* Result: what the host answers. */
VHRT_FUNCTION(int32_t) _InitInstall(ObjectContext* context);
VHRT_FUNCTION(int32_t) _ExitInstall(ObjectContext* context);
VHRT_FUNCTION(int32_t) _CCPSearch(ObjectContext* context);
VHRT_FUNCTION(int32_t) _AppSearch(ObjectContext* context);

/* Phases that a host may leave out. Result: what the host answers; 0 when it has no such phase. */
VHRT_FUNCTION(int32_t) _Preprogram(ObjectContext* context);
VHRT_FUNCTION(int32_t) _Postprogram(ObjectContext* context);
VHRT_FUNCTION(int32_t) _OnUninstPriv(ObjectContext* context);

/* Result: 0 or the host's failure. */
VHRT_FUNCTION(int32_t) _Rebooted(ObjectContext* context);
VHRT_FUNCTION(int32_t) _ShowWizardPages(ObjectContext* context, int32_t value);

/* Shows the wizard pages of the host's objects, backward with value 12: each answers the value that the next
   one gets. Result: the last value, or the failure of a page; the value itself without context or objects. */
VHRT_FUNCTION(int32_t) _ShowObjWizardPages(ObjectContext* context, int32_t value);

/* Leaves three texts for the run after a restart; null texts stay null. Result: the reboot service's. */
VHRT_FUNCTION(int32_t)
_RebootPutString(ObjectContext* context, const wchar_t* text1, const wchar_t* text2, const wchar_t* text3);

/* An object of the host by name or 1-based index; the empty name and index 0 stand for the host. Result: 0,
   the code of the failing step, or -1 without objects or host. */
VHRT_FUNCTION(int32_t) _GetObject(ObjectContext* context, const wchar_t* name, VARIANT* object);
VHRT_FUNCTION(int32_t) _GetObjectByIndex(ObjectContext* context, int32_t index, VARIANT* object);
VHRT_FUNCTION(int32_t) _GetObjectCount(ObjectContext* context, int32_t* count);

/* All objects of the host as one. Results as above. */
VHRT_FUNCTION(int32_t) __GetObjects(ObjectContext* context, VARIANT* object);
