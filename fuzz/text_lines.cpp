// Cuts arbitrary bytes into lines of both unit sizes.
#include "../files/text_lines.h"
#include "fuzz.h"

namespace {

template <class Unit>
void Cut(const std::uint8_t* data, std::size_t size)
{
    const std::size_t room = vh::text_line_end<Unit>::room;
    const std::unique_ptr<char[]> buffer(new char[size + room]);
    if (size)
        std::memcpy(buffer.get(), data, size);
    std::memcpy(buffer.get() + size, vh::text_line_end<Unit>::units, room);
    const char* cursor = buffer.get();
    std::basic_string_view<Unit> line;
    for (const char* before = cursor; vh::TakeLine<Unit>(buffer.get(), size, cursor, line); before = cursor)
        Require(cursor > before);
}

} // namespace

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    Cut<char>(data, size);
    Cut<char16_t>(data, size);
}
