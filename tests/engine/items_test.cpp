#include "../../engine/product/this_system.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

constexpr HRESULT no_such_item = static_cast<HRESULT>(0x8004F069);

uint64_t SizeOf(const com_ptr<ISetupFeature>& item, bool wholeTree)
{
    unsigned long low = 0, high = 0;
    item->GetSize(wholeTree ? VARIANT_TRUE : VARIANT_FALSE, &low, &high);
    return uint64_t{high} << 32 | low;
}

uint64_t TotalOf(const com_ptr<ISetupCosts>& costs)
{
    unsigned long low = 0, high = 0;
    EXPECT_TRUE(costs->GetTotalLow(&low) == S_OK && costs->GetTotalHigh(&high) == S_OK);
    return uint64_t{high} << 32 | low;
}

uint64_t SelectionCost(const Engine& engine)
{
    com_ptr<ISetupCosts> costs;
    engine.Host().query<ISetupFeatureHost>()->GetCosts(costs.put());
    return TotalOf(costs);
}

// One letter for each item: selected, partly, unselected.
std::wstring State(const Engine& engine)
{
    std::wstring state;
    for (auto path :
         {std::initializer_list<const wchar_t*>{L"Core"}, {L"Tools"}, {L"Tools", L"Extra"}, {L"Tools", L"Help"}}) {
        VARIANT_BOOL partly = VARIANT_FALSE;
        Feature(engine, path)->GetPartlySelected(&partly);
        state += partly ? L'p' : Selected(engine, path) ? L's' : L'-';
    }
    return state;
}

std::vector<std::wstring> TextsOf(variant& value)
{
    std::vector<std::wstring> texts;
    const safe_array array(value);
    for (long i = array.first(); i <= array.last(); ++i)
        texts.emplace_back(array.at(i).text());
    return texts;
}

class Ear final : public com_object<ISetupBasicFeatureStateEvents> {
public:
    explicit Ear(std::wstring& heard) : m_heard(heard) {}
    HRESULT STDMETHODCALLTYPE OnStateChanged(LONG64 item, long selected, long locked) override
    {
        m_heard += std::to_wstring(item) + L":" + std::to_wstring(selected) + L":" + std::to_wstring(locked) + L" ";
        return S_OK;
    }

private:
    std::wstring& m_heard;
};

using Costs = OnTree;
using Filters = OnTree;
using Items = OnTree;
using Selection = OnTree;

} // namespace

TEST_F(Items, AreFoundByNameAndIndexWithTheFirstDiskInFront)
{
    com_ptr<ISetupFeatures> features;
    engine->Host().query<ISetupFeatureHost>()->GetFeatures(features.put());
    long count = 0;
    features->Count(&count);
    ASSERT_EQ(3, count);
    const std::pair<variant, const wchar_t*> keys[] = {
        {variant(1L), L"Disk<1>"}, {variant(2L), L"Core"}, {variant(L"TOOLS"), L"Tools"}};
    for (const auto& [key, expected] : keys) {
        com_ptr<ISetupFeature> item;
        bstr name;
        ASSERT_EQ(S_OK, features->Item(key.get(), item.put()));
        item->GetName(name.put());
        EXPECT_EQ(expected, name.view());
    }
    com_ptr<ISetupFeature> item;
    for (const variant& key : {variant(0L), variant(4L), variant(L"Nobody"), variant()})
        EXPECT_EQ(no_such_item, features->Item(key.get(), item.put()));
    ISetupFeature* never = reinterpret_cast<ISetupFeature*>(1);
    EXPECT_EQ(no_such_item, features->Item(variant(L"Nobody").get(), &never));
    EXPECT_EQ(nullptr, never) << "a caller may release what it gets";
}

TEST_F(Items, ShowTheSameStateAsFeaturesAndAsComponents)
{
    MakeTree(folder, R"(, "support": [{"name": "License", "files": ["a.bin"]}])");
    Reopen();
    com_ptr<ISetupComponents> root, children;
    ASSERT_EQ(S_OK, ServiceOf<ISetupData>(*engine)->GetRoot(root.put()));
    const auto child = [](const com_ptr<ISetupComponents>& items, const wchar_t* name) {
        com_ptr<ISetupComponent> item;
        items->Item(variant(name).get(), item.put());
        return item;
    };
    child(root, L"<Data>")->GetChildren(children.put());
    Feature(*engine, {L"Tools"})->SetSelected(0);
    short selected = -1;
    child(children, L"Tools")->GetSelected(&selected);
    EXPECT_EQ(0, selected);
    child(root, L"<Support>")->GetChildren(children.put());
    EXPECT_TRUE(child(children, L"License"));
    bstr support;
    ServiceOf<ISetupDirs>(*engine)->GetSupportDir(support.put());
    const std::wstring file = JoinPath(support.view(), L"a.bin");
    EXPECT_EQ(10u, FactsOf(file).size);
    root.reset();
    children.reset();
    engine.reset();
    EXPECT_FALSE(Exists(FolderOf(file))) << "it goes with the engine";
}

