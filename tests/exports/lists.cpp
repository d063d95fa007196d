// Script lists, against a plain model and in the cases where results differ by design.
#include "../support/bare_context.h"

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
        if (index == ListIndexNext)
            return Next();
        if (index == ListIndexPrevious && at == 0)
            return -1;
        const int32_t to = index == ListIndexFirst      ? 0
                           : index == ListIndexLast     ? count() - 1
                           : index == ListIndexPrevious ? at - 1
                                                        : index;
        if (to < 0 || to >= count())
            return 1;
        at = to;
        return 0;
    }
};

struct Lists : testing::Test {
    // The position ends on the last text.
    void Add(std::initializer_list<const wchar_t*> added, int32_t mode = ListAddAfter) const
    {
        for (const wchar_t* text : added)
            EXPECT_EQ(_ListAddString(context, texts, text, mode), 0);
    }

    const BareContext context;
    const TempFolder folder;
    const ListHandle texts = _ListCreate(context, ListTypeString), numbers = _ListCreate(context, ListTypeNumber);
    wchar_t buffer[14] = L"untouched";
};

TEST_F(Lists, OfNumbersAgreeWithAPlainModelOverRandomOperations)
{
    constexpr int32_t special[] = {ListIndexNext, ListIndexPrevious, ListIndexLast, ListIndexFirst, -1, -102};
    Model model;
    std::mt19937 random(20261124);
    const auto pick = [&](int below) { return static_cast<int32_t>(random() % static_cast<unsigned>(below)); };
    for (int step = 0; step < 20000; ++step) {
        const int32_t value = pick(9), mode = pick(12) == 0 ? 2 : pick(2);
        const int32_t index = pick(2) ? special[pick(6)] : pick(model.count() + 2);
        int32_t current = -7, at = -7;
        // Grows for a while, shrinks for a while.
        switch (pick((step / 500) % 2 ? 12 : 7)) {
        case 0:
        case 1:
        case 2:
            ASSERT_EQ(_ListAddItem(context, numbers, value, mode), model.Add(value, mode)) << step;
            break;
        case 3:
            ASSERT_EQ(_ListFindItem(context, numbers, value), model.Find(value)) << step;
            break;
        case 4:
            ASSERT_EQ(_ListSetIndex(context, numbers, index), model.SetIndex(index)) << step << " index " << index;
            break;
        case 5:
            ASSERT_EQ(_ListGetNextItem(context, numbers, &current), model.Next()) << step;
            break;
        case 6:
            if (pick(40) == 0) {
                ASSERT_EQ(_ListDeleteAll(context, numbers), 0);
                model = {};
            }
            break;
        default:
            ASSERT_EQ(_ListDeleteItem(context, numbers), model.Delete()) << step;
            break;
        }
        ASSERT_EQ(_ListCount(context, numbers), model.count()) << step;
        const bool empty = model.items.empty();
        ASSERT_EQ(_ListCurrentItem(context, numbers, &current), empty ? 1 : 0);
        ASSERT_EQ(_ListGetIndex(context, numbers, &at), empty ? 1 : 0);
        ASSERT_EQ(current, empty ? -7 : model.items[static_cast<size_t>(model.at)]) << step;
        ASSERT_EQ(at, empty ? -7 : model.at) << step;
    }
}

TEST_F(Lists, KeepOrderBehindAndReverseInFront)
{
    Add({L"a", L"b", L"c"});
    ASSERT_EQ(_ListSetIndex(context, texts, 1), 0);
    Add({L"x", L"y", L""}, ListAddBefore);
    EXPECT_EQ(ListText(context, texts), L"a||y|x|b|c");
    ASSERT_EQ(_ListSetCurrentString(context, texts, nullptr), 0);
    EXPECT_EQ(ListText(context, texts), L"a||y|x|b|");
}

