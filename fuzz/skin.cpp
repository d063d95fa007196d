// Containers of skins, and the text in them, from any bytes.
#include "../skin/skin_container.h"
#include "../skin/skin_profile.h"
#include "fuzz.h"

void Fuzz(const uint8_t* data, std::size_t size)
{
    // As a file would be, and as one that is not scrambled, so that inputs can be read.
    std::vector<std::byte> bytes(reinterpret_cast<const std::byte*>(data),
                                 reinterpret_cast<const std::byte*>(data) + size);
    std::vector<std::byte> back = bytes;
    vh::ScrambleSkin(back);
    vh::DescrambleSkin(back);
    Require(back == bytes);
    std::size_t room = bytes.size();
    std::string text;
    vh::ForEachSkinEntry(bytes, [&](std::string_view name, std::span<const std::byte> content) {
        Require(name.size() + content.size() <= room);
        room -= name.size() + content.size();
        if (vh::IsSkinText(name))
            text.assign(reinterpret_cast<const char*>(content.data()), content.size());
    });
    const vh::skin_profile profile(text);
    if (profile.sections().size() > 100)
        return;
    const auto sections = vh::ReadSkinText(profile.reader(), profile.names(), {});
    Require(!sections.empty() && sections.front().name == "ALL" && sections.front().defaults);
    for (const auto& section : sections)
        Require(section.rects.size() <= vh::most_skin_entries && section.buttons.size() <= vh::most_skin_entries);
}
