// Language names in both directions, on systems with and without the functions for them, and the order of the
// modules that hold resources.
#include <clocale>

#include "../../diagnostics/language.h"
#include "../../dialogs/resource_modules.h"
#include "../../files/language_config.h"
#include "../../scriptdata/late_fallbacks.h"
#include "../../scriptdata/late_windows.h"
#include "../support/test.h"

namespace {

struct LanguageNames : testing::Test {
    ~LanguageNames() override
    {
        for (auto* function : late::fallbacks)
            function->show();
        late::co_create_instance.show();
    }

    const Apartment apartment;
};

// Primary language and sublanguage of each name; a sublanguage beyond those listed has the general name.
TEST_F(LanguageNames, ComeFromTheTable)
{
    std::wistringstream names(LR"(4 1 chinese-traditional 4 2 chinese-simplified 4 0 chinese 4 3 chinese 5 0 czech
        5 1 czech 6 0 danish 6 9 danish 7 1 german 7 2 german-swiss 7 3 german-austrian 7 0 german 7 4 german 8 1 greek
        9 1 american 9 2 english-uk 9 3 australian 9 4 canadian 9 5 english-nz 9 0 english 9 6 english 10 1 spanish
        10 2 spanish-mexican 10 3 spanish-modern 10 0 spanish 10 4 spanish 11 1 finnish 12 1 french 12 2 french-belgian
        12 3 french-canadian 12 4 french-swiss 12 0 french 12 5 french 14 1 hungarian 15 1 icelandic 16 1 italian
        16 2 italian-swiss 16 0 italian 17 1 japanese 18 1 korean 19 1 dutch 19 2 dutch-belgian 19 0 dutch
        20 1 norwegian-bokmal 20 2 norwegian-nynorsk 20 0 norwegian 21 1 polish 22 1 portuguese-brazilian
        22 2 portuguese 22 0 portuguese 25 1 russian 27 1 slovak 29 1 swedish 29 2 swedish 31 1 turkish)");
    int primary = 0, sublanguage = 0;
    for (std::wstring name; names >> primary >> sublanguage >> name;)
        EXPECT_EQ(LanguageNameFromId(static_cast<uint16_t>(sublanguage << 10 | primary)).view(), name) << name;
}

TEST_F(LanguageNames, LeadBackToIdentifiers)
{
    std::wistringstream names(LR"(chinese 4 chinese-simplified 2052 chinese-traditional 1028 czech 1029 danish 1030
        dutch 1043 dutch-belgian 2067 english 9 english-uk 2057 american 1033 australian 3081 canadian 4105
        english-nz 5129 finnish 1035 french 1036 french-belgian 2060 french-swiss 4108 french-canadian 3084 german 1031
        german-austrian 3079 german-swiss 2055 greek 1032 hungarian 1038 icelandic 1039 italian 1040 italian-swiss 2064
        japanese 1041 korean 1042 norwegian 20 norwegian-bokmal 1044 norwegian-nynorsk 2068 polish 1045 portuguese 2070
        portuguese-brazilian 1046 russian 1049 slovak 1051 spanish 1034 spanish-mexican 2058 spanish-modern 3082
        swedish 1053 turkish 1055 American 0 unknown 0 he-IL 1037)");
    uint16_t id = 0;
    for (std::wstring name; names >> name >> id;)
        EXPECT_EQ(LanguageIdFromName(name.c_str()), id) << name;
    EXPECT_EQ(LanguageIdFromName(L"american "), 0);
}

// Hebrew is in neither table. Each step is taken when the ones before it are missing.
TEST_F(LanguageNames, OutsideTheTableComeFromWhatThePlatformHas)
{
    constexpr uint16_t hebrew = 0x040D;
    EXPECT_STREQ(LanguageNameFromId(hebrew).c_str(), L"he-IL");
    late::lcid_to_locale_name.hide();
    late::locale_name_to_lcid.hide();
    late::lcid_to_rfc1766.replace([](LCID id, wchar_t* name, int size) -> HRESULT {
        return id == hebrew && size == 85 ? (lstrcpyW(name, L"by mlang"), S_OK) : E_FAIL;
    });
    late::rfc1766_to_lcid.replace([](LCID* id, const wchar_t* name) -> HRESULT {
        *id = 0x1040D;
        return name == std::wstring_view(L"he-IL") ? S_OK : E_FAIL;
    });
    EXPECT_STREQ(LanguageNameFromId(hebrew).c_str(), L"by mlang");
    EXPECT_STREQ(LanguageNameFromId(0x0430).c_str(), L"");
    EXPECT_EQ(LanguageIdFromName(L"he-IL"), hebrew);
    EXPECT_EQ(LanguageIdFromName(L"xx"), 0);

    // The system's own object, and then none.
    late::lcid_to_rfc1766.hide();
    late::rfc1766_to_lcid.hide();
    EXPECT_STREQ(LanguageNameFromId(hebrew).c_str(), L"he");
    EXPECT_EQ(LanguageIdFromName(L"he"), hebrew);
    late::co_create_instance.replace(
        [](const GUID&, IUnknown*, DWORD, const GUID&, void**) -> HRESULT { return REGDB_E_CLASSNOTREG; });
    EXPECT_STREQ(LanguageNameFromId(hebrew).c_str(), L"");
    EXPECT_EQ(LanguageIdFromName(L"he"), 0);
}

struct DefaultLanguage : LanguageNames {
    // The first units of a text: the system adds a terminator of its own where one follows.
    static void Set(const wchar_t* key, const wchar_t* name, const wchar_t* value, DWORD units)
    {
        EXPECT_EQ(RegSetKeyValueW(HKEY_USERS, key, name, REG_SZ, value, units * sizeof(wchar_t)), ERROR_SUCCESS);
    }
    static constexpr auto resources = L".DEFAULT\\Control Panel\\Desktop\\ResourceLocale";
    static constexpr auto international = L".DEFAULT\\Control Panel\\International";
};

TEST_F(DefaultLanguage, IsReadFromTheRegistryWhereTheSystemHasNoFunction)
{
    EXPECT_EQ(SystemDefaultUILanguage(), GetSystemDefaultUILanguage());
    late::get_system_default_ui_language.hide();
    RegDeleteKeyW(HKEY_USERS, resources);
    RegDeleteKeyValueW(HKEY_USERS, international, L"Locale");
    EXPECT_EQ(SystemDefaultUILanguage(), 1033);
    Set(international, L"Locale", L"40d", 4);
    EXPECT_EQ(SystemDefaultUILanguage(), 0x040D);
    // Ten bytes are read: more are as good as none.
    Set(international, L"Locale", L"0000040d", 9);
    EXPECT_EQ(SystemDefaultUILanguage(), 1033);
    Set(resources, nullptr, L"1041f0", 5);
    EXPECT_EQ(SystemDefaultUILanguage(), 0x041F);
    RegDeleteKeyW(HKEY_USERS, resources);
    RegDeleteKeyValueW(HKEY_USERS, international, L"Locale");
}

TEST(RuntimeLocale, FollowsALanguageAndIsOnlyToldFor0)
{
    EXPECT_STREQ(SetRuntimeLocaleFromLanguage(LC_ALL, 0).c_str(), L"C");
    const stringx german = SetRuntimeLocaleFromLanguage(LC_ALL, 1031);
    EXPECT_TRUE(german.view().starts_with(L"German")) << german.c_str();
    EXPECT_EQ(SetRuntimeLocaleFromLanguage(LC_ALL, 0), german);
    std::setlocale(LC_ALL, "C");
}

TEST(LanguageConfiguration, IsReadKeyByKey)
{
    const TempFolder folder;
    using Ids = std::set<uint16_t>;
    LanguageConfig config;
    config.Read(folder.Write(L"a.ini",
                             "[Startup]\nEnableLangDlg=yes\n[Languages]\nDefault=0x407\nSupported=1033,,1041,\n"
                             "RequireExactLangMatch=all\nRTLLangs=1025,1025,1037"));
    EXPECT_TRUE(config.enableLangDlg);
    EXPECT_EQ(config.defaultLanguage, 1031);
    EXPECT_EQ(config.supported, (Ids{0, 1033, 1041})) << "a field between two commas counts, one behind the last not";
    EXPECT_EQ(config.requireExactLangMatch, Ids{0}) << "the word has capitals";
    EXPECT_FALSE(config.allRequireExactMatch);
    EXPECT_EQ(config.rtlLangs, (Ids{1025, 1037}));

    LanguageConfig other;
    other.Read(folder.Write(L"b.ini", "[Languages]\nRequireExactLangMatch=ALL"));
    EXPECT_TRUE(other.allRequireExactMatch);
    EXPECT_TRUE(other.requireExactLangMatch.empty() && other.supported.empty() && !other.enableLangDlg);
    EXPECT_EQ(other.defaultLanguage, 9);
}

TEST(ModuleResources, LieInTheAuthorsModuleBeforeTheProducts)
{
    ResourceModules modules;
    const wchar_t* const version = RT_VERSION;
    const wchar_t* const first = MAKEINTRESOURCEW(1);
    EXPECT_EQ(modules.Find(version, first), nullptr);
    modules.product = GetModuleHandleW(L"kernel32.dll");
    EXPECT_EQ(modules.Find(version, first), modules.product);
    modules.user = GetModuleHandleW(L"ntdll.dll");
    EXPECT_EQ(modules.Find(version, first), modules.user);
    const wchar_t* const types[] = {L"no such type", version};
    EXPECT_EQ(modules.Find(types, first), modules.user);
    EXPECT_EQ(modules.Find(std::span(types, 1), first), nullptr);
}

} // namespace
