#include "../../engine/text_table.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

std::wstring Value(ISetupTextSub& store, const wchar_t* name)
{
    bstr value;
    store.GetValue(bstr(name).get(), value.put());
    return std::wstring(value.view());
}

std::wstring Substituted(ISetupTextSub& store, const wchar_t* text)
{
    BSTR held = SysAllocString(text);
    store.Substitute(&held);
    bstr result;
    result.attach(held);
    return std::wstring(result.view());
}

HRESULT Set(ISetupTextSub& store, const wchar_t* name, const wchar_t* value)
{
    return store.SetValue(bstr(name).get(), bstr(value).get());
}

using TextStores = OnTree;

} // namespace

TEST(TextPatterns, AreReplacedInnermostFirstAndUnknownNamesStay)
{
    const std::map<std::wstring, std::wstring> values{{L"A", L"1"},          {L"B", L"<A>2"}, {L"KIND", L"A"},
                                                      {L"LOOP", L"x<LOOP>"}, {L"LEFT", L"<"}, {L"EMPTY", L""}};
    const auto lookup = [&](std::wstring_view name) -> std::optional<std::wstring> {
        const auto found = values.find(Upper(name));
        return found == values.end() ? std::nullopt : std::optional(found->second);
    };
    vh::test::Table<const wchar_t*, const wchar_t*> cases = {
        {L"", L""},           {L"<a>-<B>", L"1-12"},      {L"plain > text <", L"plain > text <"},
        {L"<A>", L"1"},       {L"a<EMPTY>b", L"ab"},      {L"<C> and <A>", L"<C> and 1"},
        {L"<<KIND>>", L"1"},  {L"a < b <A>", L"a < b 1"}, {L"<C<A>>-<A><KIND>", L"<C1>-1A"},
        {L"<C<A>>", L"<C1>"}, {L"<LEFT>A>", L"<A>"},      {L"<X<LEFT>A><A>", L"<X<A>1"}};
    for (const auto& [text, result] : cases)
        EXPECT_EQ(result, SubstituteText(text, lookup)) << ToUtf8(text);
    // A value that holds itself ends at the depth bound, and one that doubles can't grow without limit.
    EXPECT_EQ(32u + 6u, SubstituteText(L"<LOOP>", lookup).size());
    const auto doubling = [](std::wstring_view) { return std::optional<std::wstring>(L"<A><A>"); };
    EXPECT_LT(SubstituteText(L"<A>", doubling).size(), 1'000'001u);
}

TEST_F(TextStores, LocalValuesWinAndGlobalOnesShowThrough)
{
    const auto local = ServiceOf<ISetupTextSub>(*engine, local_text_service);
    const auto global = ServiceOf<ISetupTextSub>(*engine, global_text_service);
    EXPECT_EQ(folder.Target(), Value(*local.get(), L"TARGETDIR"));
    EXPECT_EQ(S_OK, Set(*global.get(), L"Shade", L"global"));
    EXPECT_EQ(L"global", Value(*local.get(), L"SHADE"));
    EXPECT_EQ(S_OK, Set(*local.get(), L"shade", L"local"));
    EXPECT_EQ(L"local Probe", Substituted(*local.get(), L"<Shade> <PRODUCT_NAME>"));
    EXPECT_EQ(L"global <NOBODY>", Substituted(*global.get(), L"<Shade> <NOBODY>"));
    bstr nothing;
    EXPECT_EQ(S_FALSE, local->GetValue(bstr(L"NOBODY").get(), nothing.put()));
    EXPECT_EQ(E_INVALIDARG, Set(*local.get(), L"", L"x"));
}

