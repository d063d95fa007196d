// What a trace line may not do: write through a script's conversion, or show a password. Platform-free.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace vh {

// A script's format without the conversions that store a number ("%n"), and with widths and precisions that a line can
// hold.
template <class Unit>
std::basic_string<Unit> HarmlessFormat(std::basic_string_view<Unit> format)
{
    constexpr std::string_view flags_and_sizes = "-+ #.*hlLqjztwIFN";
    constexpr unsigned widest = 16384;
    std::basic_string<Unit> made;
    std::size_t at = 0;
    while (at < format.size()) {
        if (format[at] != Unit('%')) {
            made += format[at++];
            continue;
        }
        if (at + 1 < format.size() && format[at + 1] == Unit('%')) {
            made.append(2, Unit('%'));
            at += 2;
            continue;
        }
        std::basic_string<Unit> conversion(1, format[at++]);
        while (at < format.size()) {
            if (format[at] >= Unit('0') && format[at] <= Unit('9')) {
                unsigned number = 0;
                for (; at < format.size() && format[at] >= Unit('0') && format[at] <= Unit('9'); ++at) {
                    number = std::min(number * 10 + static_cast<unsigned>(format[at] - Unit('0')), widest);
                    if (number == 0)
                        conversion += format[at];
                }
                if (number)
                    for (const char digit : std::to_string(number))
                        conversion += Unit(digit);
            } else if (flags_and_sizes.find(static_cast<char>(format[at])) != flags_and_sizes.npos &&
                       static_cast<char32_t>(format[at]) < 0x80) {
                conversion += format[at++];
            } else {
                break;
            }
        }
        if (at < format.size() && format[at] == Unit('n')) {
            ++at;
            continue;
        }
        // One that another interrupts is shown as it stands, so that nothing behind it can complete it.
        if (at < format.size() && format[at] == Unit('%'))
            made += Unit('%');
        made += conversion;
    }
    return made;
}

// The text with "***" for the password of each address in it. A text that was `cut` may end inside a password.
template <class Unit>
std::basic_string<Unit> WithoutPasswords(std::basic_string_view<Unit> text, bool cut)
{
    constexpr Unit scheme_end[] = {Unit(':'), Unit('/'), Unit('/')};
    // Nothing of an address's user or password; the user may be "domain\user".
    constexpr Unit ends[] = {Unit('/'), Unit('\t'), Unit('\r'), Unit('\n')};
    constexpr Unit mask[] = {Unit('*'), Unit('*'), Unit('*')};
    const std::basic_string_view<Unit> marker(scheme_end, std::size(scheme_end));
    std::basic_string<Unit> made;
    for (std::size_t found; (found = text.find(marker)) != text.npos;) {
        const std::size_t begin = found + marker.size();
        made.append(text.substr(0, begin));
        text.remove_prefix(begin);
        const std::size_t end = text.find_first_of(std::basic_string_view<Unit>(ends, std::size(ends)));
        const auto authority = text.substr(0, end);
        const std::size_t host = cut && end == text.npos ? authority.size() : authority.rfind(Unit('@'));
        const std::size_t colon = authority.find(Unit(':'));
        if (host == text.npos || colon >= host)
            continue;
        made.append(text.substr(0, colon + 1)).append(mask, std::size(mask));
        text.remove_prefix(host);
    }
    return made.append(text);
}

} // namespace vh
