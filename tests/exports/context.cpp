// How a context is filled, what a failing engine leaves of it, and how it ends.
#include "../support/bare_context.h"
#include "../support/session.h"

namespace {

std::wstring Variable(const engine::Engine& engine, const GUID& store, const wchar_t* name)
{
    bstr value;
    engine::test::ServiceOf<ISetupTextSub>(engine, store)->GetValue(bstr(name).get(), value.put());
    return std::wstring(value.view());
}

TEST(Context, AsksTheEngineInItsOrder)
{
    Session session(R"(, "variables": {"VHRES": "none.dll"})");
    session.Create();
    std::wistringstream order(LR"(ISetupHost.GetObjects;IServiceProvider.QueryService(local ISetupTextSub);
IServiceProvider.QueryService(global ISetupTextSub);IServiceProvider.QueryService(ISetupStrings;
IServiceProvider.QueryService(ISetupInfo;ISetupInfo.GetFact(2);ISetupInfo.GetFact(18);
IServiceProvider.QueryService(ISetupData;ISetupDataEx.GetFlags;ISetupData.GetProductGuid(0);ISetupDataEx.GetInstallGuid;
ISetupFeatureHost.GetFeatures;ISetupData.GetRoot;ISetupDataEx.GetEnabledServices;
ISetupTextSub.SetValue("PACKAGE_LOCATION";ISetupTextSubEx.Protect("PACKAGE_LOCATION", 1);
IServiceProvider.QueryService(ISetupRegistry;ISetupSiteAware.SetSite;IServiceProvider.QueryService(ISetupUser;
ISetupUser.GetWindow;IServiceProvider.QueryService(ISetupLog;IServiceProvider.QueryService(ISetupReboot;
IServiceProvider.QueryService(ISetupDirs;ISetupDirs.GetSupportDir;ISetupTextSub.GetValue("VHRES");
ISetupTextSub.GetValue("VHUSER");IServiceProvider.QueryService(ISetupResources;ISetupResources.Load(;
ISetupTextSub.GetValue("ENGINEDIR");ISetupInfo.GetFact(21);ISetupInfo.GetFact(43);)");
    const auto& lines = session.calls().Lines();
    auto at = lines.begin();
    for (std::wstring wanted; std::getline(order >> std::ws, wanted, L';');) {
        at = std::find_if(at, lines.end(), [&](const std::wstring& line) { return line.starts_with(wanted); });
        ASSERT_NE(at, lines.end()) << wanted << " is missing or out of order";
    }
    EXPECT_EQ(session.CallsOf(L"ISetupInfo.GetFact(35)"), 0) << "without a skin its place is of no interest";
    Session skinned(R"(, "skin": "blue.skin")");
    skinned.Create();
    EXPECT_EQ(skinned.CallsOf(L"ISetupInfo.GetFact(35)"), 1);
}

TEST(Context, StaysUsableWhateverEngineCallFails)
{
    Session session;
    session.calls().Reset();
    session.Create();
    const long calls = session.calls().Calls();
    ASSERT_GT(calls, 40);
    for (long n = 1; n <= calls; ++n) {
        session.calls().Reset();
        session.calls().FailCall(n, E_FAIL);
        session.Create();
        ASSERT_NE(static_cast<ObjectContext*>(session), nullptr) << n;
        session.calls().Reset();
        // Each answers by code, not by crash.
        wchar_t text[300];
        int32_t number = 0, size = 0;
        _ComponentGetData(session, L"DATA", L"Tools", 8, &number, text, 300);
        _ComponentSelectItem(session, L"DATA", L"Tools", 1);
        _ComponentGetTotalCost(session, L"DATA", L"C:\\", &number);
        _ComponentCompareSizeRequired(session, L"DATA", text, &size);
        const ListHandle list = _ListCreate(session, ListTypeString);
        _ComponentListItems(session, L"VHSUPPORTFILES", L"", list);
        EXPECT_EACH(0, _ListDestroy(session, const_cast<ListHandle*>(&list)), __GetProductGuid(session, text),
                    _GetSupportDir(session, text, 300));
        variant object;
        __GetInfo(session, object.put());
        __GetTextSub(session, 0, object.put());
        GetHandle(session, HandleMainWindow);
    }
}

TEST(Context, ReadsItsFactsAndWritesItsVariables)
{
    Session session(
        R"(, "maintenanceOption": 8, "enabledServices": 5, "installGuid": "{11111111-2222-3333-4444-555555555555}")");
    wchar_t text[64];
    int32_t number = 0;
    EXPECT_GIVES_TEXT(__GetProductGuid(session, text), 0, text, L"{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D01}");
    EXPECT_GIVES_TEXT(__GetInstallGuid(session, text), 0, text, L"{11111111-2222-3333-4444-555555555555}");
    bstr own;
    engine::test::ServiceOf<ISetupDirs>(*session.engine)->GetContextGuid(own.put());
    EXPECT_GIVES_TEXT(__GetContextGUID(session, text), 0, text, own.view());
    using Getter = int32_t(__stdcall*)(ObjectContext*, int32_t*);
    for (const auto& [get, value] :
         {std::pair<Getter, int32_t>(__GetMaintOption, 8), {__GetEnabledIServices, 5}, {__GetMaintenanceMode, 0}})
        EXPECT_GIVES(get(session, &number), 0, number, value);
    EXPECT_EQ(__PutEnabledIServices(session, 9), 0);
    EXPECT_GIVES(__GetEnabledIServices(session, &number), 0, number, 9);
    EXPECT_EQ(_SetGlobalFlags(session, 0x55), 0);
    EXPECT_EQ(_SetGlobalFlags(session, 1), 0x55);
    EXPECT_EQ(_GetGlobalFlags(session), 1);
    EXPECT_EQ(_GetSupportDir(session, text, 1), static_cast<int32_t>([&] {
                  wchar_t whole[MAX_PATH];
                  return _GetSupportDir(session, whole, MAX_PATH) == 0 ? wcslen(whole) + 1 : 0;
              }()));
}

TEST(Context, TakesSourceAndPackageFromTheFacts)
{
    Table<bool, bool, bool, const wchar_t*, const wchar_t*> cases = {
        {true, true, false, L"C:\\from\\", L"C:\\package.zip"},
        {true, false, false, L"C:\\from\\", L""},
        {false, true, true, L"before", L"before"}};
    for (const auto& [set_source, has_package, keep_package, source, package] : cases) {
        const std::map<long, bool> truths = {{16, set_source}, {29, has_package}, {22, keep_package}};
        const Session session([&](engine::Options& options) {
            options.variables = {{L"SRCDIR", L"before"}, {L"PACKAGE_LOCATION", L"before"}};
            options.facts = {{2, variant(L"C:\\from\\setup.exe")}, {44, variant(L"C:\\package.zip")}};
            for (const auto& [fact, truth] : truths)
                options.facts[fact] = variant(truth);
        });
        EXPECT_EQ(Variable(*session.engine, global_text_service, L"SRCDIR"), source);
        EXPECT_EQ(Variable(*session.engine, global_text_service, L"PACKAGE_LOCATION"), package);
        EXPECT_TRUE(keep_package || Variable(*session.engine, local_text_service, L"PACKAGE_LOCATION") == package);
    }
}

TEST(SuiteContext, HasDirectoriesAndServicesButNoMedia)
{
    Session session;
    {
        ObjectContext* suite = __CreateObjectContextSuiteExt(session.engine->Services().get(), L"C:\\suite");
        wchar_t text[64];
        EXPECT_GIVES_TEXT(_GetSupportDir(suite, text, 64), 0, text, L"C:\\suite");
        EXPECT_EQ(Variable(*session.engine, global_text_service, L"ENGINECOMMONDIR"), L"C:\\suite");
        EXPECT_EQ(Variable(*session.engine, global_text_service, L"SHAREDSUPPORTDIR"), L"C:\\suite");
        EXPECT_EQ(_ComponentGetData(suite, L"DATA", L"Core", 8, nullptr, text, 64), -132);
        EXPECT_EQ(_InitInstall(suite), E_POINTER);
        variant local, global;
        EXPECT_EQ(__GetLog(suite, local.put()), E_FAIL);
        EXPECT_GIVES(__GetInfo(suite, local.put()), 0, local.type(), VT_DISPATCH);
        EXPECT_EACH(0, __GetTextSub(suite, 0, local.put()), __GetTextSub(suite, 5, global.put()));
        EXPECT_EQ(local.get().pdispVal, global.get().pdispVal);
        const ListHandle list = _ListCreate(suite, ListTypeNumber);
        EXPECT_EQ(_ListCount(suite, list), 0);
        __ReleaseObjectContextSuiteExt(suite);
    }
    EXPECT_EQ(__CreateObjectContextSuiteExt(nullptr, L"x"), nullptr);
    __ReleaseObjectContextSuiteExt(nullptr);
    ObjectContext* empty = __CreateObjectContextSuiteExt(session.engine->Services().get(), nullptr);
    wchar_t text[4] = L"x";
    EXPECT_GIVES_TEXT(_GetSupportDir(empty, text, 4), 0, text, L"");
    __ReleaseObjectContextSuiteExt(empty);
}

TEST(Context, GivesObjectsOnlyWhenItHasThem)
{
    Session session;
    const BareContext bare;
    using Getter = int32_t(__stdcall*)(ObjectContext*, VARIANT*);
    for (const Getter get : {__GetInfo, __GetLog, __GetReboot, __GetUser, __GetLogDB, __GetProgress, __GetObjects,
                             __GetFileRegistrar, __GetVHMSIStringTableObj}) {
        variant object;
        EXPECT_EQ(get(session, object.put()), 0);
        EXPECT_EQ(object.type(), VT_DISPATCH);
        EXPECT_NE(object.get().pdispVal, nullptr);
        variant none;
        EXPECT_LT(get(bare, none.put()), 0);
        EXPECT_EQ(none.type(), VT_EMPTY);
    }
    for (const int32_t selector : {0, 1}) {
        variant none(L"old");
        EXPECT_EQ(__GetTextSub(bare, selector, &none.get()), E_FAIL);
        EXPECT_EQ(none.type(), VT_EMPTY);
    }
    variant component;
    EXPECT_EQ(__GetLogEx(session, component.put()), E_FAIL);
}

TEST(ComponentLog, ComesAndGoesOverTheMainLog)
{
    const Apartment apartment;
    Session session;
    const auto log_of = [&](auto get) {
        variant object;
        return get(session, object.put()) == 0 ? object.get().pdispVal : nullptr;
    };
    IDispatch* const main = log_of(__GetLog);
    ASSERT_NE(main, nullptr);

    IStream* stream = nullptr;
    // That of another engine.
    const Session other;
    const auto own = engine::test::ServiceOf<ISetupLog>(*other.engine);
    ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(ISetupLog::iid, own.get(), &stream), S_OK);
    __SetComponentLog(session, &stream);
    EXPECT_EQ(stream, nullptr);
    IDispatch* const component = log_of(__GetLogEx);
    EXPECT_EQ(component, own.query<IDispatch>().get());
    EXPECT_EQ(log_of(__GetLog), component) << "it is in force";
    __RestoreMainLogEx(session, 0);
    EXPECT_EQ(log_of(__GetLog), main);
    EXPECT_EQ(log_of(__GetLogEx), component) << "flag 0 leaves the component log";
    __RestoreMainLogEx(session, 1);
    EXPECT_EQ(log_of(__GetLog), nullptr) << "nothing was kept a second time";
    EXPECT_EQ(log_of(__GetLogEx), nullptr);

    IStream* nothing = nullptr;
    __SetComponentLog(session, &nothing);
    EXPECT_EQ(log_of(__GetLogEx), nullptr);
    __RestoreMainLog(nullptr);
    __RestoreMainLogEx(nullptr, 1);
}

TEST(Texts, ComeFromTheStringTableAndTheVariables)
{
    const Session session(R"(, "strings": {"1033": {"HELLO": "Good day"}}, "variables": {"WHO": "you"})");
    wchar_t text[16] = L"";
    EXPECT_GIVES_TEXT(__LoadString(session, L"HELLO", text, 9), 0, text, L"Good day");
    EXPECT_EQ(__LoadString(session, L"HELLO", text, 8), 9);
    EXPECT_EACH(-1, __LoadString(session, L"ABSENT", text, 16), __LoadString(session, nullptr, text, 16));
    session.calls().FailCall(L"ISetupStrings.GetString", E_ABORT);
    EXPECT_EQ(__LoadString(session, L"HELLO", text, 16), E_ABORT);
    EXPECT_EQ(__LoadString(BareContext(), L"HELLO", text, 16), -1);

    bstr pattern(L"for <WHO> and <NOBODY>");
    BSTR raw = pattern.detach();
    EXPECT_EQ(TextSubSubstitute(session, &raw), 0);
    pattern.attach(raw);
    EXPECT_EQ(pattern.view(), L"for you and <NOBODY>");
    EXPECT_EQ(TextSubSubstitute(nullptr, &raw), -1);
}

TEST(Phases, ReachTheHostAndItsObjects)
{
    Session session;
    Table<int32_t(__stdcall*)(ObjectContext*), const wchar_t*> phases = {
        {_CCPSearch, L"ISetupHost.CCPSearch"},     {_Rebooted, L"ISetupRebootPhase.Rebooted"},
        {_AppSearch, L"ISetupHost.AppSearch"},     {_Preprogram, L"ISetupProgramPhases.Preprogram"},
        {_InitInstall, L"ISetupHost.InitInstall"}, {_Postprogram, L"ISetupProgramPhases.Postprogram"},
        {_ExitInstall, L"ISetupHost.ExitInstall"}, {_OnUninstPriv, L"ISetupUninstallPhases.OnUninstall"}};
    for (const auto& [call, line] : phases) {
        EXPECT_GE(call(session), 0);
        EXPECT_EQ(session.CallsOf(line), 1);
        session.calls().FailCall(line, E_ABORT);
        EXPECT_EQ(call(session), E_ABORT);
        session.calls().FailCall(line, S_OK);
    }
    EXPECT_EQ(_ShowWizardPages(session, 12), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupWizard.ShowPages(12"), 1);
    session.calls().FailCall(L"ISetupWizard.ShowPages", E_ABORT);
    EXPECT_EQ(_ShowWizardPages(session, 12), E_ABORT);
    EXPECT_EQ(_ShowObjWizardPages(nullptr, 12), 12);
    for (const HRESULT without : {S_OK, E_NOINTERFACE}) {
        session.calls().Reset();
        session.calls().FailCall(L"IUnknown.QueryInterface(ISetupWizard)", without);
        EXPECT_EQ(_ShowObjWizardPages(session, 12), 12);
        EXPECT_EQ(session.CallsOf(L"ISetupObjects.Item"), 2) << "one without pages is passed over";
        EXPECT_EQ(session.CallsOf(L"ISetupWizard.ShowPages"), without ? 0 : 2);
    }
    session.calls().Reset();
    EXPECT_EQ(_DoInstall(nullptr), E_NOTIMPL);
    int32_t count = -1;
    EXPECT_GIVES(_GetObjectCount(session, &count), 0, count, 2);
    // The host itself, then its objects; each call makes its view of the object anew.
    const std::pair<const wchar_t*, int32_t> objects[] = {{L"", 0}, {L"Core", 1}, {L"tools", 2}};
    for (const auto& [name, index] : objects) {
        variant named(L"old"), numbered(L"old");
        EXPECT_EQ(_GetObject(session, name, &named.get()), 0) << name;
        EXPECT_EQ(_GetObjectByIndex(session, index, &numbered.get()), 0) << index;
        EXPECT_EQ(named.type(), VT_DISPATCH) << name;
        EXPECT_EQ(numbered.type(), VT_DISPATCH) << index;
        const BareContext bare;
        EXPECT_EQ(_GetObject(bare, name, &named.get()), -1) << name;
        EXPECT_EQ(_GetObjectByIndex(bare, index, &numbered.get()), -1) << index;
        EXPECT_TRUE(named.type() == VT_EMPTY && numbered.type() == VT_EMPTY) << name;
        EXPECT_EQ(_GetObjectCount(bare, &count), -1);
    }
    variant object;
    for (const auto& [code, result] : {std::pair<HRESULT, int32_t>{HRESULT{static_cast<int32_t>(0x8004F069)}, -105},
                                       {E_ABORT, E_ABORT},
                                       {S_FALSE, E_FAIL}}) {
        session.calls().FailCall(L"ISetupObjects.Item", code);
        EXPECT_EQ(_GetObject(session, L"none", object.put()), result);
        EXPECT_EQ(_GetObjectByIndex(session, 7, object.put()), result);
        EXPECT_EQ(_ShowObjWizardPages(session, 3), code == S_FALSE ? E_POINTER : code);
    }
    VARIANT unclear{};
    unclear.vt = 0x0FFF;
    EXPECT_EACH(DISP_E_BADVARTYPE, _GetObject(session, L"none", &unclear), _GetObjectByIndex(session, 7, &unclear));
    EXPECT_EQ(_RebootPutString(session, L"a", nullptr, L"c"), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupReboot.PutString(\"a\", null, \"c\")"), 1);
}

TEST(CommandLine, ReadsEachFactIntoItsPlace)
{
    constexpr long flag_facts[] = {9, 10, 36, 11, 5}, text_facts[] = {3, 4, 6, 7, 8};
    for (std::size_t set = 0; set < 5; ++set) {
        Session session([&](engine::Options& options) {
            options.commandLine = L"one two";
            for (std::size_t i = 0; i < 5; ++i) {
                options.facts[flag_facts[i]] = variant(i == set);
                options.facts[text_facts[i]] = variant(std::to_wstring(text_facts[i]).c_str());
            }
        });
        int32_t flags[5] = {9, 9, 9, 9, 9};
        wchar_t texts[5][4] = {}, line[16];
        const auto ask = [&](int32_t size) {
            return __GetCmdLineOptions(session, &flags[0], &flags[1], &flags[2], &flags[3], &flags[4], texts[0],
                                       texts[1], texts[2], texts[3], texts[4], line, size);
        };
        EXPECT_EQ(ask(16), 0);
        EXPECT_STREQ(line, L"one two");
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(flags[i], i == set) << i;
            EXPECT_EQ(texts[i], std::to_wstring(text_facts[i]));
        }
        EXPECT_EQ(ask(7), 8);
        for (const long failing : {flag_facts[set], text_facts[set], 12l}) {
            const std::wstring call = L"ISetupInfo.GetFact(" + std::to_wstring(failing) + L")";
            session.calls().FailCall(call, E_FAIL);
            EXPECT_EQ(ask(16), -1) << failing;
            session.calls().FailCall(call, S_OK);
        }
        // Silent modes are kept also when nothing is asked.
        const long before = session.CallsOf(L"ISetupInfo.GetFact(");
        EXPECT_EQ(__GetCmdLineOptions(session, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                      nullptr, nullptr, nullptr, 0),
                  0);
        EXPECT_EQ(session.CallsOf(L"ISetupInfo.GetFact(") - before, 2) << "facts 10 and 36 alone";
    }
}

TEST(DataModes, AreReadAndSetInTheDataSet)
{
    Session session;
    using Getter = int32_t(__stdcall*)(ObjectContext*, int32_t*);
    const auto expect = [&](std::initializer_list<std::pair<Getter, int32_t>> modes, int32_t result) {
        for (const auto& [get, mode] : modes) {
            int32_t on = -1;
            EXPECT_GIVES(get(session, &on), result, on, mode);
        }
    };
    expect({{__GetUpdateMode, 0}, {__GetRemoveAllMode, 0}, {__GetReinstallMode, 0}}, 0);
    EXPECT_EQ(__SetUpdateMode(session, 3), 0);
    const auto data = engine::test::ServiceOf<ISetupData>(*session.engine);
    data.query<ISetupDataEx>()->SetRemoveAllMode(VARIANT_TRUE);
    data.query<ISetupDataModes>()->SetReinstallMode(VARIANT_TRUE);
    expect({{__GetUpdateMode, 1}, {__GetRemoveAllMode, 1}, {__GetReinstallMode, 1}}, 0);
    session.calls().FailCall(L"IServiceProvider.QueryService(ISetupData)", E_FAIL);
    expect({{__GetUpdateMode, -1}, {__GetRemoveAllMode, -1}, {__GetReinstallMode, -1}}, -1);
    EXPECT_EQ(__SetUpdateMode(session, 1), -1);
}

} // namespace
