// Texts that a run leaves for the one after a restart, beside its install log.
#pragma once

#include <array>
#include <string>
#include <vector>

namespace vh::engine {

using RebootText = std::array<std::wstring, 3>;

// What the last committed run left; empty when that is nothing, or can't be read.
std::vector<RebootText> ReadRebootTexts(const std::wstring& logFile);
// Replaces what was left; nothing to leave takes the file away. False when the file can't be written.
bool WriteRebootTexts(const std::wstring& logFile, const std::vector<RebootText>& texts);

} // namespace vh::engine
