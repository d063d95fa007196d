// Media that a script builds, and the arithmetic of costs, which they make exact.
#include <random>

#include <gtest/gtest.h>

#include "../../Src/inc/engine_features.h"
#include "../../exports/vhrt.h"
#include "../../scriptdata/com_object.h"
#include "../support/bare_context.h"

using vh::test::BareContext;
using vh::test::ListText;

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
    wchar_t text[64];
    wchar_t detail[64];
    int32_t code = 0;
    _ComponentSetData(context, mine, L"a", 15, 0, L"The letter");
    EXPECT_EQ(_ComponentError(context, mine, text, 64, detail, detail, &code), 0);
    EXPECT_EQ(code, -102);
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
    const auto text = [&](int32_t code) -> std::wstring {
        wchar_t buffer[64];
        int32_t number = 0;
        const int32_t result = _ComponentGetData(context, mine, L"dir\\item", code, &number, buffer, 64);
        return result == 0 ? buffer : std::to_wstring(result);
    };
    const auto number = [&](int32_t code) {
        wchar_t buffer[64];
        int32_t value = -99;
        const int32_t result = _ComponentGetData(context, mine, L"dir\\item", code, &value, buffer, 64);
        return result == 0 ? value : result;
    };
    EXPECT_EQ(text(15), L"item") << "the last part of the path stands in";
    for (const int32_t code : {0, 11, 15, 17, 18}) {
        EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", code, 0, L"a\\nb"), 0);
        EXPECT_EQ(text(code), code < 16 ? L"a\r\nb" : L"a\\nb") << code;
    }
    EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", 14, -5, nullptr), 0);
    EXPECT_EQ(number(14), -5);
    EXPECT_EQ(number(2), 1);
    EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", 2, 2, nullptr), 0);
    EXPECT_EQ(number(2), 0);
    EXPECT_EQ(number(8), 1);
    for (const int32_t selected : {0, 2, 0, 1}) {
        EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", 8, selected, nullptr), 0);
        EXPECT_EQ(number(8), selected != 0);
    }
    EXPECT_EQ(number(10), 3000) << "bytes";
    EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", 10, 77, nullptr), 0);
    EXPECT_EQ(number(10), 77);
    const struct {
        int32_t code, get, set;
    } odd[] = {{1, -118, -118}, {16, -118, -118}, {5, -118, -137},  {6, -118, -140},
               {3, -137, -137}, {13, -137, -137}, {19, -137, -137}, {24, -137, -137}};
    for (const auto& one : odd) {
        EXPECT_EQ(number(one.code), one.get) << one.code;
        EXPECT_EQ(_ComponentSetData(context, mine, L"dir\\item", one.code, 0, nullptr), one.set) << one.code;
    }
    EXPECT_EQ(_ComponentSelectItem(context, mine, L"", 1), -105);
    EXPECT_EQ(_ComponentMoveData(context, mine, 1), -126);
    EXPECT_EQ(_ComponentValidate(context, mine, L"dir\\item", L""), -126);
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
    int32_t size = 0;
    EXPECT_EQ(_ComponentGetItemSize(context, mine, L"a\\c", &size), 0);
    EXPECT_EQ(size, 40);
    EXPECT_EQ(_ComponentGetItemSize(context, mine, L"none", &size), -105);
    EXPECT_EQ(size, -1);
}

TEST(Costs, RoundAndChooseTheirUnits)
{
    const struct {
        int32_t bytes;
        int32_t kilobytes;
        const wchar_t* text;
        int32_t unit;
    } cases[] = {{0, 0, L"", 99},
                 {1, 1, L"0.00", 10},
                 {511, 1, L"0.50", 10},
                 {512, 1, L"0.50", 10},
                 {1024, 1, L"1.00", 10},
                 {1535, 1, L"1.50", 10},
                 {1536, 2, L"1.50", 10},
                 {0xFFFFF, 1024, L"1024.00", 10},
                 {0x100000, 1024, L"1.00", 20},
                 {0x3FFFFFFF, 0x100000, L"1024.00", 20},
                 {0x40000000, 0x100000, L"1.00", 30},
                 {0x60000000, 0x180000, L"1.50", 30}};
    for (const auto& one : cases) {
        const BareContext context;
        _ComponentAddItem(context, mine, L"x", one.bytes, 1);
        int32_t cost = -1;
        EXPECT_EQ(_ComponentGetCost(context, mine, L"x", L"any target", &cost), 0);
        EXPECT_EQ(cost, one.kilobytes) << one.bytes;
        EXPECT_EQ(_ComponentGetTotalCost(context, mine, L"", &cost), 0);
        EXPECT_EQ(cost, one.kilobytes);
        wchar_t text[32] = L"#";
        int32_t unit = 99;
        EXPECT_EQ(_ComponentGetCostEx(context, mine, L"x", L"", text, &unit), 0);
        EXPECT_STREQ(text, one.text) << one.bytes;
        EXPECT_EQ(unit, one.unit) << one.bytes;
        EXPECT_EQ(_ComponentGetTotalCostEx(context, mine, nullptr, text, &unit), -1);
    }
    const BareContext context;
    for (int i = 0; i < 5; ++i)
        _ComponentAddItem(context, mine, std::to_wstring(i).c_str(), 0x7FFFFFFF, 1);
    int32_t high = 0;
    int32_t low = 0;
    EXPECT_EQ(_FeatureGetCost(context, mine, L"", L"", &high, &low), 0);
    EXPECT_EQ(high, 4);
    EXPECT_EQ(low, 0x7FFFFFFF - 4);
    wchar_t text[32];
    int32_t unit = 0;
    EXPECT_EQ(_ComponentGetTotalCostEx(context, mine, L"", text, &unit), 0);
    EXPECT_STREQ(text, L"10.00") << "beyond 32 bits";
    EXPECT_EQ(unit, 30);
}

TEST(ScriptMedia, HoldsManySiblings)
{
    const BareContext context;
    for (int i = 0; i < 20000; ++i)
        ASSERT_EQ(_ComponentAddItem(context, mine, (L"item " + std::to_wstring(i)).c_str(), 1, 1), 0);
    EXPECT_EQ(_ComponentTotalSize(context, mine, L"", 1, 1, 0), 20000);
    EXPECT_EQ(_ComponentIsItemSelected(context, mine, L"item 19999"), 1);
}

} // namespace
