#include "language.h"

#include <clocale>
#include <cwchar>

#include <windows.h>

namespace vh {

namespace {

constexpr uint16_t other = 0xFFFF;

// The row with the exact sublanguage counts, or else that of `other`, which ends each language.
struct language_name {
    uint16_t primary;
    uint16_t sublanguage;
    const wchar_t* name;
};

constexpr language_name names[] = {
    {4, 1, L"chinese-traditional"},
    {4, 2, L"chinese-simplified"},
    {4, other, L"chinese"},
    {5, other, L"czech"},
    {6, other, L"danish"},
    {7, 1, L"german"},
    {7, 2, L"german-swiss"},
    {7, 3, L"german-austrian"},
    {7, other, L"german"},
    {8, other, L"greek"},
    {9, 1, L"american"},
    {9, 2, L"english-uk"},
    {9, 3, L"australian"},
    {9, 4, L"canadian"},
    {9, 5, L"english-nz"},
    {9, other, L"english"},
    {10, 1, L"spanish"},
    {10, 2, L"spanish-mexican"},
    {10, 3, L"spanish-modern"},
    {10, other, L"spanish"},
    {11, other, L"finnish"},
    {12, 1, L"french"},
    {12, 2, L"french-belgian"},
    {12, 3, L"french-canadian"},
    {12, 4, L"french-swiss"},
    {12, other, L"french"},
    {14, other, L"hungarian"},
    {15, other, L"icelandic"},
    {16, 1, L"italian"},
    {16, 2, L"italian-swiss"},
    {16, other, L"italian"},
    {17, other, L"japanese"},
    {18, other, L"korean"},
    {19, 1, L"dutch"},
    {19, 2, L"dutch-belgian"},
    {19, other, L"dutch"},
    {20, 1, L"norwegian-bokmal"},
    {20, 2, L"norwegian-nynorsk"},
    {20, other, L"norwegian"},
    {21, other, L"polish"},
    {22, 1, L"portuguese-brazilian"},
    {22, other, L"portuguese"},
    {25, other, L"russian"},
    {27, other, L"slovak"},
    {29, other, L"swedish"},
    {31, other, L"turkish"},
};

stringx LanguageNameFromPlatform(uint16_t id)
{
    wchar_t name[LOCALE_NAME_MAX_LENGTH];
    return LCIDToLocaleName(id, name, static_cast<int>(std::size(name)), 0) ? stringx(name) : stringx();
}

} // namespace

stringx LanguageNameFromId(uint16_t id)
{
    const uint16_t primary = PRIMARYLANGID(id);
    const uint16_t sublanguage = SUBLANGID(id);
    for (const language_name& row : names)
        if (row.primary == primary && (row.sublanguage == sublanguage || row.sublanguage == other))
            return row.name;
    return LanguageNameFromPlatform(id);
}

stringx SetRuntimeLocaleFromLanguage(int category, uint16_t id)
{
    const stringx name = id ? LanguageNameFromId(id) : stringx();
    return _wsetlocale(category, id ? name.c_str() : nullptr);
}

} // namespace vh
