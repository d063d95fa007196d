#include "dialog_skin.h"

#include <algorithm>
#include <cstring>

#include "late_dialogs.h"

namespace vh {

namespace {

// The font that texts of a skin have, by language; names in the code page of the language.
struct SkinFont {
    uint16_t language;
    const char* face;
    int32_t size;
};
constexpr SkinFont skin_fonts[] = {{17, "MS UI Gothic", 9},
                                   {18, "\xB1\xBC\xB8\xB2", 9},
                                   {1028, "\xB2\xD3\xA9\xFA\xC5\xE9", 9},
                                   {2052, "\xCB\xCE\xCC\xE5", 9}};
constexpr SkinFont other_font = {0, "MS Sans Serif", 8};

const SkinFont& FontOf(uint16_t language)
{
    const auto found = std::find_if(std::begin(skin_fonts), std::end(skin_fonts),
                                    [language](const SkinFont& font) { return font.language == language; });
    return found == std::end(skin_fonts) ? other_font : *found;
}

template <std::size_t Size>
void Fill(char (&field)[Size], const stringx& text)
{
    std::strncpy(field, text.AsNarrow(), Size - 1);
}

} // namespace

bool DialogSkin::Start(const stringx& file, uint16_t language, const stringx& directory)
{
    m_language = language;
    m_skin = Skin::Shared();
    if (!m_skin->loaded()) {
        m_copy = skin_copy(file);
        if (!m_copy || !m_skin->Load(m_copy.path(), directory))
            return false;
    }
    m_loaded = m_enabled = true;
    return true;
}

void DialogSkin::End()
{
    m_skin.reset();
    m_copy = {};
    m_loaded = m_enabled = false;
}

SkinAttr DialogSkin::Record(HWND window, const stringx& section, const stringx& brand) const
{
    constexpr uint16_t english = 9;
    const SkinFont& font = FontOf(m_language);
    SkinAttr attr;
    attr.window = window;
    Fill(attr.sectionName, section);
    Fill(attr.brandText, brand);
    std::strncpy(attr.fontName, font.face, std::size(attr.fontName) - 1);
    attr.fontSize = font.size;
    attr.version = 2;
    attr.language = m_language == english ? uint16_t{0} : m_language;
    return attr;
}

bool DialogSkin::Fits(HWND dialog)
{
    RECT client{};
    RECT base{0, 0, 4, 8};
    late::get_client_rect(dialog, &client);
    if (!late::map_dialog_rect(dialog, &base) || base.right <= 0 || base.bottom <= 0)
        return false;
    const int width = MulDiv(static_cast<int>(client.right), 4, static_cast<int>(base.right));
    const int height = MulDiv(static_cast<int>(client.bottom), 8, static_cast<int>(base.bottom));
    return width >= 459 && width <= 461 && height >= 304 && height <= 306;
}

} // namespace vh
