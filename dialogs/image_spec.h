// The text that says which picture stands in a dialog's image control.
#pragma once

#include <array>

#include "../scriptdata/stringx.h"

namespace vh {

struct ImageSpec {
    // A file, or the number of a resource; the second is for displays of many colours.
    stringx normal;
    stringx alternative;
    bool flag1 = false;
    bool flag2 = false;
    std::array<int, 3> color1{};
    std::array<int, 3> color2{};
    int scale = 100;
    bool resource_only = false;

    // A digit in front of the alternative or the normal image.
    bool numeric() const;
};

// "@@image;scale", or "normal,alternative;flag;flag;r,g,b;b,g,r;scale" with or without one "@".
ImageSpec ParseImageSpec(std::wstring_view text);

// The parts of `text` that `separator` divides; an empty text has one empty part.
class TextFields {
public:
    TextFields(std::wstring_view text, wchar_t separator) : m_rest(text), m_separator(separator) {}
    // False when the text before had no further separator.
    bool Next(std::wstring_view& field);

private:
    std::wstring_view m_rest;
    wchar_t m_separator;
    bool m_more = true;
};

// Leading decimal number, as scripts write them: blanks and a sign may go before. False when there is none.
bool ScanNumber(std::wstring_view& text, int& number);
// As many numbers as there are places, "," between them; nothing is stored unless all are there.
template <std::size_t Count>
bool ScanNumbers(std::wstring_view text, std::array<int, Count>& numbers)
{
    std::array<int, Count> found{};
    for (std::size_t i = 0; i < Count; ++i) {
        if (i > 0) {
            if (text.empty() || text.front() != L',')
                return false;
            text.remove_prefix(1);
        }
        if (!ScanNumber(text, found[i]))
            return false;
    }
    numbers = found;
    return true;
}

} // namespace vh
