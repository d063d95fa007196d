/* Script dialogs: defined by name, run by a loop around _WaitOnDialog, ended and released; and skins. */
#pragma once

#include "types.h"

/* Style flags of _DefineDialog: centred; and one of two ways in which events are delivered. */
enum { DialogStandardEvents = 1, DialogCentered = 2, DialogAllCommands = 4 };

/* Results of _WaitOnDialog beside the control's number. */
enum { DialogCreated = -100, DialogClosed = -200 };

/* Defines a dialog. The template is the resource name, or the number when the name is empty, in `library`, or in
   the context's resource libraries when that is empty. Parent -2 means the main window. Result: 0; -1 also when
   the name is taken. */
VHRT_FUNCTION(int32_t)
_DefineDialog(ObjectContext* context, const wchar_t* name, HMODULE module, const wchar_t* library, int32_t resource,
              const wchar_t* resourceName, int32_t reserved, HWND parent, int32_t style);

/* Creates the dialog (DialogCreated), then shows it and waits for its next event. Result: the number of the
   control; 1 in silent mode; 8 for F1; 0 when the thread's message loop ends; -1 on failure. */
VHRT_FUNCTION(int32_t) _WaitOnDialog(ObjectContext* context, const wchar_t* name);

/* Closes the dialog's window; it stays defined. Result: 0; -1 when it is unknown. */
VHRT_FUNCTION(int32_t) _EndDialog(ObjectContext* context, const wchar_t* name);

/* Removes the definition. Result: 0; -4 unknown; -2 still open. */
VHRT_FUNCTION(int32_t) _ReleaseDialog(ObjectContext* context, const wchar_t* name);

/* Enables (pops) or disables (pushes a name onto) the dialog before the current one. Result: 0. */
VHRT_FUNCTION(int32_t) _EnablePrevDialog(ObjectContext* context, int32_t enable, const wchar_t* name);

/* Whether the engine keeps the picture of a closed dialog. Result: the engine's; 0 without one. */
VHRT_FUNCTION(int32_t) _EnableDialogCache(ObjectContext* context, int32_t enable);

/* The current dialog's name. Result: 0; length + 1 when it does not fit; -1 when there is none. */
VHRT_FUNCTION(int32_t) _GetCurrentDialogName(ObjectContext* context, wchar_t* buffer, int32_t size);

/* Font of all dialogs, size in points. Result: 0. */
VHRT_FUNCTION(int32_t) _DialogSetFont(ObjectContext* context, const wchar_t* face, int32_t size);

/* Switches a loaded skin. Result: 0. */
VHRT_FUNCTION(int32_t) _EnableSkins(ObjectContext* context, int32_t enable);

/* Result: 1 or 0. */
VHRT_FUNCTION(int32_t) _IsSkinLoaded(ObjectContext* context);
