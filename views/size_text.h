// Sizes as the views show them, in units of 1024 or 1048576 bytes. Platform-free.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace vh {

// What all views of the process share.
struct size_format {
    bool kilobytes = true;
    bool decimals = false;
};

// The digits of a size: whole and rounded, or with one decimal place. What is there shows as 1 or 0.1 at least.
class size_text {
public:
    size_text(uint64_t bytes, size_format format)
    {
        const uint64_t divisor = format.kilobytes ? 1024 : 1048576;
        uint64_t whole = bytes / divisor;
        const uint64_t rest = bytes % divisor;
        if (!format.decimals) {
            whole += rest * 2 >= divisor;
            Put(bytes && whole == 0 ? 1 : whole);
            return;
        }
        // To the nearest tenth, and to an even one from the middle.
        uint64_t tenths = rest * 10 / divisor;
        const uint64_t twice = rest * 10 % divisor * 2;
        tenths += twice > divisor || (twice == divisor && tenths % 2);
        if (bytes && whole == 0 && tenths == 0)
            tenths = 1;
        Put(whole + tenths / 10);
        m_text[m_length++] = L'.';
        Put(tenths % 10);
    }

    std::wstring_view view() const { return {m_text.data(), m_length}; }

private:
    void Put(uint64_t number)
    {
        std::array<char, 20> digits;
        const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        for (const char* digit = digits.data(); digit != end; ++digit)
            m_text[m_length++] = static_cast<wchar_t>(*digit);
    }

    // The longest: 2 to the power of 64 by 1024, with its decimal place.
    std::array<wchar_t, 20> m_text;
    std::size_t m_length = 0;
};

} // namespace vh
