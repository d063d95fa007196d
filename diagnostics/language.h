// Language identifiers, and the run-time locale that belongs to one.
#pragma once

#include <cstdint>

#include "../scriptdata/stringx.h"

namespace vh {

// The run-time's name of a language; of the platform's locale for a language that the table does not have.
// Empty when there is none.
stringx LanguageNameFromId(uint16_t id);

// Sets the locale of a category (LC_ALL and its kin) to that of the language; 0 only asks. Result: the locale
// now in force, or empty.
stringx SetRuntimeLocaleFromLanguage(int category, uint16_t id);

} // namespace vh