TEST_F(TextStores, BeginWithTheVariablesOfTheRunAndTheSystem)
{
    MakeTree(folder, R"(, "company": "Makers", "installGuid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D02}",
        "variables": {"OWN": "<OURS>", "COMPANY_NAME": "overridden"})");
    Options options = folder.Given();
    options.language = 1031;
    options.variables = {{L"OURS", L"host's"}, {L"DESKTOP", L"elsewhere"}};
    engine = Engine::Open(std::move(options));
    const auto global = ServiceOf<ISetupTextSub>(*engine, global_text_service);
    bstr support;
    ServiceOf<ISetupDirs>(*engine)->GetSupportDir(support.put());
    wchar_t temp[MAX_PATH + 1];
    GetTempPathW(MAX_PATH, temp);
    const std::pair<const wchar_t*, std::wstring> plain[] = {
        {L"OURS", L"host's"},          {L"TARGETDIR", folder.Target()},
        {L"LANGUAGE", L"1031"},        {L"COMPANY_NAME", L"overridden"},
        {L"DESKTOP", L"elsewhere"},    {L"ENGINECOMMONDIR", folder.Setup()},
        {L"SRCDIR", folder.Setup()},   {L"SUPPORTDIR", std::wstring(support.view())},
        {L"PRODUCT_NAME", L"Probe"},   {L"SHAREDSUPPORTDIR", std::wstring(support.view())},
        {L"TEMPDIR", FullPath(temp)},  {L"PRODUCT_GUID", L"{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D01}"},
        {L"PRODUCT_VERSION", L"1.0"},  {L"INSTALL_GUID", L"{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D02}"},
        {L"ENGINEDIR", folder.Setup()}};
    for (const auto& [name, value] : plain)
        EXPECT_EQ(value, Value(*global.get(), name)) << ToUtf8(name);
    EXPECT_EQ(L"host's", Substituted(*global.get(), L"<OWN>"));
    const std::pair<const wchar_t*, const wchar_t*> folders[] = {
        {L"WINDIR", L"windir"},   {L"PROGRAMFILES", L"ProgramFiles"}, {L"COMMONFILES", L"CommonProgramFiles"},
        {L"APPDATA", L"APPDATA"}, {L"LOCALAPPDATA", L"LOCALAPPDATA"}, {L"COMMONAPPDATA", L"ProgramData"}};
    for (const auto& [name, variable] : folders) {
        wchar_t value[MAX_PATH] = L"";
        GetEnvironmentVariableW(variable, value, MAX_PATH);
        EXPECT_TRUE(SameText(value, Value(*global.get(), name))) << ToUtf8(name) << " " << ToUtf8(value);
    }
    EXPECT_TRUE(SameText(Value(*global.get(), L"WINDIR") + L"\\system32", Value(*global.get(), L"SYSTEMDIR")));
    for (const wchar_t* name : {L"PROGRAMS", L"PERSONAL"})
        EXPECT_NE(L"", DriveOf(Value(*global.get(), name))) << ToUtf8(name);
    EXPECT_NE(Value(*global.get(), L"PROGRAMS"), Value(*global.get(), L"PERSONAL"));
}

TEST_F(TextStores, ProtectedVariablesRefuseAndCanBeFreed)
{
    const auto global = ServiceOf<ISetupTextSub>(*engine, global_text_service);
    EXPECT_EQ(E_ACCESSDENIED, Set(*global.get(), L"SUPPORTDIR", L"C:\\"));
    const auto protection = global.query<ISetupTextSubEx>();
    ASSERT_EQ(S_OK, protection->Protect(bstr(L"SUPPORTDIR").get(), 0));
    EXPECT_EQ(S_OK, Set(*global.get(), L"SUPPORTDIR", L"C:\\"));
    ASSERT_EQ(S_OK, protection->Protect(bstr(L"SUPPORTDIR").get(), -1));
    EXPECT_EQ(E_ACCESSDENIED, Set(*global.get(), L"SUPPORTDIR", L"D:\\"));
}

TEST_F(TextStores, TargetsAreSavedToTheLogAndLoadedByALaterRun)
{
    {
        const auto local = ServiceOf<ISetupTextSub>(*engine, local_text_service);
        const auto global = ServiceOf<ISetupTextSub>(*engine, global_text_service);
        Set(*local.get(), L"MINE", L"l\u00f6cal \u65e5");
        Set(*global.get(), L"OURS", L"global");
        com_ptr<IUnknown> store;
        const auto database = ServiceOf<ISetupLogDB>(*engine);
        ASSERT_EQ(S_OK, database->GetStore(store.put()));
        EXPECT_EQ(FolderOf(engine->LogFile()), PropertyText(database.query<IDispatch>().get(), L""));
        EXPECT_EQ(engine->LogFile(), PropertyText(store.query<IDispatch>().get(), L""));
        ASSERT_EQ(S_OK, global->Save(bstr(L"dirsGlobal").get(), store.get()));
        ASSERT_EQ(S_OK, local->Save(bstr(L"dirsLocal").get(), ServiceOf<ISetupLog>(*engine).get()));
        EXPECT_EQ(E_INVALIDARG, local->Save(bstr(L"x").get(), nullptr));
    }
    Install();
    Reopen();
    const auto local = ServiceOf<ISetupTextSub>(*engine, local_text_service);
    const auto global = ServiceOf<ISetupTextSub>(*engine, global_text_service);
    EXPECT_EQ(S_FALSE, local->Load(bstr(L"otherLocal").get(), ServiceOf<ISetupLog>(*engine).get()));
    ASSERT_EQ(S_OK, local->Load(bstr(L"dirsLocal").get(), ServiceOf<ISetupLog>(*engine).get()));
    ASSERT_EQ(S_OK, global->Load(bstr(L"dirsGlobal").get(), ServiceOf<ISetupLog>(*engine).get()));
    EXPECT_EQ(L"l\u00f6cal \u65e5", Value(*local.get(), L"MINE"));
    EXPECT_EQ(L"global", Value(*global.get(), L"OURS"));
    long state = 0;
    ServiceOf<ISetupData>(*engine).query<ISetupDataEx>()->GetTargetState(&state);
    EXPECT_EQ(3, state);
}

