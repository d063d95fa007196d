// Cutting lines in memory: nothing is read beyond the buffer, whatever it holds.
#include "../../files/text_lines.h"
#include "../support/test.h"

namespace {

// The content in a heap block of exactly its room, so that the sanitizer sees every step beyond.
template <class Unit>
std::vector<std::basic_string<Unit>> Cut(const std::string& bytes)
{
    const size_t room = vh::text_line_end<Unit>::room;
    const std::unique_ptr<char[]> buffer(new char[bytes.size() + room]);
    std::memcpy(buffer.get(), bytes.data(), bytes.size());
    std::memcpy(buffer.get() + bytes.size(), vh::text_line_end<Unit>::units, room);
    std::vector<std::basic_string<Unit>> lines;
    const char* cursor = buffer.get();
    std::basic_string_view<Unit> line;
    while (vh::TakeLine<Unit>(buffer.get(), bytes.size(), cursor, line))
        lines.emplace_back(line);
    return lines;
}

TEST(TextLines, GiveBackAllTextOfWellFormedFiles)
{
    std::mt19937 random(3);
    for (int round = 0; round < 500; ++round) {
        std::string text;
        std::vector<std::string> expected;
        const int count = static_cast<int>(random() % 6) + 1;
        for (int i = 0; i < count; ++i) {
            expected.emplace_back(random() % 4, static_cast<char>('a' + i));
            text += expected.back() + "\r\n";
        }
        // One blank line at the very end does not count.
        if (expected.back().empty())
            expected.pop_back();
        EXPECT_EQ(Cut<char>(text), expected) << testing::PrintToString(text);
    }
}

TEST(TextLines, SurviveAnyBytes)
{
    std::mt19937 random(5);
    for (int round = 0; round < 3000; ++round) {
        std::string bytes(random() % 24, '\0');
        for (char& c : bytes)
            c = "\r\n\0ab\r\n"[random() % 7];
        size_t taken = 0;
        for (const auto& line : Cut<char>(bytes))
            taken += line.size();
        EXPECT_LE(taken, bytes.size());
        for (const auto& line : Cut<char16_t>(bytes))
            EXPECT_LE(line.size() * 2, bytes.size() + 1);
    }
}

} // namespace
