// A small page in the place of a static control, drawn by the platform's browser.
#pragma once

#include "browser_events.h"
#include "control_host.h"
#include "link_control.h"

class CHtmlControl final : public CLinkControlHolder {
public:
    CHtmlControl(HWND placeholder, int32_t id, CUrlClickHandler& dialog);
    ~CHtmlControl() override;

    // False without a placeholder, and where the platform has no browser to host.
    bool Create() override;
    // A location ("file:" in front, or a drive's colon) or the page's source.
    void SetContent(const stringx& text) override;

private:
    bool MakeHost();
    bool MakeBrowser();
    bool ForbidMenus();
    vh::com_ptr<IWebBrowser2> Browser() const;
    static void WritePage(IWebBrowser2& browser, const stringx& source);
    vh::com_ptr<IUnknown> HostObject() const;

    vh::com_ptr<vh::BrowserEvents> m_events;
    HWND m_host = nullptr;
    vh::com_ptr<vh::IControlHost> m_control;
};
