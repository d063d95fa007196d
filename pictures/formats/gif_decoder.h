// The LZW reader of one image. A string is where it was written first: nothing is kept of it but its place.
#pragma once

#include <array>

#include "gif_code_reader.h"
#include "gif_pixels.h"

class CGifDecoder {
public:
    CGifDecoder(vh::gif_pixels& pixels, bool interlaced);

    // From the minimum code size to the sub-block that holds the end code.
    uint32_t Decode(vh::gif_input& input);

private:
    static constexpr unsigned code_limit = 4096;
    static constexpr unsigned largest_code_size = 12;

    // A run of pixels in the order of the file: it may go on in the next row of that order.
    struct string {
        const uint8_t* start;
        uint32_t length;
        uint16_t room; // pixels from the start to the end of its row
        uint16_t row;
    };

    uint32_t DecodeCodes(vh::gif_code_reader& reader);
    // The code that is taken as the first value behind a clear code, or the end code.
    unsigned FirstCode(vh::gif_code_reader& reader) const;
    // Where the next string will stand. Its length is not known yet.
    string Here() const { return {m_at, 0, static_cast<uint16_t>(m_room), static_cast<uint16_t>(m_row)}; }
    void Enter(string entered);
    void ClearStrings();

    void Put(const string& source, std::size_t length);
    void PutAcrossRows(const string& source, std::size_t length);
    void PutPixel(uint8_t value);
    // The place in the picture of a row in the order of the file.
    uint8_t* RowOf(std::size_t row) const;
    void NextRow();

    vh::gif_pixels& m_pixels;
    bool m_interlaced;
    unsigned m_code_size = 0;
    unsigned m_clear = 0;
    unsigned m_end = 0;
    unsigned m_next = 0;
    unsigned m_maximum = 0;
    unsigned m_minimum_size = 0;
    uint8_t* m_at = nullptr;
    std::size_t m_room = 0; // pixels from here to the end of the row; 0 once the picture is full
    std::size_t m_row = 0;
    std::array<string, code_limit> m_strings;
};
