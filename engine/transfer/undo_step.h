// The way back of one record.
#pragma once

#include "removal.h"

namespace vh::engine {

struct UndoResult {
    RemovalOutcome outcome = RemovalOutcome::absent;
    // Reason of a failure, or what is put off; empty otherwise.
    std::wstring reason{};
    // The record has had its day; otherwise it stands on, for the next attempt or for the removal.
    bool settled = true;
    // In use: it goes later, and the reason tells when.
    bool later = false;
};

// "file", "folder", "key", "value", "shortcut".
const wchar_t* KindWord(LogKind kind);
const wchar_t* KindWord(const LogRecord& record);
// The path, or root\key[\value].
std::wstring NameOf(const LogRecord& record);

// `superseded`: a newer record of the same thing was undone in this pass.
UndoResult RollBackStep(const LogRecord& record);
UndoResult RemoveStep(const LogRecord& record, bool superseded);
// What RemoveStep would come to when all that `draft` takes away is gone; nothing is touched.
UndoResult PlannedStep(const InstallLog& draft, const LogRecord& record, bool superseded);

// Why a removal leaves a file of the product where it is; nothing when it goes.
std::optional<RemovalOutcome> ReasonToKeep(const LogRecord& record, const FileFacts& there);

// A file that was not the product's leaves its place beside the target, and waits where nobody sees it. False while it
// can't.
bool StashOriginal(const LogRecord& record);
// It comes back to its place; where something else stands there now it gets a name of its own. False while it can't.
bool SettleOriginal(const LogRecord& record);

// Replaces a file by a text in one step; false, with the thread's last error, when it stays as it is.
bool ReplaceContent(const std::wstring& path, std::string_view content, const std::wstring& aside);

} // namespace vh::engine