struct SelectionCase {
    std::initializer_list<const wchar_t*> path;
    short value;
    HRESULT code;
    const wchar_t* state;
};

TEST_F(Selection, FollowsParentsAndChildrenAndKeepsRequiredItems)
{
    ASSERT_EQ(L"ssss", State(*engine));
    const SelectionCase steps[] = {{{L"Core"}, 0, S_FALSE, L"ssss"},
                                   {{L"Tools", L"Extra"}, 0, S_OK, L"sp-s"},
                                   {{L"Tools"}, 0, S_OK, L"s---"},
                                   {{L"Tools", L"Help"}, 2, S_OK, L"sp-s"},
                                   {{L"Tools"}, 2, S_OK, L"ssss"}};
    for (const auto& [path, value, code, state] : steps) {
        EXPECT_EQ(code, Feature(*engine, path)->SetSelected(value));
        EXPECT_EQ(state, State(*engine));
    }
    const auto features = engine->Host().query<ISetupFeatureHost>();
    features->SelectAll(0);
    EXPECT_EQ(L"s---", State(*engine));
    features->SelectAll(2);
    EXPECT_EQ(L"ssss", State(*engine));
}

TEST_F(Selection, OfARequiredChildHoldsTheItemsAbove)
{
    folder.Product(
        R"("features": [{"name": "Top", "features": [{"name": "Must", "required": true}, {"name": "May"}]}])");
    Reopen();
    EXPECT_EQ(S_FALSE, Feature(*engine, {L"Top"})->SetSelected(0));
    EXPECT_EQ(2, Selected(*engine, {L"Top", L"May"}));
    engine->Host().query<ISetupFeatureHost>()->SelectAll(0);
    EXPECT_EACH(2, Selected(*engine, {L"Top"}), Selected(*engine, {L"Top", L"Must"}));
    EXPECT_EQ(0, Selected(*engine, {L"Top", L"May"}));
}

TEST_F(Selection, TellsSubscribedViewsUntilTheyLeave)
{
    std::wstring heard;
    const auto ear = make_object<Ear>(heard);
    long tools = 0, extra = 0;
    ASSERT_EQ(S_OK, Feature(*engine, {L"Tools"})->Advise(ear.get(), 7, &tools));
    ASSERT_EQ(S_OK, Feature(*engine, {L"Tools", L"Extra"})->Advise(ear.get(), 8, &extra));
    Feature(*engine, {L"Tools"})->SetSelected(0);
    Feature(*engine, {L"Tools"})->SetSelected(0);
    ASSERT_EQ(S_OK, Feature(*engine, {L"Tools"})->Unadvise(tools));
    EXPECT_EQ(E_INVALIDARG, Feature(*engine, {L"Tools"})->Unadvise(tools));
    Feature(*engine, {L"Tools", L"Extra"})->SetSelected(2);
    EXPECT_EQ(L"7:0:0 8:0:0 8:2:0 ", heard);
}

