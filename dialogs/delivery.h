// Which events reach a script, and under which code: the tables behind both ends of a dialog's queue.
#pragma once

#include "../scriptdata/stringx.h"
#include "dialog_event.h"

namespace vh {

// The class of a window, empty for none; it compares without regard to case.
stringxi ClassNameOf(HWND window);

// Whether a control of that class may host a web page.
bool HostsPages(const stringxi& type);

// Whether the standard delivery lets a WM_COMMAND of such a control into the queue.
bool EntersStandard(const stringxi& type, UINT code);

// Whether a notification may enter the queue; that of a window without a class name always does.
bool PassesNotifyTest(const stringxi& type, UINT code);

// Whether an event leaves the queue for the script; `linked` says that its control has a link.
bool Leaves(Delivery delivery, const DialogEvent& event, bool linked);

// The small negative codes of scripts for an event that left the queue; -999 for none.
int32_t SubCommandOf(const DialogEvent& event);
int32_t NotificationCodeOf(const DialogEvent& event);

} // namespace vh
