/* Facts that the context keeps, engine objects for scripts, and modes of the data set.

   Functions that fill a VARIANT clear it first and give it type VT_DISPATCH with one reference. */
#pragma once

#include "types.h"

/* The context's own objects. Result: 0; the code of the failing step; 0x80004005 when there is none. */
VHRT_FUNCTION(int32_t) __GetInfo(ObjectContext* context, VARIANT* object);
VHRT_FUNCTION(int32_t) __GetLog(ObjectContext* context, VARIANT* object);
VHRT_FUNCTION(int32_t) __GetLogEx(ObjectContext* context, VARIANT* object);
VHRT_FUNCTION(int32_t) __GetReboot(ObjectContext* context, VARIANT* object);
VHRT_FUNCTION(int32_t) __GetUser(ObjectContext* context, VARIANT* object);

/* Selector 0: the local text variables; any other: the global ones. Results as above. */
VHRT_FUNCTION(int32_t) __GetTextSub(ObjectContext* context, int32_t selector, VARIANT* object);

/* Services asked for at each call. Result: 0 or the code of the failing step. The last one does not test the
   context. */
VHRT_FUNCTION(int32_t) __GetFileRegistrar(ObjectContext* context, VARIANT* object);
VHRT_FUNCTION(int32_t) __GetLogDB(ObjectContext* context, VARIANT* object);
VHRT_FUNCTION(int32_t) __GetProgress(ObjectContext* context, VARIANT* object);
VHRT_FUNCTION(int32_t) __GetVHMSIStringTableObj(ObjectContext* context, VARIANT* object);

/* Identifiers, copied without a limit: 39 units hold one in braces. Result: 0; -1 for a null buffer. */
VHRT_FUNCTION(int32_t) __GetContextGUID(ObjectContext* context, wchar_t* identifier);
VHRT_FUNCTION(int32_t) __GetProductGuid(ObjectContext* context, wchar_t* identifier);
VHRT_FUNCTION(int32_t) __GetInstallGuid(ObjectContext* context, wchar_t* identifier);

/* The support directory, to a buffer of `size` units. Result: 0; length + 1 when it does not fit. */
VHRT_FUNCTION(int32_t) _GetSupportDir(ObjectContext* context, wchar_t* buffer, int32_t size);

/* 1 in a maintenance run, else 0. Result: 0. */
VHRT_FUNCTION(int32_t) __GetMaintenanceMode(ObjectContext* context, int32_t* maintenance);

/* 4, 8 or 1, from the data set. Result: 0. */
VHRT_FUNCTION(int32_t) __GetMaintOption(ObjectContext* context, int32_t* option);

/* The enabled services as a bit set. Result: 0. */
VHRT_FUNCTION(int32_t) __GetEnabledIServices(ObjectContext* context, int32_t* services);
VHRT_FUNCTION(int32_t) __PutEnabledIServices(ObjectContext* context, int32_t services);

/* Result: the flags; for the second the flags before. */
VHRT_FUNCTION(int32_t) _GetGlobalFlags(ObjectContext* context);
VHRT_FUNCTION(int32_t) _SetGlobalFlags(ObjectContext* context, int32_t flags);

/* Modes in the data set, as 1 or 0. Result: 0; -1 without a data set; the reinstall mode gives the engine's
   code, or 0x80004005 when the data set has no such mode. */
VHRT_FUNCTION(int32_t) __GetUpdateMode(ObjectContext* context, int32_t* on);
VHRT_FUNCTION(int32_t) __SetUpdateMode(ObjectContext* context, int32_t on);
VHRT_FUNCTION(int32_t) __GetRemoveAllMode(ObjectContext* context, int32_t* on);
VHRT_FUNCTION(int32_t) __GetReinstallMode(ObjectContext* context, int32_t* on);

/* The facts of the command line; any output may be null. Flags are 1 or 0: the first, silent mode, second
   silent mode, the fourth, the fifth. The five texts are copied without a limit (1024 units each will do); the
   command line goes to a buffer of `size` units. Silent modes are read afresh in any case. Result: 0; length
   + 1 when the command line does not fit; -1 when a fact can't be read. */
VHRT_FUNCTION(int32_t)
__GetCmdLineOptions(ObjectContext* context, int32_t* flag1, int32_t* silent, int32_t* silentEx, int32_t* flag4,
                    int32_t* flag5, wchar_t* text1, wchar_t* text2, wchar_t* text3, wchar_t* text4, wchar_t* text5,
                    wchar_t* commandLine, int32_t size);
