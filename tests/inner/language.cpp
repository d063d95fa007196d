// Language names in both directions, on systems with and without the functions for them, and the order of the
// modules that hold resources.
#include <clocale>

#include <gtest/gtest.h>

#include "../../diagnostics/language.h"
#include "../../files/language_config.h"
#include "../../runtime/module_resources.h"
#include "../../scriptdata/late_fallbacks.h"
#include "../../scriptdata/late_windows.h"
#include "../support/temp_folder.h"

namespace {

class LanguageNames : public testing::Test {
protected:
    LanguageNames() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
    ~LanguageNames() override
    {
        for (auto* function : vh::late::fallbacks)
            function->show();
        vh::late::co_create_instance.show();
        CoUninitialize();
    }
};

TEST_F(LanguageNames, ComeFromTheTable)
{
    const struct {
        uint16_t id;
        const wchar_t* name;
    } cases[] = {
        {4, L"chinese"},
        {0x0404, L"chinese-traditional"},
        {0x0804, L"chinese-simplified"},
        {0x0C07, L"german-austrian"},
        {0x1007, L"german"},
        {9, L"english"},
        {1033, L"american"},
        {5129, L"english-nz"},
        {0x1809, L"english"},
        {2070, L"portuguese"},
        {1046, L"portuguese-brazilian"},
        {0x0814, L"norwegian-nynorsk"},
        {0x040C, L"french"},
        {0x100C, L"french-swiss"},
        {0x041F, L"turkish"},
    };
    for (const auto& [id, name] : cases)
        EXPECT_STREQ(vh::LanguageNameFromId(id).c_str(), name) << id;
}

TEST_F(LanguageNames, LeadBackToIdentifiers)
{
    const struct {
        const wchar_t* name;
        uint16_t id;
    } cases[] = {
        {L"chinese", 4},           {L"chinese-traditional", 1028},
        {L"english", 9},           {L"american", 1033},
        {L"norwegian", 20},        {L"portuguese", 2070},
        {L"spanish-modern", 3082}, {L"french-swiss", 4108},
        {L"turkish", 1055},        {L"American", 0},
        {L"american ", 0},         {L"no such language", 0},
        {L"he-IL", 0x040D},
    };
    for (const auto& [name, id] : cases)
        EXPECT_EQ(vh::LanguageIdFromName(name), id) << name;
}

// Hebrew is in neither table. Each step is taken when the ones before it are missing.
TEST_F(LanguageNames, OutsideTheTableComeFromWhatThePlatformHas)
{
    constexpr uint16_t hebrew = 0x040D;
    EXPECT_STREQ(vh::LanguageNameFromId(hebrew).c_str(), L"he-IL");
    EXPECT_EQ(vh::LanguageIdFromName(L"he-IL"), hebrew);

    vh::late::lcid_to_locale_name.hide();
    vh::late::locale_name_to_lcid.hide();
    vh::late::lcid_to_rfc1766.replace([](LCID id, wchar_t* name, int size) -> HRESULT {
        return id == hebrew && size == 85 ? (lstrcpyW(name, L"by mlang"), S_OK) : E_FAIL;
    });
    vh::late::rfc1766_to_lcid.replace([](LCID* id, const wchar_t* name) -> HRESULT {
        *id = 0x1040D;
        return name == std::wstring_view(L"he-IL") ? S_OK : E_FAIL;
    });
    EXPECT_STREQ(vh::LanguageNameFromId(hebrew).c_str(), L"by mlang");
    EXPECT_STREQ(vh::LanguageNameFromId(0x0430).c_str(), L"");
    EXPECT_EQ(vh::LanguageIdFromName(L"he-IL"), hebrew);
    EXPECT_EQ(vh::LanguageIdFromName(L"xx"), 0);

    // The system's own object, and then none.
    vh::late::lcid_to_rfc1766.hide();
    vh::late::rfc1766_to_lcid.hide();
    EXPECT_STREQ(vh::LanguageNameFromId(hebrew).c_str(), L"he");
    EXPECT_EQ(vh::LanguageIdFromName(L"he"), hebrew);
    vh::late::co_create_instance.replace(
        [](const GUID&, IUnknown*, DWORD, const GUID&, void**) -> HRESULT { return REGDB_E_CLASSNOTREG; });
    EXPECT_STREQ(vh::LanguageNameFromId(hebrew).c_str(), L"");
    EXPECT_EQ(vh::LanguageIdFromName(L"he"), 0);
}

class DefaultLanguage : public LanguageNames {
protected:
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
    EXPECT_EQ(vh::SystemDefaultUILanguage(), GetSystemDefaultUILanguage());
    vh::late::get_system_default_ui_language.hide();
    RegDeleteKeyW(HKEY_USERS, resources);
    RegDeleteKeyValueW(HKEY_USERS, international, L"Locale");
    EXPECT_EQ(vh::SystemDefaultUILanguage(), 1033);
    Set(international, L"Locale", L"40d", 4);
    EXPECT_EQ(vh::SystemDefaultUILanguage(), 0x040D);
    // Ten bytes are read: more are as good as none.
    Set(international, L"Locale", L"0000040d", 9);
    EXPECT_EQ(vh::SystemDefaultUILanguage(), 1033);
    Set(resources, nullptr, L"1041f0", 5);
    EXPECT_EQ(vh::SystemDefaultUILanguage(), 0x041F);
    RegDeleteKeyW(HKEY_USERS, resources);
    RegDeleteKeyValueW(HKEY_USERS, international, L"Locale");
}

TEST(RuntimeLocale, FollowsALanguageAndIsOnlyToldFor0)
{
    EXPECT_STREQ(vh::SetRuntimeLocaleFromLanguage(LC_ALL, 0).c_str(), L"C");
    const stringx german = vh::SetRuntimeLocaleFromLanguage(LC_ALL, 1031);
    EXPECT_TRUE(german.view().starts_with(L"German")) << german.c_str();
    EXPECT_EQ(vh::SetRuntimeLocaleFromLanguage(LC_ALL, 0), german);
    std::setlocale(LC_ALL, "C");
}

TEST(LanguageConfiguration, IsReadKeyByKey)
{
    const vh::test::TempFolder folder;
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
    ObjectContext context;
    const wchar_t* const version = RT_VERSION;
    const wchar_t* const first = MAKEINTRESOURCEW(1);
    EXPECT_EQ(FindResourceInModules(context, version, first), nullptr);
    context.resourceModule = GetModuleHandleW(L"kernel32.dll");
    EXPECT_EQ(FindResourceInModules(context, version, first), context.resourceModule);
    context.userModule = GetModuleHandleW(L"ntdll.dll");
    EXPECT_EQ(FindResourceInModules(context, version, first), context.userModule);
    const wchar_t* const types[] = {L"no such type", version};
    EXPECT_EQ(FindResourceInModules(context, types, first), context.userModule);
    EXPECT_EQ(FindResourceInModules(context, std::span(types, 1), first), nullptr);
    // The test's own modules are not the context's to free.
    context.resourceModule = context.userModule = nullptr;
}

} // namespace
