/* The platform's dialog in which the user picks a folder. */
#pragma once

#include "types.h"

/* Flags of the folder picker that mean more here than to the platform (SHBrowseForFolder, BIF_...), which gets all
   others as they are. */
enum {
    PickStatus = 0x4,      /* a status line; not together with an edit control */
    PickEdit = 0x10,       /* an edit control above the tree; not for computers and printers */
    PickComputer = 0x1000, /* a computer: the tree starts at the network */
    PickPrinter = 0x2000
};

/* Lets the user pick a folder in the platform's dialog, over the main window. Null or empty texts mean the numbered
   ones of the resource libraries: title 14003, message 11626, `editLabel` 17600, `statusLabel` 17601.

   With an edit control `editLabel` stands above it and `statusLabel` below, and what is typed is the answer: blanks
   at its ends and one backslash behind it are dropped. OK refuses a folder whose disk is not there, whose syntax is
   wrong or, with `verify`, which is there already or can't be made: text 14002, with %s for the folder, under the
   title 11115. The folder is not made. Without an edit control `statusLabel` is the status line, and the answer is
   the path of the selected item, which may be empty; its display name when it has no path and a flag of 0x300A is set.

   `path`, of `size` units, holds the starting folder; it loses one backslash at its end at once, and after OK it holds
   the answer. On a thread that is in a multithreaded apartment the dialog has its old style. Result: 1 picked, 2
   cancelled, -1 for a null `path`, no room, or an answer that does not fit. */
VHRT_FUNCTION(int64_t)
_BrowseForFolder(ObjectContext* context, const wchar_t* title, const wchar_t* message, const wchar_t* editLabel,
                 const wchar_t* statusLabel, int32_t flags, wchar_t* path, int32_t size, int32_t verify);
