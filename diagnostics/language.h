// Language identifiers, and the run-time locale that belongs to one.
#pragma once

#include <cstdint>

#include "../scriptdata/stringx.h"

namespace vh {

// The run-time's name of a language; of the platform's locale for a language that the table does not have.
// Empty when there is none.
stringx LanguageNameFromId(uint16_t id);

// The identifier of a name: of the run-time's, compared exactly, or else of a locale name of the platform. 0 when
// there is none.
uint16_t LanguageIdFromName(const wchar_t* name);

// The language that the system was installed in; 1033 when the system doesn't say.
uint16_t SystemDefaultUILanguage();

// Sets the locale of a category (LC_ALL and its kin) to that of the language; 0 only asks. Result: the locale
// now in force, or empty.
stringx SetRuntimeLocaleFromLanguage(int category, uint16_t id);

} // namespace vh
