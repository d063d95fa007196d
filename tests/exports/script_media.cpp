// Media that a script builds, and the arithmetic of costs, which they make exact.
#include "../../Src/inc/engine_features.h"
#include "../../scriptdata/com_object.h"
#include "../support/bare_context.h"
#include "../support/session.h"

namespace {

constexpr const wchar_t* mine = L"Mine";

TEST(ScriptMedia, IsMadeByItsFirstItem)
{
    const BareContext context;
    EXPECT_EQ(_ComponentIsItemSelected(context, mine, L"a"), -132);
    EXPECT_EQ(_ComponentAddItem(context, mine, L"", 1, 1), -147) << "the media is born all the same";
    EXPECT_EQ(_ComponentIsItemSelected(context, mine, L"a"), -105);
    EXPECT_EQ(_ComponentAddItem(context, mine, L"", 1, 1), static_cast<int32_t>(0x8004F093)) << "now unmapped";
    EXPECT_EQ(_ComponentAddItem(context, mine, L"a", 1, 1), 0);
    EXPECT_EQ(_ComponentAddItem(context, mine, L"a", 1, 1), static_cast<int32_t>(0x8004F066));
    wchar_t text[64], detail[64];
    int32_t code = 0;
    _ComponentSetData(context, mine, L"a", 15, 0, L"The letter");
    EXPECT_GIVES(_ComponentError(context, mine, text, 64, detail, detail, &code), 0, code, -102);
    EXPECT_STREQ(text, L"The letter") << "shown by its display name";
    EXPECT_EQ(_ComponentError(context, mine, text, 10, detail, detail, &code), 11);
}

TEST(ScriptMedia, KeepsItsItemsInOrderUnderTheirParents)
{
    const BareContext context;
    for (const wchar_t* path : {L"b\\two", L"a", L"b\\one", L"b\\two\\deep", L"c\\x\\y"})
        ASSERT_EQ(_ComponentAddItem(context, mine, path, 1, 0), 0);
    const auto items = [&](const wchar_t* parent) {
        const ListHandle list = _ListCreate(context, ListTypeString);
        EXPECT_EQ(_ComponentListItems(context, mine, parent, list), 0);
        return ListText(context, list);
    };
    EXPECT_EQ(items(L""), L"b|a|c");
    EXPECT_EQ(items(L"b"), L"b\\two|b\\one");
    EXPECT_EQ(items(L"c"), L"c\\x");
    EXPECT_EQ(items(L"a"), L"");
    const ListHandle list = _ListCreate(context, ListTypeString);
    EXPECT_EQ(_ComponentListItems(context, mine, L"B", list), -105);
    // Nothing is hidden here, other than in a media of the engine.
    ASSERT_EQ(_ComponentAddItem(context, mine, L"Disk<1>", 1, 0), 0);
    EXPECT_EQ(items(L""), L"b|a|c|Disk<1>");
}

TEST(ScriptMedia, AnswersItsAttributes)
{
    const BareContext context;
    _ComponentAddItem(context, mine, L"dir\\item", 3000, 1);
    const auto text = [&](int32_t code) { return TextAttribute(context, mine, L"dir\\item", code); };
    const auto number = [&](int32_t code) { return NumberAttribute(context, mine, L"dir\\item", code); };
    EXPECT_EQ(text(15), L"item") << "the last part of the path stands in";
    for (const int32_t code : {0, 11, 15, 17, 18}) {
        EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", code, 0, L"a\\nb"), 0);
        EXPECT_EQ(text(code), code < 16 ? L"a\r\nb" : L"a\\nb") << code;
    }
    EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", 14, -5, nullptr), 0);
    EXPECT_EQ(number(14), -5);
    EXPECT_EQ(number(2), 1);
    EXPECT_EACH(0, _ComponentSetData(context, mine, L"dir\\item", 2, 2, nullptr), number(2));
    EXPECT_EQ(number(8), 1);
    for (const int32_t selected : {0, 2, 0, 1}) {
        EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", 8, selected, nullptr), 0);
        EXPECT_EQ(number(8), selected != 0);
    }
    EXPECT_EQ(number(10), 3000) << "bytes";
    EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", 10, 77, nullptr), 0);
    EXPECT_EQ(number(10), 77);
    Table<int32_t, int32_t, int32_t> odd = {{1, -118, -118}, {16, -118, -118}, {5, -118, -137},  {6, -118, -140},
                                            {3, -137, -137}, {13, -137, -137}, {19, -137, -137}, {24, -137, -137}};
    for (const auto& [code, get, set] : odd) {
        EXPECT_EQ(number(code), get) << code;
        EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", code, 0, nullptr), set) << code;
    }
    EXPECT_EQ(_ComponentSelectItem(context, mine, L"", 1), -105);
    EXPECT_EACH(-126, _ComponentMoveData(context, mine, 1), _ComponentValidate(context, mine, L"dir\\item", L""));
}

TEST(ScriptMedia, AddsUpWhatIsSelected)
{
    const BareContext context;
    _ComponentAddItem(context, mine, L"a", 10, 0);
    _ComponentAddItem(context, mine, L"a\\b", 20, 1);
    _ComponentAddItem(context, mine, L"a\\c", 40, 0);
    _ComponentAddItem(context, mine, L"d", 0x7FFFFFFF, 1);
    EXPECT_EQ(_ComponentTotalSize(context, mine, L"a", 0, 0, 0), 10) << "its own";
    EXPECT_EQ(_ComponentTotalSize(context, mine, L"a", 1, 0, 0),
              20 + (_ComponentIsItemSelected(context, mine, L"a") ? 10 : 0));
    EXPECT_EQ(_ComponentTotalSize(context, mine, L"", 1, 0, 0), 0x7FFFFFFF);
    // A size, or a wanted length, with the bits of a failure is none.
    constexpr int32_t looks_failed = 0x4F066;
    _ComponentAddItem(context, mine, L"e", looks_failed, 0);
    EXPECT_EQ(_ComponentTotalSize(context, mine, L"e", 0, 0, 0), looks_failed);
    _ComponentSetData(context, mine, L"e", 0, 0, std::wstring(looks_failed - 1, L'x').c_str());
    EXPECT_EQ(_ComponentGetData(context, mine, L"e", 0, nullptr, nullptr, 1), looks_failed);
    int32_t size = 0;
    EXPECT_GIVES(_ComponentGetItemSize(context, mine, L"a\\c", &size), 0, size, 40);
    EXPECT_GIVES(_ComponentGetItemSize(context, mine, L"none", &size), -105, size, -1);
}

TEST(Costs, RoundAndChooseTheirUnits)
{
    // Bytes, kilobytes, text and unit; nothing costs no text and leaves the unit.
    std::wistringstream rows(LR"(1 1 0.00 10 511 1 0.50 10 512 1 0.50 10 1024 1 1.00 10 1535 1 1.50 10 1536 2 1.50 10
        1048575 1024 1024.00 10 1048576 1024 1.00 20 1073741823 1048576 1024.00 20 1073741824 1048576 1.00 30
        1610612736 1572864 1.50 30 0 0)");
    int32_t bytes = 0, kilobytes = 0;
    while (rows >> bytes >> kilobytes) {
        std::wstring wanted;
        int32_t wanted_unit = 99;
        if (bytes)
            rows >> wanted >> wanted_unit;
        const BareContext context;
        _ComponentAddItem(context, mine, L"x", bytes, 1);
        int32_t cost = -1;
        EXPECT_EQ(_ComponentGetCost(context, mine, L"x", L"any target", &cost), 0);
        EXPECT_EQ(cost, kilobytes) << bytes;
        EXPECT_GIVES(_ComponentGetTotalCost(context, mine, L"", &cost), 0, cost, kilobytes);
        wchar_t text[32] = L"#";
        int32_t unit = 99;
        EXPECT_EQ(_ComponentGetCostEx(context, mine, L"x", L"", text, &unit), 0);
        EXPECT_EQ(text, wanted) << bytes;
        EXPECT_EQ(unit, wanted_unit) << bytes;
        EXPECT_EQ(_ComponentGetTotalCostEx(context, mine, nullptr, text, &unit), -1);
    }
    const BareContext context;
    for (int i = 0; i < 5; ++i)
        _ComponentAddItem(context, mine, std::to_wstring(i).c_str(), 0x7FFFFFFF, 1);
    int32_t high = 0, low = 0;
    EXPECT_GIVES(_FeatureGetCost(context, mine, L"", L"", &high, &low), 0, high, 4);
    EXPECT_EQ(low, 0x7FFFFFFF - 4);
    wchar_t text[32];
    int32_t unit = 0;
    EXPECT_EQ(_ComponentGetTotalCostEx(context, mine, L"", text, &unit), 0);
    EXPECT_STREQ(text, L"10.00") << "beyond 32 bits";
    EXPECT_EQ(unit, 30);
}

TEST(ScriptMedia, GoesToAnyDepth)
{
    const BareContext context;
    std::wstring path = L"a";
    for (int i = 0; i < 10000; ++i)
        path += L"\\a";
    ASSERT_EQ(_ComponentAddItem(context, mine, path.c_str(), 5, 1), 0);
    EXPECT_EQ(_ComponentTotalSize(context, mine, L"", 1, 1, 0), 5);
    EXPECT_EQ(_ComponentSelectItem(context, mine, L"a", 0), 0);
    EXPECT_EQ(_ComponentIsItemSelected(context, mine, path.c_str()), 0);
}

TEST(ScriptMedia, HoldsManySiblings)
{
    const BareContext context;
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(_ComponentAddItem(context, mine, (L"item " + std::to_wstring(i)).c_str(), 1, 1), 0);
    EXPECT_EQ(_ComponentTotalSize(context, mine, L"", 1, 1, 0), 20000);
    EXPECT_EQ(_ComponentIsItemSelected(context, mine, L"item 19999"), 1);
}

// Selection by path, with every ancestor looked at anew.
class Model {
public:
    bool Add(const std::wstring& path, bool selected)
    {
        if (m_selected.contains(path))
            return false;
        for (std::size_t slash = path.find(L'\\'); slash != path.npos; slash = path.find(L'\\', slash + 1))
            m_selected.try_emplace(path.substr(0, slash), false);
        m_selected[path] = selected;
        FollowChildren(path, selected);
        return true;
    }
    bool Select(const std::wstring& path, bool selected)
    {
        if (!m_selected.contains(path))
            return false;
        for (auto& [other, state] : m_selected)
            if (other == path || other.starts_with(path + L"\\"))
                state = selected;
        FollowChildren(path, selected);
        return true;
    }
    const std::map<std::wstring, bool>& all() const { return m_selected; }

private:
    void FollowChildren(const std::wstring& path, bool selected)
    {
        const std::size_t slash = path.find(L'\\');
        if (slash == path.npos)
            return;
        const std::wstring top = path.substr(0, slash);
        bool any = false;
        for (const auto& [other, state] : m_selected)
            any = any || (state && other.starts_with(top + L"\\") && other.find(L'\\', slash + 1) == other.npos);
        if (any == selected)
            m_selected[top] = selected;
    }

