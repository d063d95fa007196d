// The text of a skin: sections with keys for colours, rectangles, pictures and buttons. Platform-free.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vh {

inline constexpr uint32_t no_skin_color = 0xFFFFFFFF;
// Colour of a picture that is left out where the text names none.
inline constexpr uint32_t skin_image_transparent = 0xFF00FF;
inline constexpr uint32_t skin_button_transparent = 0x808080;

struct skin_pair {
    int32_t x = 0;
    int32_t y = 0;

    bool operator==(const skin_pair&) const = default;
};

// Places in dialog units; `pos` is the top left and `area` the bottom right corner.
struct skin_rect_text {
    uint32_t color;
    skin_pair pos;
    skin_pair area;

    bool operator==(const skin_rect_text&) const = default;
};

struct skin_image_text {
    std::string file;
    skin_pair pos;
    uint32_t options = 0;
    uint32_t transparent = skin_image_transparent;

    bool operator==(const skin_image_text&) const = default;
};

struct skin_button_text {
    int32_t id = 0;
    std::string up;
    std::string down;
    // Nothing leaves the control where it is.
    std::optional<skin_pair> pos;
    uint32_t options = 0;
    uint32_t transparent = skin_button_transparent;
    uint32_t text_color = 0;
    uint32_t disabled_color = 0;

    bool operator==(const skin_button_text&) const = default;
};

struct skin_section_text {
    std::string name;
    uint32_t text_color = no_skin_color;
    // By number, from 1.
    std::vector<skin_rect_text> rects;
    std::vector<skin_image_text> images;
    std::vector<skin_button_text> buttons;
    // Sections that others fall back on have one of their own.
    std::optional<skin_button_text> defaults;

    bool operator==(const skin_section_text&) const = default;
};

// The system's colours at the time.
struct skin_colors {
    uint32_t face = 0;
    uint32_t text = 0;
    uint32_t disabled_text = 0;
};

// What a key's value has to be.
enum class skin_form { number, count, color, pair, options, file };
// The room for a value, with its NUL; what is longer is cut.
constexpr std::size_t RoomFor(skin_form form) { return form == skin_form::file ? 260 : 1000; }

// How the text is read: the value of a key in a section; empty when there is none.
using skin_reader = std::function<std::string(std::string_view section, std::string_view key, skin_form form)>;

// Value forms. One that has not its form leaves everything as it was: false.
bool ReadSkinColor(std::string_view value, uint32_t& color);
bool ReadSkinPair(std::string_view value, skin_pair& pair);

// "ALL", "ALL-" with something behind it, "SKINS", and the rest.
enum class skin_section_kind { all, all_of_language, header, dialog };
skin_section_kind KindOfSkinSection(std::string_view name);

// "ALL-x" for "A-x" where `exists` says that there is one, else "ALL"; empty for "ALL" itself.
std::string ParentOfSkinSection(std::string_view name, const std::function<bool(std::string_view)>& exists);

// `defaults` are those of the parent; null means that the section has its own. Lists are cut at most_skin_entries.
inline constexpr int32_t most_skin_entries = 1000;
skin_section_text ReadSkinSection(const skin_reader& read, std::string_view name, const skin_colors& colors,
                                  const skin_button_text* defaults);

// What the section "SKINS" tells; 1 when it tells nothing.
int32_t ReadSkinVersion(const skin_reader& read);

// All sections in the order of reading: "ALL", those of languages, then the dialogs'.
std::vector<skin_section_text> ReadSkinText(const skin_reader& read, const std::vector<std::string>& names,
                                            const skin_colors& colors);

} // namespace vh
