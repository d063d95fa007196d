// A control of a dialog that turned into a link or a small page; its dialog owns it.
#pragma once

#include <memory>

#include "../scriptdata/stringx.h"

class CUrlClickHandler {
public:
    virtual void OnUrlClicked(HWND control) = 0;

protected:
    ~CUrlClickHandler() = default;
};

class CLinkControlHolder {
public:
    CLinkControlHolder(HWND placeholder, int32_t id, CUrlClickHandler& dialog)
        : m_window(placeholder), m_id(id), m_dialog(&dialog)
    {
    }
    CLinkControlHolder(const CLinkControlHolder&) = delete;
    CLinkControlHolder& operator=(const CLinkControlHolder&) = delete;

    // Takes the placeholder's place; false when that failed.
    virtual bool Create() = 0;
    virtual void SetContent(const stringx& text) = 0;
    virtual ~CLinkControlHolder() = default;

    const stringxi& url() const { return m_url; }
    void SetUrl(std::wstring_view url) { m_url = stringxi(url); }

protected:
    HWND window() const { return m_window; }
    int32_t id() const { return m_id; }
    CUrlClickHandler& dialog() const { return *m_dialog; }

private:
    HWND m_window;
    int32_t m_id;
    CUrlClickHandler* m_dialog;
    stringxi m_url;
};

namespace vh {

// The kind that a text's mark asks for, and the text behind the mark.
enum class LinkKind { none, page, link };
LinkKind TakeLinkMark(std::wstring_view& text);

std::unique_ptr<CLinkControlHolder> MakeLinkControl(LinkKind kind, HWND placeholder, int32_t id,
                                                    CUrlClickHandler& dialog);

} // namespace vh
