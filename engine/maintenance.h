// What a run finds of the last one, and what it leaves to the next.
#pragma once

#include "core.h"

namespace vh::engine {

// Kind of the run, target, selection and state, as the last run left them. Throws engine_error for another target than
// that of what is installed, and for a lower version that nobody asked for.
void TakeOver(Core& core);

// The language of the last run; 0 when there was none.
int LanguageOf(const InstallLog& log);

// What the run is for is refused when TARGETDIR has moved meanwhile: throws engine_error.
void CheckTargetStays(const Core& core);

// Takes away what an upgrade no longer has, brings back values that a repair misses, writes the entry of the installed
// programs, and ends the run for good. A run that did nothing leaves no log.
void CommitRun(Core& core, const std::wstring& target);

// Something of the product waits for the system to start again, or will once the run in hand is committed.
bool NeedsRestart(const Core& core);

// Files, values and shortcuts that the run in hand has written so far.
RunCounts CountWritten(const InstallLog& log);

// Paths of the features that are selected now.
std::vector<std::wstring> SelectedFeatures(const Core& core);

// A log that would undo nothing goes, with what is kept beside it.
void DropIfIdle(InstallLog& log);
// The folder beside a log that holds the product file and the scripts.
std::wstring KeptSetupFolder(const std::wstring& logFile);

} // namespace vh::engine
