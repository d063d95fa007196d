
#include "../../engine/services/shell_link.h"
#include "../support/replaced.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

std::wstring Text(const auto& object, auto getter)
{
    bstr text;
    EXPECT_EQ(S_OK, (object.get()->*getter)(text.put()));
    return std::wstring(text.view());
}

using Maintenance = OnTree;

} // namespace

TEST(DataSets, SpellIdentifiersInOneWayAndFillTheirTexts)
{
    SetupFolder folder;
    folder.Product(R"("features": [], "installGuid": "{6f3c1c39-0c50-4c92-8b0d-5a1a4f3e1dff}",
        "media": {"texts": ["first", "<PRODUCT_NAME>"]})");
    const auto engine = folder.Open();
    const auto data = ServiceOf<ISetupData>(*engine);
    EXPECT_EQ(L"{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1DFF}",
              Text(data.query<ISetupDataEx>(), &ISetupDataEx::GetInstallGuid));
    EXPECT_EQ(folder.Setup(L"product.json"), Text(data, &ISetupData::GetSourcePath));
    EXPECT_EQ(L"Probe", Text(data.query<ISetupMediaInfo>(), &ISetupMediaInfo::GetText2));
}

TEST(ItemTexts, AreReadEachFromItsPlace)
{
    SetupFolder folder;
    folder.Product(R"("features": [{"name": "F", "description": "d", "longText": "l", "miscText": "m",
        "texts": {"16": "t16", "19": "t19", "20": "t20", "21": "t21", "22": "t22", "23": "t23"}}])");
    const auto engine = folder.Open();
    const auto item = Feature(*engine, {L"F"});
    const auto texts = item.query<ISetupItemTexts>();
    using Item = ISetupItem<ISetupFeatures>;
    const std::pair<HRESULT (STDMETHODCALLTYPE Item::*)(BSTR*), const wchar_t*> fields[] = {
        {&Item::GetDisplayName, L""}, {&Item::GetDescription, L"d"}, {&Item::GetLongText, L"l"},
        {&Item::GetMiscText, L"m"},   {&Item::GetText16, L"t16"},    {&Item::GetText17, L""},
        {&Item::GetText18, L""},      {&Item::GetText19, L"t19"}};
    for (const auto& [getter, expected] : fields)
        EXPECT_EQ(expected, Text(item, getter));
    EXPECT_EQ(L"t20", Text(texts, &ISetupItemTexts::GetText20));
    EXPECT_EQ(L"t21", Text(texts, &ISetupItemTexts::GetText21));
    EXPECT_EQ(L"t22", Text(texts, &ISetupItemTexts::GetText22));
    EXPECT_EQ(L"t23", Text(texts, &ISetupItemTexts::GetText23));
    // As a script reads them.
    const std::pair<const wchar_t*, const wchar_t*> properties[] = {
        {L"Name", L"F"},         {L"description", L"d"}, {L"LongText", L"l"},       {L"MiscText", L"m"},
        {L"DisplayOrder", L"1"}, {L"Selected", L"2"},    {L"PartlySelected", L"0"}, {L"Visible", L"-1"}};
    for (const auto& [name, expected] : properties)
        EXPECT_EQ(expected, PropertyText(item.query<IDispatch>().get(), name)) << ToUtf8(name);
    short order = 0;
    item->GetDisplayOrder(&order);
    EXPECT_EQ(1, order);
}

TEST_F(Maintenance, KeepsTheTargetAndMovesToNoOther)
{
    Install();
    Options options = folder.Given();
    options.targetDir.clear();
    Reopen(options);
    EXPECT_EQ(folder.Target(), engine->TargetDir());
    engine.reset();
    const auto refusal = [&](const auto& step) {
        try {
            step();
        } catch (const engine_error& error) {
            return error.message().reason;
        }
        return std::wstring();
    };
    const std::wstring reason =
        L"Probe is installed in " + folder.Target() + L"; remove it there before you install it elsewhere";
    Options given = options;
    given.targetDir = folder.Target(L"elsewhere");
    EXPECT_EQ(reason, refusal([&] { Reopen(given); }));
    given = options;
    given.variables = {{L"TargetDir", L"C:\\elsewhere"}};
    EXPECT_EQ(reason, refusal([&] { Reopen(given); }));
    // A script that changes its mind about it.
    Reopen(options);
    ServiceOf<ISetupTextSub>(*engine, global_text_service)
        ->SetValue(bstr(L"TARGETDIR").get(), bstr(L"C:\\elsewhere").get());
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), MoveAll(*engine));
    EXPECT_NE(std::wstring::npos, LastReason(*engine).find(reason));
}

