// A link in the place of a static control. Its clicks reach the dialog as notifications.
#pragma once

#include "link_control.h"

class CHyperlinkControl final : public CLinkControlHolder {
public:
    using CLinkControlHolder::CLinkControlHolder;
    ~CHyperlinkControl() override;

    // True even when the window could not be made.
    bool Create() override;
    // Text in the system's link markup.
    void SetContent(const stringx& text) override;

private:
    HWND m_link = nullptr;
};
