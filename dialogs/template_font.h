// Dialog templates, classic or extended, in copies: their font record exchanged, and their end made safe.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

namespace vh {

namespace detail {

// Walks the variable part of a template's head; all reads are bounded, a read behind the end makes it fail.
class template_cursor {
public:
    explicit template_cursor(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    bool failed() const { return m_failed; }
    std::size_t position() const { return m_position; }
    void skip(std::size_t count)
    {
        if (count > m_bytes.size() - m_position)
            m_failed = true;
        else
            m_position += count;
    }
    uint16_t word()
    {
        uint16_t value = 0;
        if (m_bytes.size() - m_position < sizeof(value)) {
            m_failed = true;
            return 0;
        }
        std::memcpy(&value, m_bytes.data() + m_position, sizeof(value));
        m_position += sizeof(value);
        return value;
    }
    void text()
    {
        while (word() != 0) {
        }
    }
    // Nothing, a number behind 0xFFFF, or a text.
    void name_or_number()
    {
        const std::size_t start = m_position;
        const uint16_t first = word();
        if (first == 0xFFFF) {
            word();
        } else if (first != 0) {
            m_position = start;
            text();
        }
    }

private:
    std::span<const std::byte> m_bytes;
    std::size_t m_position = 0;
    bool m_failed = false;
};

} // namespace detail

// The template with another face (at most 32 units of it) and point size. Weight, italic and character set of an
// extended template stay; without a font record before, they become those of a plain font. Empty when the bytes are
// no template.
template <class Unit>
std::vector<std::byte> WithFont(std::span<const std::byte> original, std::basic_string_view<Unit> face, uint16_t size)
{
    static_assert(sizeof(Unit) == 2);
    constexpr uint32_t has_font = 64;
    constexpr std::size_t longest_face = 32;
    constexpr uint16_t message_box_font = 0x7FFF;
    constexpr uint16_t plain_weight = 400;
    constexpr uint16_t default_charset = 1 << 8;

    detail::template_cursor cursor(original);
    cursor.word();
    const bool extended = cursor.word() == 0xFFFF;
    const std::size_t style_at = extended ? 12 : 0;
    // Classic: style, extended style, count of items, place. Extended: version, mark, help number before these.
    detail::template_cursor head(original);
    head.skip(style_at);
    uint32_t style = head.word();
    style |= static_cast<uint32_t>(head.word()) << 16;
    // The extended template has its extended style before the style.
    head.skip(extended ? 10 : 14);
    head.name_or_number();
    head.name_or_number();
    head.text();
    if (head.failed())
        return {};

    std::vector<std::byte> made(original.begin(), original.begin() + static_cast<std::ptrdiff_t>(head.position()));
    const auto put = [&made](uint16_t value) {
        const auto* bytes = reinterpret_cast<const std::byte*>(&value);
        made.insert(made.end(), bytes, bytes + sizeof(value));
    };
    uint16_t weight = plain_weight;
    uint16_t italic_and_charset = default_charset;
    // That size stands for the font of message boxes, and nothing else follows it.
    if ((style & has_font) && head.word() != message_box_font) {
        if (extended) {
            weight = head.word();
            italic_and_charset = head.word();
        }
        head.text();
    }
    if (head.failed())
        return {};
    style |= has_font;
    std::memcpy(made.data() + style_at, &style, sizeof(style));
    put(size);
    if (extended) {
        put(weight);
        put(italic_and_charset);
    }
    for (const Unit unit : face.substr(0, longest_face))
        put(static_cast<uint16_t>(unit));
    put(0);
    made.resize((made.size() + 3) / 4 * 4);
    // Items start at multiples of 4.
    const auto items = original.subspan(std::min(original.size(), (head.position() + 3) / 4 * 4));
    made.insert(made.end(), items.begin(), items.end());
    return made;
}

// The window system knows no template's length: it reads as far as counts and texts lead. So many zeros behind it end
// each text and stand for each item that is missing, also behind a block of data that claims to be there.
inline void MakeEndSafe(std::vector<std::byte>& copy)
{
    constexpr std::size_t longest_data = 0x10000;
    constexpr std::size_t empty_item = 32;
    copy.resize(copy.size() + longest_data);
    detail::template_cursor head(copy);
    head.word();
    const bool extended = head.word() == 0xFFFF;
    head.skip(extended ? 12 : 4);
    copy.resize(copy.size() + head.word() * empty_item);
}

} // namespace vh