TEST_F(Maintenance, CanForgetTheLogAndSelectWhatIsNew)
{
    Feature(*engine, {L"Tools"})->SetSelected(0);
    Install();
    Reopen();
    const auto modes = engine->Host().query<ISetupFeatureModes>();
    EXPECT_EQ(0, Selected(*engine, {L"Tools", L"Extra"}));
    ASSERT_EQ(S_OK, modes->SelectNew(2));
    EXPECT_EQ(2, Selected(*engine, {L"Tools", L"Extra"}));
    ASSERT_EQ(S_OK, modes->SelectNew(0));
    EXPECT_EQ(0, Selected(*engine, {L"Tools"}));
    EXPECT_EQ(2, Selected(*engine, {L"Core"}));
    ASSERT_EQ(S_OK, modes->RemoveAllInLogOnly(-1));
    EXPECT_TRUE(engine->Installed().empty() && Exists(folder.Target(L"a.bin")));
}

TEST(ShellObjects, AreMadeForSelectedFeaturesAndGoWithTheRun)
{
    SetupFolder folder;
    folder.Product(R"("features": [{"name": "On"}, {"name": "Off", "selected": false}], "shellObjects": [
        {"name": "Start <PRODUCT_NAME>", "folder": "Menu", "target": "<TARGETDIR>\\p.exe", "arguments": "/a"},
        {"name": "Hidden", "target": "<TARGETDIR>\\h.exe", "feature": "Off"}])");
    Options options = folder.Given();
    const std::wstring programs = folder.Root() + L"\\programs";
    options.variables.emplace_back(L"PROGRAMS", programs);
    const auto engine = Engine::Open(options);
    ASSERT_EQ(S_OK, ServiceOf<ISetupData>(*engine)->CreateShellObjects(ServiceOf<ISetupLog>(*engine).get()));
    EXPECT_EQ((std::vector<std::wstring>{L"Menu", L"Menu\\Start Probe.lnk"}), Tree(programs));
    const LinkData link = ReadShellLink(programs + L"\\Menu\\Start Probe.lnk");
    EXPECT_EQ(folder.Target(L"p.exe"), link.target);
    EXPECT_EQ(L"/a", link.arguments);
    EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED)) << "the thread is not left in an apartment";
    CoUninitialize();
    EXPECT_TRUE(engine->Installed().empty()) << "a shortcut is no file of the payload";
    const auto undone = engine->Rollback();
    ASSERT_FALSE(undone.empty());
    EXPECT_EQ(L"shortcut", undone.front().kind);
    EXPECT_EQ(RemovalOutcome::removed, undone.front().outcome);
    EXPECT_FALSE(Exists(programs));
}

TEST(ShellObjects, ThatTwoProductsMakeGoWithTheLast)
{
    for (const bool newestFirst : {true, false}) {
        SetupFolder folder;
        const auto make = [&](const std::string& members) {
            folder.Product(members +
                           R"("features": [], "shellObjects": [{"name": "S", "target": "<TARGETDIR>\\p.exe"}])");
            Options options = folder.Given();
            options.variables.emplace_back(L"PROGRAMS", folder.Root() + L"\\programs");
            const auto engine = Engine::Open(options);
            EXPECT_EQ(S_OK, ServiceOf<ISetupData>(*engine)->CreateShellObjects(ServiceOf<ISetupLog>(*engine).get()));
            engine->Commit();
            return engine->LogFile();
        };
        const std::wstring first = make({});
        const std::wstring second = make(R"("installGuid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D02}", )");
        Uninstall(newestFirst ? second : first);
        EXPECT_TRUE(Exists(folder.Root() + L"\\programs\\S.lnk")) << newestFirst;
        Uninstall(newestFirst ? first : second);
        EXPECT_FALSE(Exists(folder.Root() + L"\\programs")) << newestFirst;
    }
}

