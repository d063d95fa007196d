// Script files: how lines are cut, how the open decides, what bytes reach the disk.
#include "../support/bare_context.h"

namespace {

constexpr int32_t room = 512;

std::string Widened(const std::string& narrow, bool mark = true)
{
    std::string wide = mark ? "\xFF\xFE" : "";
    for (const char c : narrow)
        wide += {c, '\0'};
    return wide;
}

struct Files : testing::Test {
    FileHandle Open(const std::wstring& path, int32_t mode = FileReadText, int32_t create = 0) const
    {
        return static_cast<FileHandle>(_OpenFile(context, path.c_str(), mode, create));
    }
    // "one|two|"
    std::wstring Lines(const std::wstring& path) const
    {
        const FileHandle file = Open(path);
        std::wstring lines;
        wchar_t line[room];
        while (_GetLine(context, file, line, room) == 0)
            lines += line + std::wstring(L"|");
        EXPECT_EQ(_CloseFile(context, file), 0);
        return lines;
    }

    const TempFolder folder;
    const BareContext context;
};

TEST_F(Files, CutLinesAlikeInBothEncodings)
{
    using namespace std::string_literals;
    Table<std::string, const wchar_t*> cases = {
        {"", L""},     {"\n\n", L""},     {"\r\n\r\n", L"|"},  {"a\0b\r\nc"s, L""},   {"a\r\n\r\nb", L"a||b|"},
        {"\n", L""},   {"a\n", L"a|"},    {"a\n\nb", L"a|b|"}, {"a\r\n\r\n", L"a|"},  {"a\r\n\r\n\r\n", L"a||"},
        {"a", L"a|"},  {"a\r\n", L"a|"},  {"a\r\rb", L"a|b|"}, {" \r\n\t", L" |\t|"}, {"a\r\nb\0c\r\nd"s, L"a|"},
        {"\r\n", L""}, {"\r\na", L"|a|"}, {"a\n\rb", L"a|b|"}, {"a\n\n\nb", L"a||b|"}};
    for (const auto& [text, lines] : cases) {
        const std::wstring narrow = folder.Write(L"narrow.txt", text), wide = folder.Write(L"wide.txt", Widened(text));
        EXPECT_EQ(Lines(narrow), lines) << testing::PrintToString(text);
        EXPECT_EQ(Lines(wide), lines) << "wide " << testing::PrintToString(text);
    }
    EXPECT_EQ(Lines(folder.Write(L"u8.txt", "\xEF\xBB\xBF\x61")).back(), L'|') << "a UTF-8 mark is text";
    EXPECT_EQ(Lines(folder.Write(L"mark.txt", "\xFF\xFE")), L"");
}

TEST_F(Files, ReadTheirWholeContentAtOnce)
{
    std::string text;
    for (int i = 0; i < 5000; ++i)
        text += "line number " + std::to_string(i) + "\r\n";
    const std::wstring path = folder.Write(L"long.txt", text);
    const auto file = Open(path);
    const CallCounter<decltype(ReadFile)> reads("ReadFile");
    wchar_t buffer[room];
    int lines = 0;
    while (_GetLine(context, file, buffer, room) == 0)
        ++lines;
    EXPECT_EQ(lines, 5000);
    EXPECT_EQ(reads.calls(), 1);
    _CloseFile(context, file);
}

TEST_F(Files, PeekAtTheSizeWithoutMoving)
{
    const std::wstring path = folder.Write(L"a.txt", "abcd\r\nxy");
    const auto file = Open(path);
    int32_t size = -1;
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(_GetLineSize(context, file, &size), 0);
        ASSERT_EQ(size, 4);
    }
    wchar_t buffer[8] = L"#######";
    ASSERT_EQ(_GetLine(context, file, buffer, 3), 0);
    EXPECT_EQ(std::wstring(buffer, 4), L"abc#") << "cut without a terminator";
    ASSERT_EQ(_GetLineSize(context, file, &size), 0);
    EXPECT_EQ(size, 2);
    ASSERT_EQ(_GetLine(context, file, buffer, 6), 0);
    EXPECT_EQ(std::wstring(buffer, 7), std::wstring(L"xy\0\0\0\0#", 7)) << "padded up to the size";
    EXPECT_GIVES(_GetLineSize(context, file, &size), -1, size, 0);
    for (const int32_t no_room : {0, -1}) {
        const auto again = Open(path);
        EXPECT_EQ(_GetLine(context, again, buffer, no_room), 0);
        EXPECT_EQ(buffer[0], L'x') << "nothing is written";
        EXPECT_EQ(_GetLine(context, again, buffer, 3), 0);
        EXPECT_STREQ(buffer, L"xy") << "the line has gone";
    }
    EXPECT_EQ(_GetLine(context, file, buffer, 6), -1);
}

TEST_F(Files, WriteAtTheEndWithOneSeekAndOneWrite)
{
    const auto write = [&](const std::wstring& path, int32_t mode, int32_t create) {
        const auto file = Open(path, mode, create);
        const CallCounter<decltype(WriteFile)> writes("WriteFile");
        const CallCounter<decltype(SetFilePointer)> seeks("SetFilePointer");
        EXPECT_EQ(_WriteLine(context, file, L"text"), 0);
        EXPECT_EACH(1, writes.calls(), seeks.calls());
        EXPECT_EACH(0, _WriteLine(context, file, nullptr), _CloseFile(context, file));
        return BytesOf(path);
    };
    const std::wstring path = folder / L"w.txt";
    EXPECT_EQ(write(path, FileReadText, 1), "text\r\n\r\n");
    EXPECT_EQ(write(path, FileAppendText, 0), "text\r\n\r\ntext\r\n\r\n");
    EXPECT_EQ(write(path, FileAppendUnicodeText, 0), "text\r\n\r\ntext\r\n\r\ntext\r\n\r\n") << "narrow stays narrow";
    EXPECT_EQ(write(path, FileAppendUnicodeText, 1), Widened("text\r\n\r\n"));
    EXPECT_EQ(write(path, FileAppendText, 0), Widened("text\r\n\r\ntext\r\n\r\n"));
    EXPECT_EQ(write(path, FileReadText, 1), "text\r\n\r\n") << "replaced";

    folder.Write(L"r.txt", "x");
    const auto file = Open(folder / L"r.txt");
    EXPECT_EQ(_WriteLine(context, file, L"no"), -1) << "opened for reading";
}

