// Character traits that compare without regard to case, as the run-time's _wcsnicmp does: A to Z only
// until the process changes its locale, then by that locale.
#pragma once

#include <cwchar>
#include <cwctype>
#include <string>

namespace vh {

struct char_traitsi : std::char_traits<wchar_t> {
    static bool eq(wchar_t a, wchar_t b) { return std::towlower(a) == std::towlower(b); }
    static bool lt(wchar_t a, wchar_t b) { return std::towlower(a) < std::towlower(b); }
    static int compare(const wchar_t* a, const wchar_t* b, std::size_t count) { return _wcsnicmp(a, b, count); }
    static const wchar_t* find(const wchar_t* text, std::size_t count, const wchar_t& wanted)
    {
        for (; count; --count, ++text)
            if (eq(*text, wanted))
                return text;
        return nullptr;
    }
};

} // namespace vh