TEST(Strings, FallBackToTheDefaultLanguageAndFillDisplayTexts)
{
    SetupFolder folder;
    folder.Product(R"("languages": [1033, 1031],
        "strings": {"1033": {"NAME": "Tools", "ONLY": "english"}, "1031": {"NAME": "Werkzeuge von <PRODUCT_NAME>"}},
        "features": [{"name": "T", "displayName": "<NAME>", "description": "<ONLY> <NOWHERE>"}])");
    Options options = folder.Given();
    options.language = 1031;
    const auto engine = Engine::Open(std::move(options));
    const auto strings = ServiceOf<ISetupStrings>(*engine);
    bstr text;
    EXPECT_EQ(S_OK, strings->GetString(bstr(L"only").get(), text.put()));
    EXPECT_EQ(L"english", text.view());
    EXPECT_EQ(S_FALSE, strings->GetString(bstr(L"NOWHERE").get(), text.put()));
    Feature(*engine, {L"T"})->GetDisplayName(text.put());
    EXPECT_EQ(L"Werkzeuge von Probe", text.view());
    Feature(*engine, {L"T"})->GetDescription(text.put());
    EXPECT_EQ(L"english <NOWHERE>", text.view());
}

TEST(PathHelpers, KnowWhatLeavesAFolder)
{
    for (const wchar_t* path :
         {L"a", L"a/b\\c.txt", L"\u65e5\\\u00e4", L"com10", L"COM0", L"nul1", L"console", L"a.con", L".a b"})
        EXPECT_TRUE(PathFault(path).empty()) << ToUtf8(path);
    for (const wchar_t* path :
         {L"..",    L"a/../b", L"a\\..",        L"/a",     L"\\\\s\\a", L"C:a",         L"a:b",
          L"a//b",  L"a/",     L"a. ",          L"a.\\b",  L"*",        L"a\tb",        L"",
          L"a \\b", L"con",    L"a/NUL.tar.gz", L"Aux .c", L"com1",     L"LPT\u00b3.x", L"conin$"})
        EXPECT_FALSE(PathFault(path).empty()) << ToUtf8(path);
    EXPECT_EQ(L"", PathFault(L"a/*.t?t", true));
    EXPECT_NE(L"", PathFault(L"*/a", true));
    EXPECT_TRUE(LiesIn(L"C:\\a\\b", L"c:\\A"));
    EXPECT_FALSE(LiesIn(L"C:\\ab", L"C:\\a"));
    EXPECT_EQ(L"\\\\server\\share", DriveOf(L"\\\\server\\share\\x"));
    EXPECT_EQ(0, CompareVersions(L"1.2", L"1.2.0.0"));
    EXPECT_GT(CompareVersions(L"1.10", L"1.9.9"), 0);
    const std::pair<const wchar_t*, const wchar_t*> matches[] = {
        {L"a.txt", L"*.TXT"}, {L"name", L"*.*"}, {L"abc", L"a?c"}, {L"aXbXc", L"a*b*c"}};
    for (const auto& [name, pattern] : matches)
        EXPECT_TRUE(MatchesPattern(name, pattern)) << ToUtf8(pattern);
    for (const auto& [wide, utf8] : {std::pair(L"", ""), {L"a", "a"}, {L"\u00fc\u65e5", "\xC3\xBC\xE6\x97\xA5"}}) {
        EXPECT_EQ(utf8, ToUtf8(wide));
        EXPECT_EQ(wide, ToWide(utf8));
    }
    EXPECT_FALSE(MatchesPattern(L"abcd", L"a?c") || MatchesPattern(L"", L"?"));
}

TEST(SystemTexts, TellCodesWithoutATextAsPeopleLookThemUp)
{
    EXPECT_EQ(L"error 0x8004F084", SystemText(0x8004F084));
    EXPECT_EQ(L"error 64999", SystemText(64999));
}
