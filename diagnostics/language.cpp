#include "language.h"

#include <clocale>
#include <cwchar>
#include <optional>

#include <windows.h>

#include <mlang.h>

#include "../scriptdata/bstr.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/late_fallbacks.h"
#include "../scriptdata/late_windows.h"
#include "../scriptdata/unique.h"

namespace vh {

template <>
inline constexpr GUID iid_of<IMultiLanguage> = Guid("{275C23E1-3747-11D0-9FEA-00AA003F8646}");

namespace {

constexpr GUID multi_language_class = Guid("{275C23E2-3747-11D0-9FEA-00AA003F8646}");

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

struct named_language {
    const wchar_t* name;
    uint16_t id;
};

// Not the mirror of the table above: some names stand for a language without a sublanguage.
constexpr named_language named_languages[] = {
    {L"chinese", 4},
    {L"chinese-simplified", 2052},
    {L"chinese-traditional", 1028},
    {L"czech", 1029},
    {L"danish", 1030},
    {L"dutch", 1043},
    {L"dutch-belgian", 2067},
    {L"english", 9},
    {L"english-uk", 2057},
    {L"american", 1033},
    {L"australian", 3081},
    {L"canadian", 4105},
    {L"english-nz", 5129},
    {L"finnish", 1035},
    {L"french", 1036},
    {L"french-belgian", 2060},
    {L"french-swiss", 4108},
    {L"french-canadian", 3084},
    {L"german", 1031},
    {L"german-austrian", 3079},
    {L"german-swiss", 2055},
    {L"greek", 1032},
    {L"hungarian", 1038},
    {L"icelandic", 1039},
    {L"italian", 1040},
    {L"italian-swiss", 2064},
    {L"japanese", 1041},
    {L"korean", 1042},
    {L"norwegian", 20},
    {L"norwegian-bokmal", 1044},
    {L"norwegian-nynorsk", 2068},
    {L"polish", 1045},
    {L"portuguese", 2070},
    {L"portuguese-brazilian", 1046},
    {L"russian", 1049},
    {L"slovak", 1051},
    {L"spanish", 1034},
    {L"spanish-mexican", 2058},
    {L"spanish-modern", 3082},
    {L"swedish", 1053},
    {L"turkish", 1055},
};

// The system's object for languages, on systems where functions by name are missing. Null when there is none.
com_ptr<IMultiLanguage> MultiLanguage()
{
    com_ptr<IMultiLanguage> object;
    late::co_create_instance(multi_language_class, nullptr, CLSCTX_ALL, iid_of<IMultiLanguage>, object.put_void());
    return object;
}

stringx LanguageNameFromPlatform(uint16_t id)
{
    constexpr int name_size = LOCALE_NAME_MAX_LENGTH;
    wchar_t name[name_size] = L"";
    if (late::lcid_to_locale_name)
        return late::lcid_to_locale_name(id, name, name_size, 0) ? stringx(name) : stringx();
    if (late::lcid_to_rfc1766)
        return SUCCEEDED(late::lcid_to_rfc1766(id, name, name_size)) ? stringx(name) : stringx();
    const auto languages = MultiLanguage();
    bstr text;
    if (!languages || FAILED(languages->GetRfc1766FromLcid(id, text.put())))
        return {};
    return text.get();
}

uint16_t LanguageIdFromPlatform(const wchar_t* name)
{
    LCID id = 0;
    if (late::locale_name_to_lcid)
        return static_cast<uint16_t>(late::locale_name_to_lcid(name, 0));
    if (late::rfc1766_to_lcid)
        return SUCCEEDED(late::rfc1766_to_lcid(&id, name)) ? static_cast<uint16_t>(id) : uint16_t{0};
    const auto languages = MultiLanguage();
    const bstr text(name);
    if (!languages || FAILED(languages->GetLcidFromRfc1766(&id, text.get())))
        return 0;
    return static_cast<uint16_t>(id);
}

// A value of up to 10 bytes, read as a hexadecimal number.
std::optional<uint16_t> LanguageFromRegistry(const wchar_t* keyName, const wchar_t* valueName)
{
    constexpr REGSAM full_access = 0xF003F;
    unique_key key;
    if (RegOpenKeyExW(HKEY_USERS, keyName, 0, full_access, key.put()) != ERROR_SUCCESS)
        return std::nullopt;
    // A value that fills its bytes may come without a terminator.
    wchar_t text[5 + 1] = L"";
    DWORD size = 5 * sizeof(wchar_t);
    if (RegQueryValueExW(key.get(), valueName, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size) != ERROR_SUCCESS)
        return std::nullopt;
    return static_cast<uint16_t>(std::wcstoul(text, nullptr, 16));
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

uint16_t LanguageIdFromName(const wchar_t* name)
{
    for (const named_language& row : named_languages)
        if (std::wcscmp(row.name, name) == 0)
            return row.id;
    return LanguageIdFromPlatform(name);
}

uint16_t SystemDefaultUILanguage()
{
    if (late::get_system_default_ui_language)
        return late::get_system_default_ui_language();
    constexpr uint16_t american = 1033;
    const auto resources = LanguageFromRegistry(L".Default\\Control Panel\\desktop\\ResourceLocale", nullptr);
    if (resources)
        return *resources;
    return LanguageFromRegistry(L".DEFAULT\\Control Panel\\International", L"Locale").value_or(american);
}

stringx SetRuntimeLocaleFromLanguage(int category, uint16_t id)
{
    const stringx name = id ? LanguageNameFromId(id) : stringx();
    return _wsetlocale(category, id ? name.c_str() : nullptr);
}

} // namespace vh
