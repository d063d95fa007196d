/* Script dialogs: defined by name, run by a loop around _WaitOnDialog, ended and released; and skins. Where the engine
   brings its own windows, _DefineDialog, _EndDialog, _ReleaseDialog and _DialogSetFont answer -1. */
#pragma once

#include "types.h"

/* Style flags of _DefineDialog: centred; and one of two ways in which events are delivered. */
enum { DialogStandardEvents = 1, DialogCentered = 2, DialogAllCommands = 4 };

/* Results of _WaitOnDialog beside the control's number. No dialog sends DialogClosed by itself: the close box is the
   command of Cancel, 2. */
enum { DialogCreated = -100, DialogClosed = -200 };

/* Defines a dialog. The template is the resource name, or the number when the name is empty: in `library`, which has to
   be there; in `module` when that is empty or can't be loaded; without both in the context's resource library that has
   the number. Parent -2 means the main window. Result: 0; -1 also when the name is taken, or without a library in a
   context that has none. */
VHRT_FUNCTION(int32_t)
_DefineDialog(ObjectContext* context, const wchar_t* name, HMODULE module, const wchar_t* library, int32_t resource,
              const wchar_t* resourceName, int32_t reserved, HWND parent, int32_t style);

/* Creates the dialog (DialogCreated), then shows it and waits for its next event. Result: the number of the
   control; 1 in silent mode; 8 for F1; 0 when the thread's message loop ends; -1 on failure. */
VHRT_FUNCTION(int32_t) _WaitOnDialog(ObjectContext* context, const wchar_t* name);

/* Closes the dialog's window and takes the top name off the stack of active dialogs; the dialog stays defined.
   "ProgressDlg" is the status window. Result: 0; -1 when it is unknown; the engine's failing code. */
VHRT_FUNCTION(int32_t) _EndDialog(ObjectContext* context, const wchar_t* name);

/* Removes the definition. Result: 0; -4 unknown; -2 still open. */
VHRT_FUNCTION(int32_t) _ReleaseDialog(ObjectContext* context, const wchar_t* name);

/* 0 puts a name on the stack of active dialogs, which disables the window that was current; any other number takes the
   top name off, whatever `name` says, and enables the window below. Result: 0. */
VHRT_FUNCTION(int32_t) _EnablePrevDialog(ObjectContext* context, int32_t enable, const wchar_t* name);

/* Whether the engine keeps the picture of a closed dialog until the next one shows. Result: 0. */
VHRT_FUNCTION(int32_t) _EnableDialogCache(ObjectContext* context, int32_t enable);

/* The current dialog's name. Result: 0; length + 1 when it does not fit; -1 when there is none. */
VHRT_FUNCTION(int32_t) _GetCurrentDialogName(ObjectContext* context, wchar_t* buffer, int32_t size);

/* Font of all dialogs that are created from now on, size in points; an empty face leaves the templates' own. Result:
   0. */
VHRT_FUNCTION(int32_t) _DialogSetFont(ObjectContext* context, const wchar_t* face, int32_t size);

/* Switches a loaded skin. Result: 0. */
VHRT_FUNCTION(int32_t) _EnableSkins(ObjectContext* context, int32_t enable);

/* Result: 1 or 0. */
VHRT_FUNCTION(int32_t) _IsSkinLoaded(ObjectContext* context);
