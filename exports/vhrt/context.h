/* The object context: one per script run. A context belongs to the thread that made it. */
#pragma once

#include "types.h"

/* Makes the context of a script run and fills it from the engine. A service that is missing leaves its part
   empty and is no error. Never null; exhausted memory is raised (see exceptions.h). The context keeps
   references on both objects until its release. */
VHRT_FUNCTION(ObjectContext*) __CreateObjectContext(ISetupHost* host, IServiceProvider* services);

/* A light context without media, objects, log and status display, for a caller that has no data set.
   `directory` serves as support and engine directory; null counts as empty. Null when `services` is null. */
VHRT_FUNCTION(ObjectContext*) __CreateObjectContextSuiteExt(IServiceProvider* services, const wchar_t* directory);

/* Releases a context and all that it owns. The first must not be given null; the second ignores it. */
VHRT_FUNCTION(void) __ReleaseObjectContext(ObjectContext* context);
VHRT_FUNCTION(void) __ReleaseObjectContextSuiteExt(ObjectContext* context);

/* Takes a marshalled ISetupLog out of *stream and sets *stream to null; on success it becomes the current log
   and the component log, and the log before it is kept for the two functions below. */
VHRT_FUNCTION(void) __SetComponentLog(ObjectContext* context, IStream** stream);

/* Puts the kept log back as the current one; a null context is ignored. Ex: a flag that is not 0 also drops
   the component log. Without a component log before, the current log becomes null. */
VHRT_FUNCTION(void) __RestoreMainLog(ObjectContext* context);
VHRT_FUNCTION(void) __RestoreMainLogEx(ObjectContext* context, int32_t flag);

/* Selectors of GetHandle. */
enum { HandleMainWindow = -2, HandleResourceModule = -3, HandleUserModule = -4 };

/* Result: the window or module as a number; 0 for another selector, for what is absent and for a null
   context. */
VHRT_FUNCTION(int64_t) GetHandle(ObjectContext* context, int32_t selector);
