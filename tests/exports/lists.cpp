// Script lists, against a plain model and in the cases where results differ by design.
#include "../../exports/vhrt/lists.h"
#include "../support/bare_context.h"
#include "../support/call_export.h"
#include "../support/temp_folder.h"

using namespace vh::test;

namespace {

// What a list of numbers does, written with an index and nothing clever.
struct Model {
    std::vector<int32_t> items;
    int32_t at = 0;

    int32_t count() const { return static_cast<int32_t>(items.size()); }
    int64_t Add(int32_t value, int32_t mode)
    {
        if (mode != 0 && mode != 1)
            return -1;
        at = items.empty() ? 0 : mode == 0 ? at + 1 : at;
        items.insert(items.begin() + at, value);
        return 0;
    }
    int64_t Delete()
    {
        if (items.empty())
            return 1;
        items.erase(items.begin() + at);
        if (at == count() && at > 0)
            --at;
        return 0;
    }
    int64_t Find(int32_t value)
    {
        for (int32_t i = at; i < count(); ++i)
            if (items[static_cast<size_t>(i)] == value) {
                at = i;
                return 0;
            }
        return 1;
    }
    int64_t Next()
    {
        if (at + 1 >= count())
            return 1;
        ++at;
        return 0;
    }
    int64_t SetIndex(int32_t index)
    {
        if (items.empty())
            return 1;
        switch (index) {
        case ListIndexFirst:
            at = 0;
            return 0;
        case ListIndexLast:
            at = count() - 1;
            return 0;
        case ListIndexPrevious:
            return at == 0 ? -1 : (--at, 0);
        case ListIndexNext:
            return Next();
        }
        if (index < 0 || index >= count())
            return 1;
        at = index;
        return 0;
    }
};

TEST(NumberList, AgreesWithAPlainModelOverRandomOperations)
{
    const BareContext context;
    const ListHandle list = _ListCreate(context, ListTypeNumber);
    Model model;
    std::mt19937 random(20261124);
    const auto pick = [&](int below) { return static_cast<int32_t>(random() % static_cast<unsigned>(below)); };
    for (int step = 0; step < 20000; ++step) {
        const int32_t value = pick(9);
        // Grows for a while, shrinks for a while.
        switch (pick((step / 500) % 2 ? 12 : 7)) {
        case 0:
        case 1:
        case 2: {
            const int32_t mode = pick(12) == 0 ? 2 : pick(2);
            ASSERT_EQ(_ListAddItem(context, list, value, mode), model.Add(value, mode)) << step;
            break;
        }
        case 3:
            ASSERT_EQ(_ListFindItem(context, list, value), model.Find(value)) << step;
            break;
        case 4: {
            const int32_t special[] = {ListIndexNext, ListIndexPrevious, ListIndexLast, ListIndexFirst, -1, -102};
            const int32_t index = pick(2) ? special[pick(6)] : pick(model.count() + 2);
            ASSERT_EQ(_ListSetIndex(context, list, index), model.SetIndex(index)) << step << " index " << index;
            break;
        }
        case 5: {
            int32_t got = 77;
            ASSERT_EQ(_ListGetNextItem(context, list, &got), model.Next()) << step;
            break;
        }
        case 6:
            if (pick(40) == 0) {
                ASSERT_EQ(_ListDeleteAll(context, list), 0);
                model = {};
            }
            break;
        default:
            ASSERT_EQ(_ListDeleteItem(context, list), model.Delete()) << step;
            break;
        }
        ASSERT_EQ(_ListCount(context, list), model.count()) << step;
        int32_t current = -7;
        int32_t index = -7;
        const bool empty = model.items.empty();
        ASSERT_EQ(_ListCurrentItem(context, list, &current), empty ? 1 : 0);
        ASSERT_EQ(_ListGetIndex(context, list, &index), empty ? 1 : 0);
        ASSERT_EQ(current, empty ? -7 : model.items[static_cast<size_t>(model.at)]) << step;
        ASSERT_EQ(index, empty ? -7 : model.at) << step;
    }
}

TEST(StringList, KeepsOrderBehindAndReversesInFront)
{
    const BareContext context;
    const ListHandle list = _ListCreate(context, ListTypeString);
    for (const wchar_t* text : {L"a", L"b", L"c"})
        ASSERT_EQ(_ListAddString(context, list, text, ListAddAfter), 0);
    ASSERT_EQ(_ListSetIndex(context, list, 1), 0);
    for (const wchar_t* text : {L"x", L"y", L""})
        ASSERT_EQ(_ListAddString(context, list, text, ListAddBefore), 0);
    EXPECT_EQ(ListText(context, list), L"a||y|x|b|c");
    ASSERT_EQ(_ListSetCurrentString(context, list, nullptr), 0);
    EXPECT_EQ(ListText(context, list), L"a||y|x|b|");
}

TEST(StringList, TellsTheRoomAndStaysForTheRetry)
{
    const BareContext context;
    const ListHandle list = _ListCreate(context, ListTypeString);
    _ListAddString(context, list, L"one", ListAddAfter);
    _ListAddString(context, list, L"a longer text", ListAddAfter);
    wchar_t buffer[14] = L"untouched";

    ASSERT_EQ(_ListGetFirstString(context, list, buffer, 3), 4);
    EXPECT_STREQ(buffer, L"untouched");
    ASSERT_EQ(_ListCurrentString(context, list, buffer, 4), 0);
    EXPECT_STREQ(buffer, L"one");
    ASSERT_EQ(_ListGetNextString(context, list, buffer, 13), 14);
    ASSERT_EQ(_ListGetNextString(context, list, buffer, -1), 14);
    ASSERT_EQ(_ListGetNextString(context, list, buffer, 14), 0);
    EXPECT_STREQ(buffer, L"a longer text");
    EXPECT_EQ(_ListGetNextString(context, list, buffer, 14), VHRT_NO_ITEM);
    EXPECT_EQ(_ListCurrentString(context, list, buffer, 13), 14);
}

TEST(StringList, FindsExactTextFromTheCurrentOneOn)
{
    const BareContext context;
    const ListHandle list = _ListCreate(context, ListTypeString);
    for (const wchar_t* text : {L"Ab", L"ab", L"abc", L"ab"})
        _ListAddString(context, list, text, ListAddAfter);
    _ListSetIndex(context, list, ListIndexFirst);
    const auto found_at = [&](const wchar_t* text) {
        int32_t index = -1;
        return _ListFindString(context, list, text) == 0 && _ListGetIndex(context, list, &index) == 0 ? index : -1;
    };
    EXPECT_EQ(found_at(L"ab"), 1);
    EXPECT_EQ(found_at(L"ab"), 1) << "the hit itself is included";
    EXPECT_EQ(found_at(L"Ab"), -1) << "no wrap to the front";
    EXPECT_EQ(found_at(L"abc"), 2);
    EXPECT_EQ(found_at(nullptr), -1);
    EXPECT_EQ(found_at(L"ab"), 3) << "a miss left the position alone";
}

TEST(Lists, AnswerWrongTypesAndHandlesAsScriptsExpect)
{
    const BareContext context;
    const ListHandle numbers = _ListCreate(context, ListTypeNumber);
    const ListHandle texts = _ListCreate(context, ListTypeString);
    // The numbers' calls first; each finds a list before it looks at anything else.
    constexpr const char* names[] = {
        "_ListAddItem",       "_ListCurrentItem",      "_ListSetCurrentItem", "_ListDeleteItem",
        "_ListGetFirstItem",  "_ListGetNextItem",      "_ListFindItem",       "_ListAddString",
        "_ListCurrentString", "_ListSetCurrentString", "_ListDeleteString",   "_ListGetFirstString",
        "_ListGetNextString", "_ListFindString",       "_ListReadFromFile",   "_ListWriteToFile"};
    const auto all = [&](ListHandle list) {
        std::vector<int64_t> codes;
        wchar_t scratch[8] = L"Z:\\no";
        for (const char* name : names)
            codes.push_back(CallExport(name, context, list, scratch, 0));
        return codes;
    };
    const std::vector<int64_t> of_texts = all(texts), of_numbers = all(numbers);
    EXPECT_EQ(std::count(of_texts.begin(), of_texts.begin() + 7, VHRT_WRONG_TYPE), 7);
    EXPECT_EQ(std::count(of_numbers.begin() + 7, of_numbers.end(), VHRT_WRONG_TYPE), 9);

    ListHandle stale = texts;
    ASSERT_EQ(_ListDestroy(context, &stale), 0);
    EXPECT_EQ(stale, 0);
    for (const ListHandle unknown : {texts, ListHandle{0}, ListHandle{-1}, ListHandle{1}, numbers + 16}) {
        const std::vector<int64_t> codes = all(unknown);
        for (size_t i = 0; i < codes.size(); ++i)
            EXPECT_EQ(codes[i], i == 6 ? VHRT_WRONG_TYPE : VHRT_BAD_HANDLE) << unknown << " call " << i;
        ListHandle kept = unknown;
        EXPECT_EQ(_ListDestroy(context, &kept), VHRT_BAD_HANDLE);
        EXPECT_EQ(kept, unknown);
    }
    for (const int32_t type : {1, 2, -2, 7})
        EXPECT_EQ(_ListCreate(context, type), -1);
    EXPECT_EQ(_ListCount(nullptr, numbers), -1);
}

TEST(Lists, KeepApartWhenMadeAndDestroyedInAnyOrder)
{
    const BareContext context;
    std::vector<ListHandle> lists;
    std::mt19937 random(7);
    for (int step = 0; step < 4000; ++step) {
        if (lists.empty() || random() % 5 < 3) {
            lists.push_back(_ListCreate(context, ListTypeNumber));
            _ListAddItem(context, lists.back(), static_cast<int32_t>(lists.back() & 0x7FFFFFFF), ListAddAfter);
        } else {
            const size_t victim = random() % lists.size();
            ListHandle handle = lists[victim];
            ASSERT_EQ(_ListDestroy(context, &handle), 0);
            ASSERT_EQ(_ListCount(context, lists[victim]), VHRT_BAD_HANDLE);
            lists.erase(lists.begin() + static_cast<std::ptrdiff_t>(victim));
        }
    }
    for (const ListHandle list : lists) {
        int32_t value = 0;
        ASSERT_EQ(_ListCurrentItem(context, list, &value), 0);
        ASSERT_EQ(value, static_cast<int32_t>(list & 0x7FFFFFFF));
    }
}

TEST(ListFiles, ChooseTheEncodingByFlagsAndByTheFileThatIsThere)
{
    const std::string wide_a("\xFF\xFE"
                             "a\0\r\0\n\0",
                             8);
    const std::string wide_new("\xFF\xFE"
                               "n\0\r\0\n\0",
                               8);
    Table<const char*, std::optional<std::string>, int32_t, std::string> cases = {
        {"new, no flag", std::nullopt, 0, "n\r\n"},
        {"new, ansi", std::nullopt, ListWriteAnsi, "n\r\n"},
        {"new, unicode", std::nullopt, ListWriteUnicode, wide_new},
        {"new, append to nothing", std::nullopt, ListWriteAppend | ListWriteUnicode, wide_new},
        {"both, unicode wins", std::nullopt, ListWriteAnsi | ListWriteUnicode, wide_new},
        {"narrow stays narrow", "a\r\n", 0, "n\r\n"},
        {"wide stays wide", wide_a, 0, wide_new},
        {"wide forced to ansi", wide_a, ListWriteAnsi, "n\r\n"},
        {"append to narrow", "a\r\n", ListWriteAppend, "a\r\nn\r\n"},
        {"append to narrow ignores unicode", "a\r\n", ListWriteAppend | ListWriteUnicode, "a\r\nn\r\n"},
        {"append to wide", wide_a, ListWriteAppend, wide_a + std::string("n\0\r\0\n\0", 6)},
        {"append to wide ignores ansi", wide_a, ListWriteAppend | ListWriteAnsi,
         wide_a + std::string("n\0\r\0\n\0", 6)}};
    const TempFolder folder;
    const BareContext context;
    const ListHandle list = _ListCreate(context, ListTypeString);
    _ListAddString(context, list, L"n", ListAddAfter);
    for (const auto& [what, before, flags, after] : cases) {
        const std::wstring path = folder / L"list.txt";
        DeleteFileW(path.c_str());
        if (before)
            folder.Write(L"list.txt", *before);
        EXPECT_EQ(_ListWriteToFile(context, list, path.c_str(), flags), 0) << what;
        EXPECT_EQ(BytesOf(path), after) << what;
    }
    _ListDeleteAll(context, list);
    const std::wstring empty = folder / L"empty.txt";
    EXPECT_EQ(_ListWriteToFile(context, list, empty.c_str(), 0), 0);
    EXPECT_EQ(BytesOf(empty), "");
    EXPECT_EQ(_ListWriteToFile(context, list, empty.c_str(), ListWriteUnicode), 0);
    EXPECT_EQ(BytesOf(empty), "\xFF\xFE");
    EXPECT_EQ(_ListWriteToFile(context, list, folder.path().c_str(), 0), -1) << "a folder can't be written";
}

TEST(ListFiles, LandBehindTheCurrentElement)
{
    const TempFolder folder;
    const BareContext context;
    const ListHandle list = _ListCreate(context, ListTypeString);
    _ListAddString(context, list, L"first", ListAddAfter);
    _ListAddString(context, list, L"last", ListAddAfter);
    _ListSetIndex(context, list, ListIndexFirst);
    const std::wstring file = folder.Write(L"in.txt", "one\r\n\r\nthree");
    EXPECT_EQ(_ListReadFromFile(context, list, file.c_str()), 0);
    wchar_t current[8];
    EXPECT_EQ(_ListCurrentString(context, list, current, 8), 0);
    EXPECT_STREQ(current, L"three");
    EXPECT_EQ(ListText(context, list), L"first|one||three|last");
    EXPECT_EQ(_ListReadFromFile(context, list, (folder / L"absent").c_str()), -1);
}

} // namespace