    std::map<std::wstring, bool> m_selected;
};

std::wstring RandomPath(std::mt19937& random)
{
    std::wstring path(1, static_cast<wchar_t>(L'A' + random() % 3));
    for (auto depth = random() % 3; depth > 0; --depth)
        path += std::wstring(L"\\") + static_cast<wchar_t>(L'a' + random() % 3);
    return path;
}

TEST(ScriptMedia, SelectsAsAPlainModelDoes)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        std::mt19937 random(seed);
        BareContext context;
        Model model;
        for (int step = 0; step < 60; ++step) {
            const std::wstring path = RandomPath(random);
            const bool selected = random() % 2 != 0;
            if (random() % 2) {
                const bool added = model.Add(path, selected);
                // On a media that is there already the code comes unmapped.
                const auto exists = static_cast<int32_t>(0x8004F066);
                ASSERT_EQ(_ComponentAddItem(context, mine, path.c_str(), 1, selected), added ? 0 : exists);
            } else {
                const bool known = model.Select(path, selected);
                const int32_t missing = model.all().empty() ? -132 : -105;
                ASSERT_EQ(_ComponentSelectItem(context, mine, path.c_str(), selected), known ? 0 : missing);
            }
            for (const auto& [item, state] : model.all())
                ASSERT_EQ(_ComponentIsItemSelected(context, mine, item.c_str()), state ? 1 : 0)
                    << "seed " << seed << ", step " << step;
        }
    }
}

} // namespace
