#include "message_object.h"

namespace vh::engine {

HRESULT MessageObject::SetText(BSTR text)
{
    return Call("ISetupMessage.SetText", text)([&] {
        if (!m_dialog || !m_dialog->handle())
            return S_OK;
        SetDlgItemTextW(m_dialog->handle(), static_cast<int>(m_control),
                        core().DisplayText(engine::TextOf(text)).c_str());
        UpdateWindow(m_dialog->handle());
        return S_OK;
    });
}

HRESULT MessageObject::Show(VARIANT_BOOL on)
{
    return Call("ISetupMessage.Show", on)([&] {
        if (m_dialog)
            m_dialog->Show(on != 0);
        return S_OK;
    });
}

} // namespace vh::engine
