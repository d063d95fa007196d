// The status window: the engine owns it and its bar, the library picks its template and says what it is to do.
#pragma once

#include "dialog_manager.h"

namespace vh {

class StatusWindow {
public:
    explicit StatusWindow(CDialogManager& dialogs) : m_dialogs(dialogs), m_scene(dialogs.scene()) {}

    // Opens it with one of the styles 4, 5, 6, 57 and 58; one that is open stays as it is. 0 or the engine's failure.
    int32_t Open(int32_t style);
    int32_t Close();

    // Links the bar to the transfer, or lets the engine tell its position. -1 without a progress service.
    int32_t Link(bool on, int16_t stop_at);
    // -1 on failure.
    int32_t SpendCost(long first, long second);
    int32_t SetTitle(const stringx& text);
    int32_t SetMainImage(const stringx& text);
    int32_t SetOption(long option, short value);
    // Kept, and told to the bar if there is one.
    void SetBarSize(int32_t width, int32_t height);

private:
    HRESULT Create(int32_t style);
    HRESULT OpenTemplate(HWND parent, int32_t style);
    void SkinFor(HWND window, int32_t style) const;
    HRESULT EquipBar();
    long OpenFlags() const;

    CDialogManager& m_dialogs;
    const DialogScene& m_scene;
};

} // namespace vh
