// The title that is painted on the main window, and its caption.
#pragma once

#include "status_window.h"
#include "window_facts.h"

namespace vh {

class TitleText {
public:
    TitleText(CDialogManager& dialogs, WindowFacts& facts) : m_dialogs(dialogs), m_facts(facts) {}

    // 0 without a main window; else 0 or the first failure.
    int32_t Set(const stringx& text, int32_t size, int32_t style);
    // The face of the painted title; a style without a known bit leaves the one that is kept.
    int32_t SetFont(int32_t style, const stringx& face);

private:
    HRESULT SetCaption(const stringx& text);
    HRESULT Paint(const stringx& text, int32_t size, int32_t style);
    HRESULT Make();

    CDialogManager& m_dialogs;
    WindowFacts& m_facts;
};

} // namespace vh
