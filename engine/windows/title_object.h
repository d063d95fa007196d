// The title on the main window.
#pragma once

#include "../object.h"
#include "main_window.h"

namespace vh::engine {

class TitleObject final : public engine_object<TitleObject, ISetupTitle>, private PaintedThing {
public:
    using engine_object::engine_object;
    ~TitleObject() override;

    // Title kinds other than 10 are refused.
    HRESULT STDMETHODCALLTYPE SetKind(long kind) override;
    HRESULT STDMETHODCALLTYPE SetText(BSTR text) override;
    // The low 24 bits are the text's colour.
    HRESULT STDMETHODCALLTYPE SetStyle(long style) override;
    HRESULT STDMETHODCALLTYPE SetSize(long size) override;
    HRESULT STDMETHODCALLTYPE SetFace(BSTR face) override;
    HRESULT STDMETHODCALLTYPE SetFontStyle(long style) override;
    HRESULT STDMETHODCALLTYPE SetShadow(VARIANT_BOOL on) override;
    HRESULT STDMETHODCALLTYPE Show(long on) override;

private:
    void Paint(HDC to, const RECT& client) const override;
    bool OnTop() const override { return true; }
    // A change is seen at the next showing.
    template <class Value, class Given>
    static HRESULT Take(Value& value, Given given)
    {
        value = std::move(given);
        return S_OK;
    }

    std::wstring m_text;
    std::wstring m_face = L"Times New Roman";
    long m_size = 24;
    long m_fontStyle = 0;
    long m_color = 0xFFFFFF;
    bool m_shadow = false;
};

} // namespace vh::engine
