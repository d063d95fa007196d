#include "skin_text.h"

#include <algorithm>
#include <cstdlib>

#include "../pictures/option_text.h"

namespace vh {

namespace {

constexpr uint32_t button_options = anchor_top_left;

// As C reads a number: blanks, a sign, digits; what follows counts for nothing.
int32_t NumberOf(std::string_view text)
{
    const std::string ended(text);
    return static_cast<int32_t>(std::strtol(ended.c_str(), nullptr, 10));
}

// The keys of one section.
class section_reader {
public:
    section_reader(const skin_reader& read, std::string_view section) : m_read(read), m_section(section) {}

    std::string Value(const std::string& key, skin_form form) const { return m_read(m_section, key, form); }
    std::string File(const std::string& key) const { return Value(key, skin_form::file); }
    int32_t Count(const std::string& key) const
    {
        return std::clamp(NumberOf(Value(key, skin_form::count)), 0, most_skin_entries);
    }
    int32_t Number(const std::string& key) const { return NumberOf(Value(key, skin_form::number)); }
    uint32_t Color(const std::string& key, uint32_t base) const
    {
        ReadSkinColor(Value(key, skin_form::color), base);
        return base;
    }
    std::optional<skin_pair> PairIfAny(const std::string& key) const
    {
        skin_pair pair;
        return ReadSkinPair(Value(key, skin_form::pair), pair) ? std::optional(pair) : std::nullopt;
    }
    skin_pair Pair(const std::string& key) const { return PairIfAny(key).value_or(skin_pair{}); }
    std::optional<uint32_t> Options(const std::string& key) const
    {
        const std::string text = Value(key, skin_form::options);
        return text.empty() ? std::optional<uint32_t>() : ReadOptionText(text);
    }

private:
    const skin_reader& m_read;
    std::string_view m_section;
};

skin_button_text DefaultsOf(const section_reader& section, const skin_colors& colors)
{
    skin_button_text made;
    made.up = section.File("BUTTONSUP");
    made.down = section.File("BUTTONSDOWN");
    made.options = button_options | section.Options("BUTTONSOPT").value_or(0);
    made.transparent = section.Color("BUTTONSTRNSPRNTCLR", skin_button_transparent);
    made.text_color = section.Color("BUTTONSTXTCLR", colors.text);
    made.disabled_color = section.Color("BUTTONSDISTXTCLR", colors.disabled_text);
    return made;
}

skin_button_text ButtonOf(const section_reader& section, const std::string& key, const skin_colors& colors,
                          const skin_button_text& defaults)
{
    const auto color = [&](const char* part, uint32_t base, uint32_t otherwise) {
        const std::string value = section.Value(key + part, skin_form::color);
        if (value.empty())
            return otherwise;
        ReadSkinColor(value, base);
        return base;
    };
    const auto file = [&](const char* part, const std::string& otherwise) {
        std::string name = section.File(key + part);
        return name.empty() ? otherwise : name;
    };
    skin_button_text made;
    made.id = section.Number(key);
    made.up = file("UP", defaults.up);
    made.down = file("DOWN", defaults.down);
    made.pos = section.PairIfAny(key + "POS");
    const auto options = section.Options(key + "OPT");
    made.options = options ? button_options | *options : defaults.options;
    made.transparent = color("TRNSPRNTCLR", skin_button_transparent, defaults.transparent);
    made.text_color = color("TXTCLR", colors.text, defaults.text_color);
    made.disabled_color = color("DISTXTCLR", colors.disabled_text, defaults.disabled_color);
    return made;
}

} // namespace

bool ReadSkinColor(std::string_view value, uint32_t& color)
{
    const std::size_t first = value.find(',');
    if (first == std::string_view::npos)
        return false;
    const std::size_t last = value.rfind(',');
    const auto byte = [](std::string_view text) { return static_cast<uint32_t>(NumberOf(text)) & 0xFF; };
    const std::string_view middle = last > first ? value.substr(first + 1, last - first - 1) : value.substr(first + 1);
    color = byte(value.substr(0, first)) | byte(middle) << 8 | byte(value.substr(last + 1)) << 16;
    return true;
}

bool ReadSkinPair(std::string_view value, skin_pair& pair)
{
    const std::size_t comma = value.find(',');
    if (comma == std::string_view::npos)
        return false;
    pair = {NumberOf(value.substr(0, comma)), NumberOf(value.substr(comma + 1))};
    return true;
}

skin_section_kind KindOfSkinSection(std::string_view name)
{
    if (name == "ALL")
        return skin_section_kind::all;
    if (name.starts_with("ALL-"))
        return skin_section_kind::all_of_language;
    // Names that merely begin so are nobody's.
    return name == "SKINS" || name.starts_with("ALL") ? skin_section_kind::header : skin_section_kind::dialog;
}

std::string ParentOfSkinSection(std::string_view name, const std::function<bool(std::string_view)>& exists)
{
    if (name == "ALL")
        return {};
    const std::size_t dash = name.rfind('-');
    if (dash != std::string_view::npos && name.substr(0, dash) != "ALL") {
        std::string of_language = "ALL" + std::string(name.substr(dash));
        if (exists(of_language))
            return of_language;
    }
    return "ALL";
}

skin_section_text ReadSkinSection(const skin_reader& read, std::string_view name, const skin_colors& colors,
                                  const skin_button_text* defaults)
{
    const section_reader section(read, name);
    skin_section_text made;
    made.name = name;
    made.text_color = section.Color("TEXTCOLOR", defaults ? no_skin_color : colors.text);
    for (int32_t i = 1, count = section.Count("RECTS"); i <= count; ++i) {
        const std::string key = "RECT" + std::to_string(i);
        made.rects.push_back({section.Color(key, colors.face), section.Pair(key + "POS"), section.Pair(key + "AREA")});
    }
    for (int32_t i = 1, count = section.Count("IMAGES"); i <= count; ++i) {
        const std::string key = "IMAGE" + std::to_string(i);
        made.images.push_back({section.File(key), section.Pair(key + "POS"), section.Options(key + "OPT").value_or(0),
                               section.Color(key + "TRNSPRNTCLR", skin_image_transparent)});
    }
    if (!defaults)
        made.defaults = DefaultsOf(section, colors);
    for (int32_t i = 1, count = section.Count("BUTTONS"); i <= count; ++i)
        made.buttons.push_back(
            ButtonOf(section, "BUTTON" + std::to_string(i), colors, made.defaults ? *made.defaults : *defaults));
    return made;
}

int32_t ReadSkinVersion(const skin_reader& read)
{
    const std::string version = read("SKINS", "VERSION", skin_form::number);
    return version.empty() ? 1 : NumberOf(version);
}

std::vector<skin_section_text> ReadSkinText(const skin_reader& read, const std::vector<std::string>& names,
                                            const skin_colors& colors)
{
    std::vector<skin_section_text> sections;
    const auto find = [&sections](std::string_view name) {
        return std::find_if(sections.begin(), sections.end(), [&](const auto& one) { return one.name == name; });
    };
    const auto add = [&](std::string_view name, const skin_button_text* defaults) {
        if (find(name) == sections.end())
            sections.push_back(ReadSkinSection(read, name, colors, defaults));
    };
    add("ALL", nullptr);
    for (const std::string& name : names)
        if (KindOfSkinSection(name) == skin_section_kind::all_of_language)
            add(name, nullptr);
    for (const std::string& name : names) {
        if (KindOfSkinSection(name) != skin_section_kind::dialog)
            continue;
        const auto exists = [&](std::string_view other) { return find(other) != sections.end(); };
        const skin_button_text defaults = *find(ParentOfSkinSection(name, exists))->defaults;
        add(name, &defaults);
    }
    return sections;
}

} // namespace vh
