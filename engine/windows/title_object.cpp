#include "title_object.h"

#include <algorithm>

#include "gdi.h"
#include "screen.h"

namespace vh::engine {

namespace {

constexpr long main_title = 10;
constexpr long bold = 0x40;
constexpr long italic = 0x1000;
constexpr long underlined = 0x2000;

} // namespace

TitleObject::~TitleObject()
{
    if (MainWindow* main = core().screen->MainIfMade())
        main->Remove(*this);
}

HRESULT TitleObject::SetKind(long kind)
{
    return Call("ISetupTitle.SetKind", kind)([&] { return kind == main_title ? S_OK : E_INVALIDARG; });
}

HRESULT TitleObject::SetText(BSTR text)
{
    return Call("ISetupTitle.SetText", text)([&] { return Take(m_text, core().DisplayText(engine::TextOf(text))); });
}

HRESULT TitleObject::SetStyle(long style)
{
    return Call("ISetupTitle.SetStyle", style)([&] { return Take(m_color, style & 0xFFFFFF); });
}

HRESULT TitleObject::SetSize(long size)
{
    return Call("ISetupTitle.SetSize", size)([&] { return Take(m_size, std::clamp(size, 1L, 400L)); });
}

HRESULT TitleObject::SetFace(BSTR face)
{
    return Call("ISetupTitle.SetFace", face)([&] { return Take(m_face, engine::TextOf(face)); });
}

HRESULT TitleObject::SetFontStyle(long style)
{
    return Call("ISetupTitle.SetFontStyle", style)([&] { return Take(m_fontStyle, style); });
}

HRESULT TitleObject::SetShadow(VARIANT_BOOL on)
{
    return Call("ISetupTitle.SetShadow", on)([&] { return Take(m_shadow, on != 0); });
}

HRESULT TitleObject::Show(long on)
{
    return Call("ISetupTitle.Show", on)([&] {
        MainWindow* main = core().screen->Main();
        if (main && on)
            main->Add(*this);
        else if (main)
            main->Remove(*this);
        return S_OK;
    });
}

void TitleObject::Paint(HDC to, const RECT& client) const
{
    LOGFONTW wanted{};
    wanted.lfHeight = -MulDiv(static_cast<int>(m_size), GetDeviceCaps(to, LOGPIXELSY), 72);
    wanted.lfWeight = m_fontStyle & bold ? FW_BOLD : FW_NORMAL;
    wanted.lfItalic = m_fontStyle & italic ? 1 : 0;
    wanted.lfUnderline = m_fontStyle & underlined ? 1 : 0;
    wanted.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(wanted.lfFaceName, m_face.c_str(), LF_FACESIZE);
    const unique_font font(CreateFontIndirectW(&wanted));
    const Selected selected(to, font.get());
    SetBkMode(to, TRANSPARENT);
    const int margin = std::max<int>(8, static_cast<int>(client.right / 50));
    const auto draw = [&](int shift, COLORREF color) {
        RECT place{margin + shift, margin + shift, client.right, client.bottom};
        SetTextColor(to, color);
        DrawTextW(to, m_text.c_str(), static_cast<int>(m_text.size()), &place,
                  DT_LEFT | DT_TOP | DT_NOPREFIX | DT_WORDBREAK);
    };
    if (m_shadow)
        draw(std::max(1, static_cast<int>(-wanted.lfHeight) / 16), RGB(0, 0, 0));
    draw(0, static_cast<COLORREF>(m_color));
}

} // namespace vh::engine
