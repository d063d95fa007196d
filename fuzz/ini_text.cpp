// Reads arbitrary bytes as INI text of both unit sizes, with separators of several lengths.
#include "../files/ini_text.h"
#include "fuzz.h"

namespace {

template <class Unit>
void Walk(const std::basic_string<Unit>& text, std::basic_string_view<Unit> separator)
{
    const std::vector<Unit> exact(text.begin(), text.end());
    vh::ini_reader<Unit> reader({exact.data(), exact.size()}, separator);
    std::size_t taken = 0;
    for (auto line = reader.next(); line != vh::ini_line::end && line != vh::ini_line::broken; line = reader.next())
        taken += reader.name().size() + reader.value().size();
    Require(taken <= text.size());
}

} // namespace

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    const std::string narrow(data, data + size);
    for (const std::string_view separator : {"=", "", "::"})
        Walk<char>(narrow, separator);
    for (const bool big_endian : {false, true})
        Walk<char16_t>(vh::UnitsOfUtf16<char16_t>(std::as_bytes(std::span(data, size)), big_endian), u"=");
}
