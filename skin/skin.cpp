#include "skin.h"

#include <cstdio>
#include <mutex>

#include "../pictures/option_text.h"
#include "skin_files.h"
#include "skin_picture.h"

namespace {

std::mutex shared_lock;
std::weak_ptr<Skin> shared_skin;

constexpr std::string_view all_sections = "ALL";

// "A-B" taken apart, where A is not "ALL"; empty parts for another form.
struct DashedName {
    explicit DashedName(std::string_view name)
    {
        const std::size_t dash = name.rfind('-');
        if (dash == std::string_view::npos || name.substr(0, dash) == all_sections)
            return;
        front = name.substr(0, dash);
        back = name.substr(dash);
    }
    std::string_view front;
    // With its dash.
    std::string_view back;
};

vh::skin_colors SystemColors()
{
    return {vh::late::get_system_color(COLOR_BTNFACE), vh::late::get_system_color(COLOR_WINDOWTEXT),
            vh::late::get_system_color(COLOR_GRAYTEXT)};
}

} // namespace

std::shared_ptr<Skin> Skin::Shared()
{
    const std::lock_guard guard(shared_lock);
    std::shared_ptr<Skin> skin = shared_skin.lock();
    if (!skin) {
        skin = std::make_shared<Skin>();
        shared_skin = skin;
    }
    return skin;
}

bool Skin::Load(const stringx& path, const stringx& directory)
try {
    constexpr DWORD controls = 2;
    vh::skin_file file(path);
    if (!file)
        return false;
    vh::DescrambleSkin(file.bytes());
    PictureMap pictures;
    vh::skin_text_file text(directory);
    const bool complete =
        vh::ForEachSkinEntry(file.bytes(), [&](std::string_view name, std::span<const std::byte> bytes) {
            if (vh::IsSkinText(name))
                text.Write(bytes);
            else
                pictures.try_emplace(std::string(name), bytes.begin(), bytes.end());
        });
    if (!complete)
        return false;
    const vh::skin_reader read = text.reader();
    for (const auto& section : vh::ReadSkinText(read, text.sections(), SystemColors()))
        Build(section, pictures);
    m_version = vh::ReadSkinVersion(read);
    m_themes = vh::late::get_theme_properties && (vh::late::get_theme_properties() & controls) != 0;
    m_loaded = true;
    return true;
} catch (const std::exception&) {
    m_sections.clear();
    m_images.clear();
    return false;
}

// Rectangles and pictures are told by their numbers, buttons by their controls.
void Skin::Build(const vh::skin_section_text& text, const PictureMap& pictures)
{
    SkinSection& section = m_sections[text.name];
    section.name = text.name;
    section.textColor = text.text_color;
    int32_t number = 0;
    for (const vh::skin_rect_text& rect : text.rects)
        section.rects[++number] = {rect.color, vh::unique_brush(vh::late::create_solid_brush(rect.color)), rect.pos,
                                   rect.area};
    number = 0;
    for (const vh::skin_image_text& image : text.images)
        section.images[++number] = {image.file, image.pos, image.transparent, image.options,
                                    Picture(pictures, image.file, image.options, image.transparent)};
    const auto add = [&](const vh::skin_button_text& button) {
        section.buttons[button.id] = {button.up,
                                      button.down,
                                      button.pos,
                                      button.transparent,
                                      button.text_color,
                                      button.disabled_color,
                                      button.options,
                                      Picture(pictures, button.up, button.options, button.transparent),
                                      Picture(pictures, button.down, button.options, button.transparent)};
    };
    if (text.defaults)
        add(*text.defaults);
    else
        section.buttons[0] = Exact(vh::ParentOfSkinSection(text.name, [this](std::string_view name) {
                                 return Exact(name) != nullptr;
                             }))->buttons.at(0);
    for (const vh::skin_button_text& button : text.buttons)
        add(button);
}

SkinImage* Skin::Picture(const PictureMap& pictures, const std::string& file, uint32_t options, COLORREF transparent)
{
    char digits[16];
    std::snprintf(digits, sizeof(digits), "%x", options);
    const auto [place, is_new] = m_images.try_emplace(file + digits);
    if (!is_new)
        return place->second.get();
    const auto found = pictures.find(file);
    if (found == pictures.end())
        return nullptr;
    auto made = std::make_unique<SkinImage>();
    made->picture.SetTransparent(transparent);
    if (!vh::LoadSkinPicture(made->picture, file, found->second))
        return nullptr;
    made->picture.SetOptions(options & vh::drawing_options);
    place->second = std::move(made);
    return place->second.get();
}

const SkinSection* Skin::Exact(std::string_view name) const
{
    const auto found = m_sections.find(name);
    return found == m_sections.end() ? nullptr : &found->second;
}

const SkinSection* Skin::Parent(std::string_view name) const
{
    const DashedName parts(name);
    if (!parts.front.empty()) {
        if (const SkinSection* of_language = Exact(std::string(all_sections) + std::string(parts.back)))
            return of_language;
        if (const SkinSection* plain = Exact(parts.front))
            return plain;
    }
    return name == all_sections ? nullptr : Exact(all_sections);
}

const SkinSection* Skin::Find(std::string_view name) const
{
    constexpr long primary_language = 0x3FF;
    if (const SkinSection* exact = Exact(name))
        return exact;
    if (const std::size_t dash = name.rfind('-'); dash != std::string_view::npos) {
        const long language = std::strtol(std::string(name.substr(dash + 1)).c_str(), nullptr, 16);
        char primary[8];
        std::snprintf(primary, sizeof(primary), "-%04x", static_cast<unsigned>(language & primary_language));
        if (const SkinSection* found = Exact(std::string(name.substr(0, dash)) + primary))
            return found;
    }
    return Parent(name);
}

// Each part by itself goes up the line of parents.
SkinParts Skin::PartsOf(const SkinSection& section) const
{
    const auto lacks_buttons = [](const SkinSection& one) {
        return one.buttons.empty() || (one.buttons.size() == 1 && one.buttons.contains(0));
    };
    SkinParts parts{&section.rects, &section.images, &section.buttons, section.textColor};
    bool no_buttons = lacks_buttons(section);
    for (const SkinSection* up = Parent(section.name); up; up = Parent(up->name)) {
        if (parts.rects->empty())
            parts.rects = &up->rects;
        if (parts.images->empty())
            parts.images = &up->images;
        if (no_buttons) {
            parts.buttons = &up->buttons;
            no_buttons = lacks_buttons(*up);
        }
        if (parts.textColor == vh::no_skin_color)
            parts.textColor = up->textColor;
    }
    return parts;
}
