// Exported functions on language identifiers.
#include "../exports/vhrt/language.h"

int32_t _GetStandardLangId(int32_t language)
{
    constexpr int32_t primary_bits = 0x3FF;
    constexpr int32_t default_sublanguage = 0x400;
    return (language & primary_bits) == language ? language + default_sublanguage : language;
}
