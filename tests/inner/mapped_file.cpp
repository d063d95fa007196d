// Mapped files: sizes, failures, narrow names; and the conversion of text files that stands on them.
#include "../../diagnostics/mapped_file.h"
#include "../../files/unicode_file.h"
#include "../support/test.h"

namespace {

TEST(MappedFile, HasTheFileOrItsBeginning)
{
    const TempFolder folder;
    const std::wstring path = folder.Write(L"a", "abcdef");
    const Table<uint32_t, uint32_t, std::string_view> cases = {{0, 6, "abcdef"}, {3, 3, "abc"}, {6, 6, "abcdef"}};
    for (const auto& [asked, size, content] : cases) {
        uint32_t given = asked;
        vhmapfilex file;
        EXPECT_GIVES(file.open(stringx(path), given, false), true, given, size);
        EXPECT_EQ(std::string_view(reinterpret_cast<const char*>(file.bytes().data()), file.size()), content);
        EXPECT_FALSE(DeleteFileW(path.c_str())) << "nobody else has it";
        file.close();
        EXPECT_FALSE(file.is_mapped());
        uint32_t again = 0;
        EXPECT_TRUE(file.open(stringx(path), again, false)) << "closed, it opens once more";
    }
    EXPECT_TRUE(DeleteFileW(path.c_str())) << "nothing stays open";
}

TEST(MappedFile, EndsWhereItsWriterSays)
{
    const TempFolder folder;
    const std::wstring path = folder.Write(L"a", "something longer");
    const Table<uint32_t, uint32_t, std::size_t> cases = {{1000, 10, 10}, {10, 10, 10}, {10, 0, 0}, {10, 1000, 10}};
    for (const auto& [size, settled, length] : cases) {
        vhmapfilex file(stringx(path), size, true);
        ASSERT_TRUE(file.is_mapped());
        std::ranges::fill(file.bytes(), std::byte{'x'});
        file.set_size(settled);
        file.close();
        EXPECT_EQ(BytesOf(path), std::string(length, 'x')) << size;
    }
    EXPECT_FALSE(vhmapfilex(stringx(folder.Write(L"b", "old")), 0, true).is_mapped());
    EXPECT_EQ(BytesOf(folder / L"b"), "") << "emptied, though nothing could be written";
}

TEST(MappedFile, TellsWhatFailed)
{
    const TempFolder folder;
    const Table<std::wstring, DWORD> cases = {{folder / L"none", ERROR_FILE_NOT_FOUND},
                                              {folder / L"none\\a", ERROR_PATH_NOT_FOUND},
                                              {folder.Write(L"empty", ""), ERROR_FILE_INVALID}};
    for (const auto& [path, code] : cases) {
        uint32_t size = 0;
        vhmapfilex file;
        EXPECT_FALSE(file.open(stringx(path), size, false));
        EXPECT_GIVES(last_file_failure().code, code, last_file_failure().path, path);
    }
    EXPECT_TRUE(DeleteFileW((folder / L"empty").c_str())) << "what was opened goes with the object";
    vhmapfilex file;
    for (const DWORD before : {77u, 78u}) {
        uint32_t size = 0;
        const stringx path(folder.Write(std::to_wstring(before), "x"));
        SetLastError(before);
        EXPECT_TRUE(file.open(path, size, false));
        EXPECT_EQ(last_file_failure().code, before) << "what the thread failed with before";
    }
}

TEST(MappedFile, OpensByNarrowNamesWhereThereAreNoOthers)
{
    const TempFolder folder;
    const std::wstring path = folder.Write(L"a", "abc");
    const Replaced file(late::create_file);
    const Replaced mapping(late::create_mapping);
    EXPECT_EQ(vhmapfilex(stringx(path), 0, false).size(), 3u);
}

std::string BytesOfText(std::wstring_view text)
{
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}

TEST(UnicodeFile, IsConvertedWithoutItsMark)
{
    const TempFolder folder;
    const std::wstring source = folder / L"s", target = folder / L"t";
    const Table<std::wstring, UINT, bool, std::string> cases = {
        {L"\xFEFFplain text\r\n", 1252, true, "plain text\r\n"},
        {L"plain text\r\n and more of it", 1252, true, "plain text\r\n and more of it"},
        {L"\xFEFF\x00E4\x20AC", 1252, true, "\xE4\x80"},
        {L"\xFEFF\x0416x", 1252, true, "?x"},
        {L"\xFEFF\x0416x", 1251, true, "\xC6x"},
        // No code page of this number, a mark and nothing else.
        {L"\xFEFFtext", 12345, false, ""},
        {L"\xFEFF", 1252, false, ""}};
    for (const auto& [text, code_page, done, converted] : cases) {
        folder.Write(L"s", BytesOfText(text));
        folder.Write(L"t", "what was there before");
        EXPECT_EQ(ConvertUnicodeFile(stringx(source), stringx(target), code_page), done) << code_page;
        EXPECT_EQ(BytesOf(target), converted);
        EXPECT_TRUE(done || last_file_failure().path == target);
    }
    folder.Write(L"t", "kept");
    for (const std::string& bytes : {std::string(), std::string("no such text, but bytes"), std::string("x")}) {
        folder.Write(L"s", bytes);
        EXPECT_FALSE(ConvertUnicodeFile(stringx(source), stringx(target), 1252));
        EXPECT_EQ(last_file_failure().path, source);
        EXPECT_EQ(BytesOf(target), "kept");
    }
}

} // namespace
