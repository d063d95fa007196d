// What a run does to each thing on the machine and why, as logs and plans tell it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace vh::engine {

enum class Act { add, replace, keep, remove, restore };

enum class Why {
    fresh,           // nothing stood there
    missing,         // it was the product's, and is gone
    damaged,         // it was the product's, and holds something else
    differs,         // in size, time or content
    version,         // of what stands there is not the one that comes
    same,            // nothing is to be done
    newer,           // what stands there has a higher version
    not_older,       // what stands there, for a copy of newer files only
    never_overwrite, // by the file's flag, or that of a copy
    keep_changed,    // by the file's flag: the user changed it
    overridden,      // changed since it was installed, and replaced all the same
    changed,         // since it was installed: a removal leaves it
    permanent,       // by the file's flag
    found,           // it stood there, the same, before the product
    shared,          // another product has it too
    unselected,      // nobody selects its feature any more
    dropped,         // the new version has it no more
    last,            // nothing else of the product is left
    asked,           // by the script alone
};

struct Decision {
    Act act = Act::keep;
    Why why = Why::same;
    // "file", "folder", "key", "value", "shortcut".
    const wchar_t* kind = L"file";
    // The path, or root\key[\value].
    std::wstring what;
    // That brings it; empty for what a script does by itself.
    std::wstring feature{};
    // Versions of what stands there and of what comes, where both have one.
    std::wstring before{};
    std::wstring after{};
    // Bytes of what is written, and of what goes away.
    uint64_t size = 0;
    uint64_t freed = 0;
};

// Who hears what is decided, and of text variables that a script sets: name and value.
using DecisionNews = std::function<void(const Decision&)>;
using VariableNews = std::function<void(const std::wstring&, const std::wstring&)>;

// "add", "replace" ...
const wchar_t* WordOf(Act act);
// For people: "version 1.0 gives way to 2.0".
std::wstring ReasonOf(const Decision& decision);
// The flag of the product file that decided; empty when none did.
const wchar_t* FlagOf(Why why);

} // namespace vh::engine
