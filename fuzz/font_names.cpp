// Looks for names in arbitrary bytes; no read may go past them.
#include "../files/font_names.h"
#include "fuzz.h"

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    const auto read = [&](std::uint64_t offset, std::span<std::byte> bytes) {
        if (offset > size || bytes.size() > size - offset)
            return false;
        if (!bytes.empty())
            std::memcpy(bytes.data(), data + offset, bytes.size());
        return true;
    };
    for (const std::int32_t name : {0, 1, 4}) {
        std::u16string text;
        std::int32_t length = -1;
        const auto status = vh::ReadFontName(read, name, 0x409, 100, text, length);
        Require(status != vh::font_name_status::found || (length <= 100 && text.size() == std::size_t(length) / 2));
        Require(status != vh::font_name_status::too_long || length > 100);
    }
}
