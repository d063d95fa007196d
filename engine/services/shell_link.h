// Shortcut files as records.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "../core.h"

namespace vh::engine {

struct LinkData {
    std::wstring target;
    std::wstring arguments;
    std::wstring workingDir;
    std::wstring iconFile;
    long iconIndex = 0;
    // "None", or keys joined by "+": "Ctrl+Alt+F5".
    std::wstring hotKey;
    long showCommand = 1;
    // Shell properties by their keys, "{format identifier}, number".
    std::vector<std::pair<std::wstring, std::wstring>> properties;
    // The file that this was read from; empty for a new shortcut.
    std::wstring origin;
};

// Throws for a file that is no shortcut.
LinkData ReadShellLink(const std::wstring& file);
// Writes the file anew, or over the properties of one that is there. Throws what the shell answers.
void WriteShellLink(const LinkData& link, const std::wstring& file);

// A key and its modifiers in the shell's form: low byte the key, high byte shift 1, control 2, alt 4. 0 for
// "None"; a text that names no key throws.
WORD HotKeyOf(std::wstring_view text);
std::wstring HotKeyText(WORD key);

} // namespace vh::engine
