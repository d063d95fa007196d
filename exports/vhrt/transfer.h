/* The large actions: moving data, removal, updates, registry sets, further data sets, saved targets. */
#pragma once

#include "types.h"

/* Installs what is selected, on the calling thread, with progress in the status display. `value` goes on to
   the host. Traced as "FeatureMoveData" and "FeatureTransferData". Result: 0 or a failure of the media. */
VHRT_FUNCTION(int32_t) _ComponentMoveData(ObjectContext* context, const wchar_t* media, int32_t value);
VHRT_FUNCTION(int32_t) _ComponentTransferData(ObjectContext* context, const wchar_t* media);

/* Writes a registry set, or the shell objects, of the media with the current log. Traced. */
VHRT_FUNCTION(int32_t) _CreateRegistrySet(ObjectContext* context, const wchar_t* media, const wchar_t* set);
VHRT_FUNCTION(int32_t) _CreateShellObjects(ObjectContext* context, const wchar_t* media);

/* Actions on the media "DATA". The first three leave reinstall mode on, also when they fail; _ComponentRemoveAll
   leaves remove-all mode on. Result: 0, the mapped failure of the action, or that of the mode. */
VHRT_FUNCTION(int32_t) _ComponentReinstall(ObjectContext* context);
VHRT_FUNCTION(int32_t) _ComponentUpdate(ObjectContext* context);
VHRT_FUNCTION(int32_t) _ComponentPatch(ObjectContext* context);
VHRT_FUNCTION(int32_t) _ComponentRemoveAll(ObjectContext* context);
VHRT_FUNCTION(int32_t) _ComponentRemoveAllInLogOnly(ObjectContext* context);

/* Does nothing. Result: 0x80004001, whatever the context. */
VHRT_FUNCTION(int32_t) _DoInstall(ObjectContext* context);

/* Opens the header file of a data set as a media; its extension becomes ".hdr". `target` is the root item that
   the media shows. _ComponentInitialize uses the media name "<Data>". Result: 0; -127 when the media exists; the
   engine's failure as it stands. */
VHRT_FUNCTION(int32_t)
_FeatureInitialize(ObjectContext* context, const wchar_t* media, const wchar_t* target, const wchar_t* header);
VHRT_FUNCTION(int32_t) _ComponentInitialize(ObjectContext* context, const wchar_t* target, const wchar_t* header);

/* Reads the text variables back from the log, or writes them to it, under a name. Traced as "FeatureLoadTarget"
   and "FeatureSaveTarget", with an end record on success only. Result: 0 or the failure as it stands. */
VHRT_FUNCTION(int32_t) _ComponentLoadTarget(ObjectContext* context, const wchar_t* name);
VHRT_FUNCTION(int32_t) _ComponentSaveTarget(ObjectContext* context, const wchar_t* name);
