// Bytes, numbers and formatted text.
#include "../../exports/vhrt/scalars.h"
#include "../support/test.h"

namespace {

TEST(Bytes, CopyFailsInTheOrderOfItsTests)
{
    Table<uint32_t, uint32_t, uint32_t, uint32_t, uint32_t, int32_t> cases = {
        {0, 8, 0, 8, 8, 0}, {2, 8, 0, 8, 7, 9},  {0, 8, 4, 8, 5, -3}, {7, 8, 7, 8, 2, 9},
        {0, 8, 0, 8, 0, 0}, {0, 8, 8, 8, 1, -3}, {0, 0, 0, 8, 1, 1},  {8, 8, 0, 0, 0, 0}};
    for (const auto& [target_offset, target_size, source_offset, source_size, count, result] : cases) {
        char target[9] = "........";
        EXPECT_EQ(_CopyBytes(target, target_offset, target_size, "abcdefgh", source_offset, source_size, count), result)
            << target_offset << " " << count;
        const bool copied = result == 0 && count;
        EXPECT_EQ(std::string(target) != "........", copied);
    }
    char overlap[] = "abcdef";
    EXPECT_EQ(_CopyBytes(overlap, 1, 6, overlap, 0, 6, 5), 0);
    EXPECT_STREQ(overlap, "aaaaaa") << "from the lowest index up";
}

TEST(Bytes, AcceptTheIndexOneBehindTheEnd)
{
    uint8_t buffer[] = {0x7F, 0xFF, 0x80, 0x01};
    Table<uint32_t, int32_t, int32_t> cases = {{0, 0, 127}, {1, 0, -1},  {2, 0, -128},
                                               {3, 0, 1},   {4, -4, 99}, {0xFFFFFFFF, -4, 99}};
    for (const auto& [index, code, wanted_value] : cases) {
        int32_t value = 99;
        EXPECT_EQ(_GetByte(buffer, 3, index, &value), code) << index;
        EXPECT_EQ(value, wanted_value) << index;
    }
    EXPECT_EQ(_SetByte(buffer, 3, 3, 0x1AB), 0);
    EXPECT_EQ(buffer[3], 0xAB);
    EXPECT_EQ(_SetByte(buffer, 3, 4, 0), -4);
}

TEST(Numbers, DivideAndCombineAsText)
{
    wchar_t text[64], point[8];
    Table<int32_t, int32_t, int32_t, const wchar_t*> divisions = {
        {1, 3, 4, L"0.3333"}, {-7, 2, 1, L"-3.5"}, {2, 3, 0, L"1"}, {10, 5, 2, L"2.00"}};
    for (const auto& [numerator, denominator, precision, wanted_text] : divisions) {
        EXPECT_GIVES_TEXT(_Divide(numerator, denominator, precision, text, point), 0, text, wanted_text);
        EXPECT_STREQ(point, L".");
    }
    EXPECT_EQ(_Divide(1, 0, 2, text, point), 0);

    Table<const wchar_t*, const wchar_t*, wchar_t, const wchar_t*> operations = {
        {L"1.5", L"2", L'+', L"3.50"},      {L"1.5", L"2x", L'*', L"3.00"}, {L"1", L"3", L'/', L"0.33"},
        {L"", L"2", L'-', L"-2.00"},        {L"abc", L"1", L'+', L"1.00"},  {nullptr, L"1", L'+', L"1.00"},
        {L"1e3", L"0.25", L'+', L"1000.25"}};
    for (const auto& [a, b, operation, wanted_text] : operations)
        EXPECT_GIVES_TEXT(_FloatingPointOperation(a, b, operation, text), 0, text, wanted_text);
    wcscpy(text, L"kept");
    EXPECT_GIVES_TEXT(_FloatingPointOperation(L"1", L"2", L'%', text), E_INVALIDARG, text, L"kept");
    EXPECT_EQ(_CompareDWORD(0x80000000, 1), 1);
    EXPECT_EQ(_CompareDWORD(1, 0xFFFFFFFF), -1);
    EXPECT_EQ(_CompareDWORD(5, 5), 0);
}

// A one-dimensional array of variants from an index on.
variant ArrayOf(std::vector<variant> values, long first = 0)
{
    SAFEARRAYBOUND bound{static_cast<ULONG>(values.size()), first};
    SAFEARRAY* array = SafeArrayCreate(VT_VARIANT, 1, &bound);
    for (long i = 0; i < static_cast<long>(values.size()); ++i) {
        long index = first + i;
        SafeArrayPutElement(array, &index, &values[static_cast<size_t>(i)].get());
    }
    variant holder;
    holder.get().vt = VT_ARRAY | VT_VARIANT;
    holder.get().parray = array;
    return holder;
}

variant Real(double value)
{
    variant real;
    real.get().vt = VT_R8;
    real.get().dblVal = value;
    return real;
}

TEST(Sprintf, TakesNumbersAsIntegersAndAllElseAsText)
{
    wchar_t buffer[64];
    variant arguments = ArrayOf({variant(42L), variant(L"text"), Real(2.6), variant(true)});
    EXPECT_EQ(_DoSprintf(buffer, 64, L"%d %s %d %d|%s", &arguments.get()), 19);
    EXPECT_STREQ(buffer, L"42 text 3 -1|(null)") << "a slot without an element is null";
    EXPECT_EQ(_DoSprintf(buffer, 7, L"%d %s", &arguments.get()), -5);
    EXPECT_EQ(_DoSprintf(buffer, 8, L"%d %s", &arguments.get()), 7);

    variant shifted = ArrayOf({variant(7L)}, 3);
    EXPECT_EQ(_DoSprintf(buffer, 64, L"%d %d %d %d", &shifted.get()), 7);
    EXPECT_STREQ(buffer, L"0 0 0 7") << "the slot is the index";
    EXPECT_TRUE(SafeArrayGetDim(shifted.get().parray) == 1) << "the array is still the caller's";
    {
        const safe_array taken(shifted);
        EXPECT_EQ(taken.last(), 3);
        EXPECT_EQ(shifted.type(), VT_EMPTY) << "one holder at a time";
    }
}

TEST(Sprintf, RefusesArgumentsThatHaveNoSlot)
{
    wchar_t buffer[16];
    SAFEARRAYBOUND bounds[] = {{1, 0}, {1, 0}};
    variant square;
    square.get().vt = VT_ARRAY | VT_I4;
    square.get().parray = SafeArrayCreate(VT_I4, 2, bounds);
    for (variant refused : {ArrayOf({variant(1L), variant(2L)}, 15), ArrayOf({variant(1L)}, -1), variant(3L), square})
        EXPECT_EQ(_DoSprintf(buffer, 16, L"%d", &refused.get()), -1);
    variant none;
    none.get().vt = VT_ARRAY | VT_VARIANT;
    none.get().parray = nullptr;
    EXPECT_EQ(_DoSprintf(buffer, 16, L"plain", &none.get()), 5);
}

TEST(Arrays, GoBothWays)
{
    const wchar_t* wide[] = {L"one", L"", L"\u00e9t\u00e9"};
    char** narrow = _WCHARArrayToCHARArray(wide, 3);
    wchar_t back[3][8] = {};
    wchar_t* targets[] = {back[0], back[1], back[2]};
    EXPECT_EQ(_CHARArrayToWCHARArray(targets, narrow, 3), 0);
    for (int i = 0; i < 3; ++i)
        EXPECT_STREQ(back[i], wide[i]);
    char* kept = narrow[0];
    EXPECT_EQ(_DeleteCHARArray(narrow), 0);
    EXPECT_STREQ(kept, "one") << "the texts outlive their array";
    EXPECT_EQ(_DeleteCHARArray(_WCHARArrayToCHARArray(wide, 0)), 0);
}

TEST(Variants, AreEmptyOrObjectsByTheirTag)
{
    variant value;
    EXPECT_EQ(IsEmpty(&value.get()), 1);
    EXPECT_EQ(IsObject(&value.get()), 0);
    value = variant(0L);
    EXPECT_EQ(IsEmpty(&value.get()), 0);
    VARIANT null_object{};
    null_object.vt = VT_DISPATCH;
    EXPECT_EQ(IsObject(&null_object), 0);
    null_object.pdispVal = reinterpret_cast<IDispatch*>(&null_object);
    EXPECT_EQ(IsObject(&null_object), 1);
}

} // namespace
