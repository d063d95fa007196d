// File operations that are put off to a later moment of the setup: a list in the registry, which a setup fills and then
// carries out. Administrators and power users share the machine's list, everybody else has one of their own.
#pragma once

#include <set>
#include <vector>

#include <windows.h>

#include "../scriptdata/stringx.h"

namespace vh {

inline constexpr const wchar_t* pending_operations_key = L"Software\\VarnholtPendingOperation";
inline constexpr std::size_t longest_pending_path = 259;

struct pending_operation {
    // The file that takes the place of the target.
    stringxi source;
    // Empty: the source is to be deleted.
    stringxi target;
};

// Puts an operation off. One on the same target, or on what another one still has to move, takes that one's place, and
// the file that was to move before is deleted. A list that can't be opened or written shows no error; a null text
// raises com_exception with 0x80004005. Longer paths are kept and never carried out.
void RecordPendingOperation(const wchar_t* source, const wchar_t* target);

// The source of the first operation on a target. Without one the text stays as it is.
void FindPendingOperation(const stringxi& target, stringxi& source);

// Takes the operations on these sources off the list; the files stay.
void ForgetPendingOperations(const std::set<stringxi>& sources);

// Carries all of them out and empties the list, whatever fails. Result: 0, or the last failure; a file that was to be
// deleted and is not counts for none.
HRESULT ApplyPendingOperations();

std::vector<pending_operation> ListPendingOperations();

// Empties the list and does nothing else. Result: 0 or the system's error.
LSTATUS ClearPendingOperations();

} // namespace vh
