// The large actions: what reaches the engine, in which order, and what is left behind.
#include "../support/session.h"

namespace {

constexpr const wchar_t* data = L"DATA";

// The recorded calls that matter here, in order, without arguments.
std::wstring Order(const Session& session, std::initializer_list<const wchar_t*> wanted)
{
    std::wstring order;
    for (const std::wstring& line : session.calls().Lines())
        for (const wchar_t* name : wanted)
            if (line.starts_with(name))
                order += std::wstring(name) + L" ";
    return order;
}

TEST(MoveData, GoesThroughTheEngineInItsOrder)
{
    const Session session;
    EXPECT_EQ(_ComponentMoveData(session, data, 3), 0);
    EXPECT_EQ(Order(session, {L"ISetupHost.BeginData", L"ISetupFeatureHost.Reinstall", L"ISetupFeatureHost.GetCosts",
                              L"ISetupProgress.BeginTransfer", L"ISetupFeatureHost.Move", L"ISetupFeatureHost.Transfer",
                              L"ISetupHost.EndData"}),
              L"ISetupHost.BeginData ISetupFeatureHost.Reinstall ISetupFeatureHost.GetCosts "
              L"ISetupProgress.BeginTransfer ISetupFeatureHost.Move ISetupHost.EndData ");
    EXPECT_TRUE(engine::test::Exists(session.folder.Target(L"a.bin")));
    EXPECT_TRUE(engine::test::Exists(session.folder.Target(L"bin\\b.bin")));
}

TEST(TransferData, AddsItsOwnStepBehindTheMove)
{
    const Session session;
    EXPECT_EQ(_ComponentTransferData(session, data), 0);
    EXPECT_EQ(Order(session, {L"ISetupFeatureHost.Reinstall", L"ISetupFeatureHost.Move", L"ISetupFeatureHost.Transfer",
                              L"ISetupHost.EndData"}),
              L"ISetupFeatureHost.Move ISetupFeatureHost.Transfer ISetupHost.EndData ");
}

TEST(MoveData, EndsAtTheFirstFailingStep)
{
    Table<const wchar_t*, bool> steps = {{L"ISetupHost.BeginData", true},
                                         {L"ISetupFeatureHost.Reinstall", false},
                                         {L"ISetupFeatureHost.GetCosts", true},
                                         {L"ISetupCosts.GetTotalLow", true},
                                         {L"ISetupCosts.GetTotalHigh", true},
                                         {L"IServiceProvider.QueryService(ISetupProgress)", true},
                                         {L"ISetupProgress.BeginTransfer", true},
                                         {L"ISetupFeatureHost.Move", true},
                                         {L"ISetupHost.EndData", true}};
    for (const auto& [failing, stops] : steps) {
        const Session session;
        session.calls().FailCall(failing, static_cast<HRESULT>(0x8004F06C));
        EXPECT_EQ(_ComponentMoveData(session, data, 1), stops ? -108 : 0);
    }
}

TEST(FixedActions, LeaveTheirModes)
{
    Table<int32_t(__stdcall*)(ObjectContext*), const wchar_t*, const wchar_t*> actions = {
        {_ComponentReinstall, L"ISetupFeatureHost.Reinstall", L"ISetupDataModes.SetReinstallMode"},
        {_ComponentPatch, L"ISetupFeatureHost.Reinstall", L"ISetupDataModes.SetReinstallMode"},
        {_ComponentRemoveAll, L"ISetupFeatureHost.SelectAll", L"ISetupDataEx.SetRemoveAllMode"}};
    for (const auto& [action, call, mode] : actions) {
        const Session session;
        EXPECT_EQ(action(session), 0) << session.engine->LogFile().size();
        EXPECT_EQ(session.CallsOf(mode), 1);
        session.calls().FailCall(call, static_cast<HRESULT>(0x8004F069));
        EXPECT_EQ(action(session), -105);
        EXPECT_EQ(session.CallsOf(mode), 2) << "also when the action failed";
        session.calls().FailCall(mode, E_ABORT);
        EXPECT_EQ(action(session), -105) << "the action's failure comes first";
        session.calls().FailCall(call, S_OK);
        EXPECT_EQ(action(session), action == _ComponentRemoveAll ? 0 : E_ABORT);
    }
    const Session session;
    EXPECT_EQ(_ComponentUpdate(session), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupDataModes.SetReinstallMode"), 1);
    EXPECT_EQ(_ComponentRemoveAllInLogOnly(session), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupFeatureModes.RemoveAllInLogOnly(-1)"), 1);
    for (const wchar_t* call : {L"ISetupData.GetRoot", L"ISetupItems.Item", L"ISetupItem.GetChildren",
                                L"ISetupItems.Count", L"ISetupItem.GetName", L"ISetupItem.Reinstall"})
        for (const HRESULT code : {E_INVALIDARG, static_cast<HRESULT>(0x8004F069)}) {
            session.calls().Reset();
            session.calls().FailCall(call, code);
            EXPECT_EQ(_ComponentUpdate(session), -105) << call << " " << code;
        }
    session.calls().FailCall(L"IServiceProvider.QueryService(ISetupData)", E_NOINTERFACE);
    EXPECT_EQ(_ComponentReinstall(session), E_FAIL);
}

TEST(FurtherDataSets, OpenUnderANameOnce)
{
    const Session session;
    session.folder.Payload(L"more.hdr", R"({"format": 1, "name": "More", "version": "1",
        "guid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D02}", "features": [
        {"name": "One", "files": [{"name": "g", "files": ["a.bin"]}]},
        {"name": "Two", "files": [{"name": "g", "files": ["b.bin"]}]}]})");
    const std::wstring header = session.folder.Setup(L"more.dat");
    EXPECT_EQ(_FeatureInitialize(session, L"MORE", L"<Data>", header.c_str()), 0) << "the extension becomes .hdr";
    const ListHandle list = _ListCreate(session, ListTypeString);
    EXPECT_EQ(_ComponentListItems(session, L"MORE", L"", list), 0);
    EXPECT_EQ(_ListCount(session, list), 2);
    EXPECT_EQ(_FeatureInitialize(session, L"MORE", L"<Data>", header.c_str()), -127);
    EXPECT_EQ(_FeatureInitialize(session, data, L"<Data>", header.c_str()), -127);
    EXPECT_LT(_FeatureInitialize(session, L"NONE", L"<Data>", session.folder.Setup(L"none").c_str()), -1);
    EXPECT_EQ(_ComponentInitialize(session, L"<Data>", session.folder.Setup(L"more").c_str()), 0);
    EXPECT_EQ(_ComponentListItems(session, L"<Data>", L"", list), 0);
    EXPECT_EQ(_ComponentTransferData(session, L"MORE"), -1);
    int32_t cost = -1;
    EXPECT_EQ(_FeatureAddCost(session, L"MORE", L"Two", L"Q:\\x", 4 << 10, 0), 0);
    const long asked = session.CallsOf(L"ISetupItem.GetCosts");
    EXPECT_GIVES(_ComponentGetTotalCost(session, L"MORE", L"Q:\\", &cost), 0, cost, 4);
    EXPECT_EQ(session.CallsOf(L"ISetupItem.GetCosts") - asked, 3) << "from the first disk on, which is never moved";
    EXPECT_EQ(_ComponentMoveData(session, L"MORE", 1), 0);
    EXPECT_EQ(engine::test::Tree(session.folder.Target()), (std::vector<std::wstring>{L"a.bin", L"b.bin"}));
    EXPECT_EQ(_ComponentSelectItem(session, L"MORE", L"", 0), 0);
    EXPECT_EQ(_ComponentIsItemSelected(session, L"MORE", L"Two"), 0);
    EXPECT_EQ(_FeatureInitialize(nullptr, L"x", L"y", L"z"), -1);

    EXPECT_EQ(_FeatureInitialize(session, L"WRONG", L"<No such root>", header.c_str()), 0);
    EXPECT_EACH(E_POINTER, _ComponentListItems(session, L"WRONG", L"", list), _ComponentMoveData(session, L"WRONG", 0));
}

TEST(Targets, SaveAndLoadBothStores)
{
    const Session session;
    const auto local = engine::test::ServiceOf<ISetupTextSub>(*session.engine, local_text_service);
    const auto global = engine::test::ServiceOf<ISetupTextSub>(*session.engine, global_text_service);
    const auto set = [](const auto& store, const wchar_t* value) {
        store->SetValue(bstr(L"KEPT").get(), bstr(value).get());
    };
    const auto get = [](const auto& store) {
        bstr value;
        store->GetValue(bstr(L"KEPT").get(), value.put());
        return std::wstring(value.view());
    };
    set(local, L"local value");
    set(global, L"global value");
    EXPECT_EQ(_ComponentSaveTarget(session, L"T"), 0);
    set(local, L"other");
    set(global, L"other");
    EXPECT_EQ(_ComponentLoadTarget(session, L"T"), 0);
    EXPECT_EQ(get(local), L"local value");
    EXPECT_EQ(get(global), L"global value");

    for (const HRESULT code : {E_FAIL, S_FALSE, S_OK}) {
        session.calls().FailCall(L"ISetupLogDB.GetStore", code);
        EXPECT_EQ(_ComponentSaveTarget(session, L"U"), 0);
        EXPECT_EQ(session.CallsOf(L"ISetupTextSub.Save(\"UGlobal\""), code == S_OK) << "only into a store";
    }
    session.calls().FailCall(L"ISetupDataEx.GetTargetState", E_ACCESSDENIED);
    EXPECT_EQ(_ComponentSaveTarget(session, L"V"), E_ACCESSDENIED);
    session.calls().FailCall(L"ISetupDataEx.GetTargetState", S_OK);
    session.calls().FailCall(L"ISetupTextSub.Save(\"VGlobal\"", E_ABORT);
    EXPECT_EQ(_ComponentSaveTarget(session, L"V"), E_ABORT);
    EXPECT_EQ(session.CallsOf(L"ISetupTextSub.Save(\"VLocal\""), 0);
    session.calls().FailCall(L"IServiceProvider.QueryService(ISetupData)", E_NOINTERFACE);
    EXPECT_EQ(_ComponentSaveTarget(session, L"W"), E_NOINTERFACE);
    EXPECT_EQ(_ComponentLoadTarget(nullptr, L"T"), -1);
}

TEST(FileCopy, TranslatesItsFlags)
{
    Table<int32_t, long> cases = {{0x202, 0x300}, {0x22, 0x30}, {0x222, 0x330}, {0x2000, 0x6000}, {0x200, 0x200},
                                  {0x20, 0x20},   {0x2, 0},     {0, 0},         {0x2002, 0x6000}, {0x4001, 0x4001}};
    const Session session;
    session.calls().FailCall(L"ISetupFileOps.CreateCopyJob", E_ABORT);
    for (const auto& [given, passed] : cases) {
        EXPECT_EQ(_FileCopy(session, L"s", L"t", given), E_ABORT);
        EXPECT_EQ(session.calls().Lines().back(),
                  L"ISetupFileOps.CreateCopyJob(\"s\", \"t\", " + std::to_wstring(passed) + L")");
    }
    EXPECT_EQ(_FileCopy(session, nullptr, nullptr, 0), E_ABORT);
    EXPECT_EQ(session.calls().Lines().back(), L"ISetupFileOps.CreateCopyJob(null, null, 0)");
}

TEST(FileCopy, CopiesThroughTheEngineAndTellsTheFirstFailure)
{
    const Session session;
    const std::wstring source = session.folder.Setup(L"*.bin"), target = session.folder.Target(L"copies");
    EXPECT_EACH(0, _CreateDir(session, target.c_str()), _FileCopy(session, source.c_str(), target.c_str(), 0));
    EXPECT_EQ(engine::test::Tree(target).size(), 4u);
    for (const wchar_t* step : {L"IServiceProvider.QueryService(ISetupFileOps)", L"ISetupFileOps.CreateCopyJob",
                                L"ISetupCopyJob.GetTotals", L"ISetupCopyTotals.GetLow", L"ISetupCopyTotals.GetHigh",
                                L"ISetupProgress.BeginTransfer", L"ISetupCopyJob.Run"}) {
        session.calls().FailCall(step, E_ABORT);
        EXPECT_EQ(_FileCopy(session, source.c_str(), target.c_str(), 0), E_ABORT);
        session.calls().FailCall(step, S_OK);
    }
    for (const wchar_t* gives_nothing : {L"ISetupFileOps.CreateCopyJob", L"ISetupCopyJob.GetTotals"}) {
        session.calls().FailCall(gives_nothing, S_FALSE);
        EXPECT_EQ(_FileCopy(session, source.c_str(), target.c_str(), 0), E_POINTER);
        session.calls().FailCall(gives_nothing, S_OK);
    }
    session.calls().FailCall(L"ISetupFileOps.MakeDirectory", E_ABORT);
    EXPECT_EQ(_CreateDir(session, L"C:\\x"), E_ABORT);

    ObjectContext* suite = __CreateObjectContextSuiteExt(session.engine->Services().get(), L"");
    const long begun = session.CallsOf(L"ISetupProgress.BeginTransfer");
    EXPECT_EQ(_FileCopy(suite, source.c_str(), session.folder.Target(L"suite").c_str(), 0), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupProgress.BeginTransfer"), begun) << "no status display there";
    __ReleaseObjectContextSuiteExt(suite);
}

} // namespace
