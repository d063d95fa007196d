#include "title_text.h"

#include "../scriptdata/results.h"

namespace vh {

namespace {

// In place of a title's style: the text is the window's caption.
constexpr auto caption_style = static_cast<int32_t>(0xFF000100);
// Bold, italic, underlined, shadow; and the bit of a plain face, which has a say but is not kept.
constexpr int32_t kept_styles = 0x7040;
constexpr int32_t plain_style = 0x8;
constexpr int32_t shadow_style = 0x4000;
constexpr long title_kind = 10;

} // namespace

int32_t TitleText::Set(const stringx& text, int32_t size, int32_t style)
{
    if (!m_dialogs.scene().window)
        return 0;
    return FailureOnly(style == caption_style ? SetCaption(text) : Paint(text, size, style));
}

HRESULT TitleText::SetCaption(const stringx& text)
{
    if (const HRESULT code = m_dialogs.scene().window->SetCaption(text.AsBstr()); FAILED(code))
        return code;
    m_dialogs.window_title = text;
    return StatusWindow(m_dialogs).SetTitle(text);
}

HRESULT TitleText::Paint(const stringx& text, int32_t size, int32_t style)
{
    if (const HRESULT code = Make(); FAILED(code))
        return code;
    // The object may be replaced while one of its calls runs.
    const com_ptr<ISetupTitle> title = m_facts.title;
    HRESULT code = title->SetKind(title_kind);
    if (SUCCEEDED(code))
        code = title->SetText(text.AsBstr());
    if (SUCCEEDED(code))
        code = title->SetStyle(style);
    if (SUCCEEDED(code))
        code = title->SetSize(size);
    if (SUCCEEDED(code))
        code = title->SetFace(m_facts.face.AsBstr());
    if (SUCCEEDED(code))
        code = title->SetFontStyle(m_facts.font_style);
    if (SUCCEEDED(code))
        code = title->SetShadow(m_facts.font_style & shadow_style ? VARIANT_TRUE : VARIANT_FALSE);
    return SUCCEEDED(code) ? title->Show(1) : code;
}

int32_t TitleText::SetFont(int32_t style, const stringx& face)
{
    if (!m_dialogs.scene().window)
        return -1;
    if (const HRESULT code = Make(); FAILED(code))
        return code;
    const com_ptr<ISetupTitle> title = m_facts.title;
    if (const HRESULT code = title->SetFace(face.AsBstr()); FAILED(code))
        return code;
    m_facts.face = face;
    if (style & (kept_styles | plain_style))
        m_facts.font_style = style & kept_styles;
    if (const HRESULT code = title->SetShadow(VARIANT_FALSE); FAILED(code))
        return code;
    return FailureOnly(title->SetFontStyle(m_facts.font_style));
}

HRESULT TitleText::Make()
{
    if (m_facts.title)
        return S_OK;
    const HRESULT code = m_dialogs.scene().window->CreateTitle(m_facts.title.put());
    return Given(code, m_facts.title);
}

} // namespace vh
