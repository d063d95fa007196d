// The wait message; it has no window in a run that shows nothing.
#pragma once

#include "../object.h"
#include "template_dialog.h"

namespace vh::engine {

class MessageObject final : public engine_object<MessageObject, ISetupMessage> {
public:
    MessageObject(std::shared_ptr<Core> core, std::shared_ptr<TemplateDialog> dialog, long control)
        : engine_object(std::move(core)), m_dialog(std::move(dialog)), m_control(control)
    {
    }

    HRESULT STDMETHODCALLTYPE SetText(BSTR text) override;
    HRESULT STDMETHODCALLTYPE Show(VARIANT_BOOL on) override;

private:
    std::shared_ptr<TemplateDialog> m_dialog;
    long m_control;
};

} // namespace vh::engine
