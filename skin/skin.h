// A skin as it is painted from: sections with their rectangles, pictures and buttons.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "../pictures/setup_image.h"
#include "../scriptdata/stringx.h"
#include "skin_text.h"

// A picture of the skin, shared by all that name it with the same options.
struct SkinImage {
    SetupImage picture;
};

struct SkinRect {
    COLORREF color = 0;
    vh::unique_brush brush;
    vh::skin_pair position;
    vh::skin_pair area;
};

struct SkinImageRef {
    std::string name;
    vh::skin_pair position;
    COLORREF transparent = 0;
    uint32_t options = 0;
    // Null for a picture that the skin does not have, or that nobody can read.
    SkinImage* image = nullptr;
};

struct SkinButton {
    std::string up;
    std::string down;
    std::optional<vh::skin_pair> position;
    COLORREF transparent = 0;
    COLORREF textColor = 0;
    COLORREF disabledTextColor = 0;
    uint32_t options = 0;
    SkinImage* upImage = nullptr;
    SkinImage* downImage = nullptr;
};

struct SkinSection {
    std::string name;
    std::map<int32_t, SkinRect> rects;
    std::map<int32_t, SkinImageRef> images;
    // By control; the button of all others stands under 0.
    std::map<int32_t, SkinButton> buttons;
    COLORREF textColor = vh::no_skin_color;
};

// What paints one dialog, each part from the section itself or from the next that has it.
struct SkinParts {
    const std::map<int32_t, SkinRect>* rects;
    const std::map<int32_t, SkinImageRef>* images;
    const std::map<int32_t, SkinButton>* buttons;
    COLORREF textColor;
};

class Skin {
public:
    // From a container; `directory` takes the text for the time of reading. False leaves the skin empty.
    bool Load(const stringx& path, const stringx& directory);
    bool loaded() const { return m_loaded; }
    // The system draws controls with themes.
    bool themes_in_use() const { return m_themes; }

    // By the exact name, the language's primary one, or the parents; null without a section.
    const SkinSection* Find(std::string_view name) const;
    SkinParts PartsOf(const SkinSection& section) const;
    const std::map<std::string, SkinSection, std::less<>>& sections() const { return m_sections; }
    int32_t version() const { return m_version; }

    // That of all contexts of the process, made when nobody holds one.
    static std::shared_ptr<Skin> Shared();

private:
    using PictureMap = std::map<std::string, std::vector<std::byte>, std::less<>>;

    void Build(const vh::skin_section_text& text, const PictureMap& pictures);
    SkinImage* Picture(const PictureMap& pictures, const std::string& file, uint32_t options, COLORREF transparent);
    const SkinSection* Exact(std::string_view name) const;
    const SkinSection* Parent(std::string_view name) const;

    int32_t m_version = 1;
    std::map<std::string, SkinSection, std::less<>> m_sections;
    std::map<std::string, std::unique_ptr<SkinImage>> m_images;
    bool m_themes = false;
    bool m_loaded = false;
};
