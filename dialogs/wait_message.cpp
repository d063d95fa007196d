#include "wait_message.h"

#include "../scriptdata/results.h"
#include "parent_window.h"

namespace vh {

namespace {

constexpr long message_dialog = 12012;
constexpr long text_control = 710;

struct ProcessMessage {
    com_ptr<ISetupMessage> object;
    const CDialogManager* maker = nullptr;
};

// Never ended by the process's end: the engine may be gone by then.
ProcessMessage& Message()
{
    static auto& message = *new ProcessMessage;
    return message;
}

} // namespace

int32_t WaitMessage::Show(const stringx& text, bool on, bool quiet)
{
    if (!m_dialogs.scene().window)
        return -1;
    if (!Message().object) {
        if (!on)
            return 0;
        if (const HRESULT code = Make(); FAILED(code))
            return code;
    }
    // A call that lets windows work may come back here and drop it.
    com_ptr<ISetupMessage> message = Message().object;
    HRESULT code = on ? message->SetText(text.AsBstr()) : S_OK;
    if (SUCCEEDED(code) && !quiet)
        code = message->Show(on ? VARIANT_TRUE : VARIANT_FALSE);
    if (!on)
        Message().object.reset();
    return FailureOnly(code);
}

HRESULT WaitMessage::Make() const
{
    const DialogScene& scene = m_dialogs.scene();
    const bstr library = scene.LibraryOf(message_dialog);
    const HWND parent = ParentWindow(m_dialogs);
    com_ptr<ISetupMessage> made;
    const HRESULT code =
        parent ? scene.window->CreateMessageFor(parent, library.get(), message_dialog, text_control, made.put())
               : scene.window->CreateMessage(library.get(), message_dialog, text_control, made.put());
    if (const HRESULT given = Given(code, made); FAILED(given))
        return given;
    Message() = {std::move(made), &m_dialogs};
    return S_OK;
}

void WaitMessage::Forget() const
{
    if (Message().maker == &m_dialogs)
        Message() = {};
}

} // namespace vh
