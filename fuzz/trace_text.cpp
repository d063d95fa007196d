// Any script's format and any address: what a trace line is made of stores no number and shows no password.
#include "../diagnostics/trace_text.h"
#include "fuzz.h"

namespace {

// No conversion of a format ends in "n", as the C library reads it.
template <class Unit>
bool StoresNothing(std::basic_string_view<Unit> format)
{
    for (std::size_t at = 0; (at = format.find(Unit('%'), at)) != format.npos;) {
        for (++at; at < format.size() && format[at] > 0 && format[at] < 0x80 &&
                   std::strchr("-+ #.*0123456789hlLqjztwIFN", format[at]);)
            ++at;
        if (at < format.size() && format[at++] == Unit('n'))
            return false;
    }
    return true;
}

template <class Unit>
void Check(std::basic_string_view<Unit> text)
{
    const auto harmless = vh::HarmlessFormat<Unit>(text);
    Require(StoresNothing<Unit>(harmless));
    Require(vh::HarmlessFormat<Unit>(harmless) == harmless);
    for (const bool cut : {false, true}) {
        const auto shown = vh::WithoutPasswords<Unit>(text, cut);
        Require(vh::WithoutPasswords<Unit>(shown, cut) == shown);
        Require(shown.size() <= text.size() * 2 + 3);
    }
}

} // namespace

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    const std::string narrow(data, data + size);
    Check<char>(narrow);
    std::u16string wide(size / sizeof(char16_t), u'\0');
    std::memcpy(wide.data(), data, wide.size() * sizeof(char16_t));
    Check<char16_t>(wide);
    Check<char16_t>(std::u16string(data, data + size));
}