TEST_F(Files, NumberTheirHandlesAndCountFailedOpens)
{
    const std::wstring path = folder.Write(L"a", "a");
    EXPECT_EQ(_OpenFile(context, path.c_str(), FileReadText, 0), 2778);
    EXPECT_EQ(_OpenFile(context, (folder / L"absent").c_str(), FileReadText, 0), -1);
    for (const int32_t mode : {0, 6, -1})
        EXPECT_EQ(_OpenFile(context, path.c_str(), mode, 0), -1);
    EXPECT_EQ(_OpenFile(context, path.c_str(), FileReadBytes, 0), 8 * 463) << "bad modes do not count";
    for (const int32_t mode : {FileReadWriteBytes, FileAppendText, FileAppendUnicodeText})
        for (const wchar_t* url : {L"HTTP://x/y", L"https://x", L"ftp://x"})
            EXPECT_EQ(_OpenFile(context, url, mode, 0), -2) << mode;
    EXPECT_EQ(_OpenFile(context, L"http://", FileAppendText, 0), 9 * 463)
        << "a prefix alone may be written, and fails then";
    EXPECT_EQ(_OpenFile(context, nullptr, FileReadText, 0), -1);
}

TEST_F(Files, AnswerWrongModesAndHandlesAsScriptsExpect)
{
    const std::wstring path = folder.Write(L"a", "abc");
    const auto text = Open(path);
    const auto bytes = Open(path, FileReadBytes);
    const auto all = [&](FileHandle file) {
        wchar_t line[8];
        uint8_t buffer[8];
        int32_t size = 0;
        return std::vector<int64_t>{
            _ReadBytes(context, file, buffer, 8, 0, 8),  _WriteBytes(context, file, buffer, 8, 0, 8),
            _SeekBytes(context, file, 0, SeekFromStart), _GetLine(context, file, line, 8),
            _GetLineSize(context, file, &size),          _WriteLine(context, file, L"")};
    };
    const auto of_text = all(text), of_bytes = all(bytes);
    EXPECT_EQ(std::count(of_text.begin(), of_text.begin() + 3, VHRT_WRONG_TYPE), 3);
    EXPECT_EQ(std::count(of_bytes.begin() + 3, of_bytes.end(), VHRT_WRONG_TYPE), 3);
    EXPECT_EQ(_CloseFile(context, text), 0);
    for (const FileHandle unknown : {0, -1, text + 1, text}) {
        EXPECT_EQ(all(unknown), std::vector<int64_t>(6, VHRT_BAD_HANDLE));
        EXPECT_EQ(_CloseFile(context, unknown), VHRT_BAD_HANDLE);
    }
}

TEST_F(Files, ReadAndWriteBytesWithinTheBuffer)
{
    const std::wstring path = folder / L"b.bin";
    const auto file = Open(path, FileReadWriteBytes, 1);
    const char source[] = "0123456789";
    EXPECT_EQ(_WriteBytes(context, file, source, 10, 2, 100), 8);
    EXPECT_EQ(_WriteBytes(context, file, source, 10, 10, 1), -1);
    EXPECT_EQ(_SeekBytes(context, file, 1, SeekFromStart), 0);
    char buffer[8] = "#######";
    EXPECT_GIVES_TEXT(_ReadBytes(context, file, buffer, 7, 3, 2), 2, buffer, "###34##");
    EXPECT_EQ(_SeekBytes(context, file, -1, SeekFromCurrent), 0);
    EXPECT_EQ(_ReadBytes(context, file, buffer, 7, 0, 1), 1);
    EXPECT_EQ(buffer[0], '4');
    EXPECT_EQ(_SeekBytes(context, file, -2, SeekFromEnd), 0);
    EXPECT_EQ(_ReadBytes(context, file, buffer, 7, 0, 7), 2) << "no more is there";
    EXPECT_EACH(0, _ReadBytes(context, file, buffer, 7, 0, 7), _SeekBytes(context, file, 0, SeekFromStart));
    EXPECT_EQ(_ReadBytes(context, file, buffer, 7, 5, 7), 2) << "no more than there is room for";
    for (const int32_t origin : {0, 4, -1})
        EXPECT_EQ(_SeekBytes(context, file, 0, origin), -1);
    EXPECT_EACH(-1, _SeekBytes(context, file, -1, SeekFromStart), _ReadBytes(context, file, buffer, 0, 0, 1));
}

TEST_F(Files, AreClosedWithTheirContext)
{
    const std::wstring path = folder.Write(L"open.txt", "x");
    {
        const BareContext own;
        ASSERT_GT(_OpenFile(own, path.c_str(), FileReadWriteBytes, 0), 0);
        EXPECT_FALSE(DeleteFileW(path.c_str()));
    }
    EXPECT_TRUE(DeleteFileW(path.c_str()));
}

} // namespace