TEST_F(Lists, TellTheRoomAndStayForTheRetry)
{
    Add({L"one", L"a longer text"});

    ASSERT_EQ(_ListGetFirstString(context, texts, buffer, 3), 4);
    EXPECT_STREQ(buffer, L"untouched");
    ASSERT_EQ(_ListCurrentString(context, texts, buffer, 4), 0);
    EXPECT_STREQ(buffer, L"one");
    ASSERT_EQ(_ListGetNextString(context, texts, buffer, 13), 14);
    ASSERT_EQ(_ListGetNextString(context, texts, buffer, -1), 14);
    ASSERT_EQ(_ListGetNextString(context, texts, buffer, 14), 0);
    EXPECT_STREQ(buffer, L"a longer text");
    EXPECT_EQ(_ListGetNextString(context, texts, buffer, 14), VHRT_NO_ITEM);
    EXPECT_EQ(_ListCurrentString(context, texts, buffer, 13), 14);
}

TEST_F(Lists, FindExactTextFromTheCurrentOneOn)
{
    Add({L"Ab", L"ab", L"abc", L"ab"});
    _ListSetIndex(context, texts, ListIndexFirst);
    const auto found_at = [&](const wchar_t* text) {
        int32_t index = -1;
        return _ListFindString(context, texts, text) == 0 && _ListGetIndex(context, texts, &index) == 0 ? index : -1;
    };
    EXPECT_EQ(found_at(L"ab"), 1);
    EXPECT_EQ(found_at(L"ab"), 1) << "the hit itself is included";
    EXPECT_EQ(found_at(L"Ab"), -1) << "no wrap to the front";
    EXPECT_EQ(found_at(L"abc"), 2);
    EXPECT_EQ(found_at(nullptr), -1);
    EXPECT_EQ(found_at(L"ab"), 3) << "a miss left the position alone";
}

TEST_F(Lists, AnswerWrongTypesAndHandlesAsScriptsExpect)
{
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
        EXPECT_GIVES(_ListDestroy(context, &kept), VHRT_BAD_HANDLE, kept, unknown);
    }
    for (const int32_t type : {1, 2, -2, 7})
        EXPECT_EQ(_ListCreate(context, type), -1);
    EXPECT_EQ(_ListGetType(context, numbers), ListTypeNumber);
    EXPECT_EQ(_ListCount(nullptr, numbers), -1);
}

TEST_F(Lists, KeepApartWhenMadeAndDestroyedInAnyOrder)
{
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

TEST_F(Lists, AreWrittenInTheEncodingOfTheFlagsOrOfTheFileThatIsThere)
{
    using namespace std::string_literals;
    const std::string wide_a = "\xFF\xFE\x61\0\r\0\n\0"s, wide_line = "n\0\r\0\n\0"s, wide_new = "\xFF\xFE" + wide_line;
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
        {"append to wide", wide_a, ListWriteAppend, wide_a + wide_line},
        {"append to wide ignores ansi", wide_a, ListWriteAppend | ListWriteAnsi, wide_a + wide_line}};
    Add({L"n"});
    for (const auto& [what, before, flags, after] : cases) {
        const std::wstring path = folder / L"list.txt";
        DeleteFileW(path.c_str());
        if (before)
            folder.Write(L"list.txt", *before);
        EXPECT_EQ(_ListWriteToFile(context, texts, path.c_str(), flags), 0) << what;
        EXPECT_EQ(BytesOf(path), after) << what;
    }
    _ListDeleteAll(context, texts);
    const std::wstring empty = folder / L"empty.txt";
    EXPECT_EQ(_ListWriteToFile(context, texts, empty.c_str(), 0), 0);
    EXPECT_EQ(BytesOf(empty), "");
    EXPECT_EQ(_ListWriteToFile(context, texts, empty.c_str(), ListWriteUnicode), 0);
    EXPECT_EQ(BytesOf(empty), "\xFF\xFE");
    EXPECT_EQ(_ListWriteToFile(context, texts, folder.path().c_str(), 0), -1) << "a folder can't be written";
}

TEST_F(Lists, TakeFilesInBehindTheCurrentElement)
{
    Add({L"first", L"last"});
    _ListSetIndex(context, texts, ListIndexFirst);
    const std::wstring file = folder.Write(L"in.txt", "one\r\n\r\nthree");
    EXPECT_EQ(_ListReadFromFile(context, texts, file.c_str()), 0);
    EXPECT_GIVES_TEXT(_ListCurrentString(context, texts, buffer, 8), 0, buffer, L"three");
    EXPECT_EQ(ListText(context, texts), L"first|one||three|last");
    EXPECT_EQ(_ListReadFromFile(context, texts, (folder / L"absent").c_str()), -1);
}

} // namespace
