// Exchanges the font of arbitrary bytes as a dialog template; what comes out is a template again.
#include "../dialogs/template_font.h"
#include "fuzz.h"

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    const std::vector<std::byte> exact(reinterpret_cast<const std::byte*>(data),
                                       reinterpret_cast<const std::byte*>(data) + size);
    const std::u16string_view face(u"A face that has more than thirty-two units");
    const std::vector<std::byte> once = vh::WithFont(std::span(exact), face, std::uint16_t{9});
    // The same font again changes nothing.
    Require(once.empty() || vh::WithFont(std::span(once), face, std::uint16_t{9}) == once);
}
