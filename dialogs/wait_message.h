// The wait message: one for the whole process, whoever shows it. It goes with the context that made it.
#pragma once

#include "dialog_manager.h"

namespace vh {

class WaitMessage {
public:
    explicit WaitMessage(const CDialogManager& dialogs) : m_dialogs(dialogs) {}

    // Shows it with the text, or takes it away. `quiet` leaves it hidden. 0, -1 without a main window, or the engine's
    // failure.
    int32_t Show(const stringx& text, bool on, bool quiet);
    // The context ends.
    void Forget() const;

private:
    HRESULT Make() const;

    const CDialogManager& m_dialogs;
};

} // namespace vh