TEST_F(Costs, CountSelectedFilesPerDriveInPlainBytes)
{
    EXPECT_EQ(100u, SelectionCost(*engine));
    EXPECT_EQ(20u, SizeOf(Feature(*engine, {L"Tools"}), false));
    EXPECT_EQ(90u, SizeOf(Feature(*engine, {L"Tools"}), true));
    Feature(*engine, {L"Tools", L"Help"})->SetSelected(0);
    EXPECT_EQ(60u, SelectionCost(*engine));
    const auto costsOf = [&](const wchar_t* name) {
        com_ptr<ISetupCosts> costs;
        EXPECT_EQ(S_OK, engine->Host().query<ISetupFeatureCosts>()->GetFeatureCosts(bstr(name).get(), costs.put()));
        return costs;
    };
    EXPECT_EQ(50u, TotalOf(costsOf(L"Tools")));
    EXPECT_EQ(40u, TotalOf(costsOf(L"Tools\\Help")));
    com_ptr<ISetupCosts> none;
    EXPECT_EQ(no_such_item, engine->Host().query<ISetupFeatureCosts>()->GetFeatureCosts(bstr(L"X").get(), none.put()));

    // 2^31 + 1 on another drive.
    Feature(*engine, {L"Core"}).query<ISetupItemFiles>()->AddCost(1, 1, bstr(L"q:\\data").get());
    com_ptr<ISetupCosts> costs;
    engine->Host().query<ISetupFeatureHost>()->GetCosts(costs.put());
    variant drives;
    costs->GetDrives(drives.put());
    EXPECT_EQ((std::vector<std::wstring>{DriveOf(folder.Target()), L"Q:"}), TextsOf(drives));
    unsigned long low = 0, high = 1;
    costs->GetDriveLow(bstr(L"Q:").get(), &low);
    costs->GetDriveHigh(bstr(L"Q:").get(), &high);
    EXPECT_EQ(0x80000001u, low);
    EXPECT_EQ(0u, high);
    costs->GetDriveLow(bstr(L"R:").get(), &low);
    EXPECT_EQ(0u, low);
}

TEST_F(Filters, TakeFeaturesOutAndLetThemBackIn)
{
    const auto data = ServiceOf<ISetupData>(*engine);
    const auto visible = [&] {
        VARIANT_BOOL truth = VARIANT_FALSE;
        Feature(*engine, {L"Tools", L"Help"})->GetVisible(&truth);
        return truth == VARIANT_TRUE;
    };
    const auto numbers = [&](long kind) {
        variant value;
        data.query<ISetupDataModes>()->GetFilteringNumbers(kind, value.put());
        const safe_array array(value);
        return array.last() - array.first() + 1;
    };
    // At the start the run's language and the machine's system take part.
    ASSERT_TRUE(visible());
    EXPECT_EQ(1, numbers(0));
    EXPECT_EQ(1, numbers(1));
    ASSERT_EQ(S_OK, data->FilterLanguage(1033, VARIANT_FALSE));
    EXPECT_FALSE(visible());
    EXPECT_EQ(60u, SelectionCost(*engine));
    EXPECT_EQ(0, numbers(0));
    ASSERT_EQ(S_OK, data->FilterLanguage(1031, VARIANT_TRUE));
    EXPECT_EQ(100u, SelectionCost(*engine));
    ASSERT_EQ(S_OK, data.query<ISetupDataEx>()->FilterOS(0x3F, 0, VARIANT_FALSE));
    EXPECT_FALSE(visible());
    ASSERT_EQ(S_OK, data.query<ISetupDataEx>()->FilterOS(0x04 | 0x01, 0, VARIANT_TRUE));
    EXPECT_TRUE(visible());
    EXPECT_EQ(2, numbers(1));
    ASSERT_EQ(S_OK, data.query<ISetupDataEx>()->FilterOS(0x01, 0, VARIANT_FALSE));
    EXPECT_FALSE(visible());
    EXPECT_EQ(E_INVALIDARG, data->FilterLanguage(0, VARIANT_FALSE));
    variant none;
    EXPECT_EQ(E_INVALIDARG, data.query<ISetupDataModes>()->GetFilteringNumbers(2, none.put()));
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"bin", L"bin\\b.bin", L"c.bin"}), Tree(folder.Target()));
}

TEST(Systems, AreToldByKindAndBuild)
{
    const auto bit = [](DWORD major, DWORD minor, DWORD build, BYTE kind = VER_NT_WORKSTATION) {
        OSVERSIONINFOEXW version{};
        version.dwMajorVersion = major;
        version.dwMinorVersion = minor;
        version.dwBuildNumber = build;
        version.wProductType = kind;
        return SystemBit(version);
    };
    EXPECT_EQ(0x01u, bit(6, 1, 7601));
    EXPECT_EQ(0x02u, bit(6, 2, 9200));
    EXPECT_EQ(0x04u, bit(6, 3, 9600));
    EXPECT_EQ(0x08u, bit(10, 0, 21999));
    EXPECT_EQ(0x10u, bit(10, 0, 22000));
    EXPECT_EQ(0x20u, bit(10, 0, 20348, VER_NT_SERVER));
    EXPECT_EQ(0u, bit(5, 1, 2600));
}
