#include "gif_decoder.h"

#include <algorithm>

using namespace vh;

namespace {

constexpr unsigned smallest_minimum = 2;
constexpr unsigned largest_minimum = 9;

// Suffixes are bytes, also where codes of nine bits stand for single pixels.
constexpr auto single_pixels = [] {
    std::array<uint8_t, (1u << largest_minimum) + gif_pixels::slack> values{};
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<uint8_t>(i);
    return values;
}();

struct pass {
    std::size_t start;
    std::size_t step;
};
constexpr pass passes[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};

} // namespace

CGifDecoder::CGifDecoder(gif_pixels& pixels, bool interlaced) : m_pixels(pixels), m_interlaced(interlaced)
{
    if (m_pixels.size() == 0)
        return;
    m_at = RowOf(0);
    m_room = m_pixels.width();
}

uint8_t* CGifDecoder::RowOf(std::size_t row) const
{
    if (!m_interlaced)
        return m_pixels.Row(row);
    for (const pass& one : passes) {
        const std::size_t rows = m_pixels.height() > one.start ? (m_pixels.height() - one.start - 1) / one.step + 1 : 0;
        if (row < rows)
            return m_pixels.Row(one.start + row * one.step);
        row -= rows;
    }
    return m_pixels.Row(0);
}

void CGifDecoder::NextRow()
{
    if (++m_row < m_pixels.height()) {
        m_at = RowOf(m_row);
        m_room = m_pixels.width();
    }
}

uint32_t CGifDecoder::Decode(gif_input& input)
{
    uint8_t minimum = 0;
    if (!input.Byte(minimum) || minimum < smallest_minimum || minimum > largest_minimum)
        return gif_data_error;
    m_minimum_size = minimum;
    m_clear = 1u << minimum;
    m_end = m_clear + 1;
    for (unsigned value = 0; value < m_clear; ++value)
        m_strings[value] = {&single_pixels[value], 1, 1, 0};
    ClearStrings();
    gif_code_reader reader(input);
    return DecodeCodes(reader);
}

void CGifDecoder::ClearStrings()
{
    m_code_size = m_minimum_size + 1;
    m_maximum = 1u << m_code_size;
    m_next = m_end + 1;
}

unsigned CGifDecoder::FirstCode(gif_code_reader& reader) const
{
    unsigned code = m_clear;
    while (code == m_clear)
        code = reader.Next(m_code_size);
    return code != gif_code_reader::end_of_data && code >= m_next ? 0 : code;
}

void CGifDecoder::Enter(string entered)
{
    m_strings[m_next++] = entered;
    if (m_next == m_maximum && m_code_size < largest_code_size) {
        m_maximum *= 2;
        ++m_code_size;
    }
}

// A first code without a clear code before it enters no string either.
uint32_t CGifDecoder::DecodeCodes(gif_code_reader& reader)
{
    bool has_last = false;
    string last{};
    for (;;) {
        unsigned code = reader.Next(m_code_size);
        if (code == m_clear) {
            ClearStrings();
            code = FirstCode(reader);
            has_last = false;
        }
        if (code == m_end) {
            // What the last piece wrote too much.
            std::fill_n(m_at, std::min(m_room, gif_pixels::slack), uint8_t{0});
            return gif_done;
        }
        // Behind the newest string there are none; the end of the data is no code.
        if (code > m_next || (code == m_next && !has_last))
            return gif_data_error;
        const string here = Here();
        if (code < m_next) {
            const string& source = m_strings[code];
            const std::size_t length = source.length;
            // The string before, and one pixel of this one: they stand side by side.
            if (has_last && m_next < m_maximum)
                Enter({last.start, last.length + 1, last.room, last.row});
            Put(source, length);
            last = here;
            last.length = static_cast<uint32_t>(length);
        } else {
            // The string before, and its first pixel again.
            const string before = last;
            Enter({last.start, last.length + 1, last.room, last.row});
            Put(before, before.length);
            if (m_room)
                PutPixel(*before.start);
            last = here;
            last.length = before.length + 1;
        }
        has_last = true;
    }
}

// Pixels beyond the picture are counted in the strings, and written nowhere.
void CGifDecoder::Put(const string& source, std::size_t length)
{
    constexpr std::size_t piece = gif_pixels::slack;
    if (length > source.room || length + piece > m_room) {
        PutAcrossRows(source, length);
        return;
    }
    // Whole pieces: what they write too much is in this row, and is overwritten.
    const uint8_t* from = source.start;
    uint8_t* to = m_at;
    for (std::size_t done = 0; done < length; done += piece, from += piece, to += piece) {
        uint8_t bytes[piece];
        std::memcpy(bytes, from, piece);
        std::memcpy(to, bytes, piece);
    }
    m_at += length;
    m_room -= length;
}

void CGifDecoder::PutAcrossRows(const string& source, std::size_t length)
{
    const uint8_t* from = source.start;
    std::size_t from_room = source.room;
    std::size_t from_row = source.row;
    while (length && m_room) {
        const std::size_t count = std::min({length, from_room, m_room});
        std::memmove(m_at, from, count);
        m_at += count;
        m_room -= count;
        from += count;
        from_room -= count;
        length -= count;
        if (m_room == 0)
            NextRow();
        if (length && from_room == 0) {
            from = RowOf(++from_row);
            from_room = m_pixels.width();
        }
    }
}

void CGifDecoder::PutPixel(uint8_t value)
{
    if (m_room == 0)
        return;
    *m_at++ = value;
    if (--m_room == 0)
        NextRow();
}