TEST(ShellLinks, SpellTheirKeysInOneWay)
{
    std::wistringstream keys(LR"(None 0 Ctrl+Alt+F5 1652 Shift+A 321 9 57 F1 112 F24 135 Ctrl+PgUp 545 Ins 45 Del 46
        Home 36 End 35 PgDn 34 Left 37 Right 39 Up 38 Down 40 Space 32 Tab 9 Esc 27 Back 8 Enter 13 Alt+Z 1114)");
    WORD key = 0;
    for (std::wstring spelled; keys >> spelled >> key;) {
        EXPECT_EQ(key, HotKeyOf(spelled)) << ToUtf8(spelled);
        EXPECT_EQ(spelled, HotKeyText(key));
    }
    for (const auto& [given, same] : {std::pair(L"", L"None"), {L"none", L"None"}, {L"alt+CTRL+f5", L"Ctrl+Alt+F5"}})
        EXPECT_EQ(HotKeyOf(same), HotKeyOf(given)) << ToUtf8(given);
    for (const wchar_t* bad : {L"F25", L"Ctrl", L"Ctrl+", L"A+Ctrl", L"A+B", L"Nothing", L"+"})
        EXPECT_THROW(HotKeyOf(bad), engine_error) << ToUtf8(bad);
}

TEST(Resources, LoadFromTheSupportFolderAndSayWhatIsMissing)
{
    SetupFolder folder;
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    CopyFileW(JoinPath(system, L"version.dll").c_str(), folder.Setup(L"texts.dll").c_str(), FALSE);
    folder.Product(
        R"("features": [], "support": [{"name": "libraries", "files": [{"path": "texts.dll", "target": "sub"}]}])");
    const auto engine = folder.Open();
    const auto resources = ServiceOf<ISetupResources>(*engine);
    HMODULE module = nullptr;
    long result = 0;
    ASSERT_EQ(S_OK, resources->Load(bstr(L"<SUPPORTDIR>\\sub\\texts.dll").get(), &module))
        << ToUtf8(LastReason(*engine));
    ASSERT_EQ(S_OK, resources->Free(module, &result));
    EXPECT_TRUE(FAILED(resources->Load(bstr(L"none.dll").get(), &module)));
    EXPECT_NE(std::wstring::npos, LastReason(*engine).find(L"none.dll"));
}

// The folder "link" seems to lead elsewhere, and opens as what it leads to.
BOOL WINAPI FactsOfLink(const wchar_t* path, GET_FILEEX_INFO_LEVELS level, void* facts)
{
    const BOOL known = vh::test::OfSystem<decltype(GetFileAttributesExW)>("GetFileAttributesExW")(path, level, facts);
    if (std::wstring_view(path).ends_with(L"link"))
        static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(facts)->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return known;
}

TEST(Files, OfALinkStay)
{
    const vh::test::Patched facts("GetFileAttributesExW", &FactsOfLink);
    const SetupFolder folder;
    MakeFolders(folder.Setup(L"link"));
    RemoveTree(folder.Setup(L"link"));
    EXPECT_TRUE(Exists(folder.Setup(L"link")));
}

BOOL WINAPI NextOfNone(HANDLE, WIN32_FIND_DATAW*)
{
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

TEST(Files, OfAFolderThatCantBeReadMakeNoPayload)
{
    const SetupFolder folder;
    folder.Payload(L"sub\\a.bin", "a");
    folder.Product(
        R"("features": [{"name": "A", "files": [{"name": "g", "files": [{"path": "*", "recurse": true}]}]}])");
    const vh::test::Patched next("FindNextFileW", &NextOfNone);
    try {
        folder.Open();
        ADD_FAILURE() << "a payload without what is in it";
    } catch (const engine_error& error) {
        EXPECT_NE(std::wstring::npos, error.message().Text().find(L"setup: the folder can't be read")) << error.what();
    }
}
