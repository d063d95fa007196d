// One dialog of a script: defined once, then created, shown and ended as often as the script likes.
#pragma once

#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <optional>

#include "../scriptdata/unique_gdi.h"
#include "../skin/skin_attr.h"
#include "dialog_event.h"
#include "image_buttons.h"
#include "link_control.h"

class CDialogManager;

// Where a dialog comes from and how it tells its events.
struct DialogDefinition {
    HMODULE module = nullptr;
    // May be empty: the context's libraries are searched then.
    stringx library;
    // The name goes before the number where it is not empty.
    int32_t resource = 0;
    stringx resourceName;
    HWND parent = nullptr;
    int32_t style = 0;
};

class CScriptDialog final : public CUrlClickHandler {
public:
    CScriptDialog(CDialogManager& manager, const stringx& name, const DialogDefinition& definition);
    CScriptDialog(const CScriptDialog&) = delete;
    CScriptDialog& operator=(const CScriptDialog&) = delete;
    ~CScriptDialog();

    // Results of Wait beside the numbers of controls.
    enum : int32_t { created = -100, closed = -200, silent = 1, help_key = 8, loop_ended = 0, wait_failed = -1 };

    // Creates the dialog; shows it and waits for its next event.
    int32_t Wait();
    // Back to defined: the window goes, the last event stays readable.
    void End();
    // The manager goes: the window too, and a wait that runs ends without another look at it.
    void Abandon();
    void OnUrlClicked(HWND control) override;

    bool is_created() const { return m_created; }
    HWND window() const { return m_window; }
    const DialogEvent& event() const { return m_event; }
    // Whether the current event passes the delivery filter.
    bool Delivers() const;

    void SetFont(const stringx& face, uint16_t size);
    void SetMainImage(const stringx& text) { m_mainImage = text; }

    // Turns a control into a link, or sets the link's text. 0 also for a control that can't be one; -1 for a text
    // without a mark.
    int32_t SetHtmlContent(HWND control, int32_t id, std::wstring_view text);
    // Null when the control has no link.
    const CLinkControlHolder* FindLink(int32_t id) const;

private:
    friend struct DialogProcedure;

    int32_t Open();
    bool Create();
    bool CreateFrom(HMODULE module);
    void DropWindow();
    void PrepareToShow();
    void Show();
    int32_t AnswerSilently() const;
    void TellOfFailures();
    // The events that wait; true with the result when one of them ends the wait.
    bool TakeEvent(int32_t& result);
    void Handle(MSG& message);
    void Reactivate();
    void RaiseWhatIsRaised();
    HWND Control(int id) const;

    CDialogManager& m_manager;
    stringx m_name;
    stringx m_fontName;
    stringx m_mainImage;
    bool m_imageButtonsPending = false;
    bool m_created = false;
    bool m_branding;
    bool m_topImage = true;
    uint16_t m_fontSize;
    int m_failedCreations = 0;
    stringx m_brandText = L"Varnholt";
    bool m_shown = false;
    bool m_neverDeactivated = true;
    bool m_activatedOnce = false;
    DialogDefinition m_definition;
    Delivery m_delivery;
    HWND m_window = nullptr;
    // What the window draws with; it goes with the window.
    struct DrawingObjects {
        vh::unique_font title_font;
        vh::unique_brush window_brush;
        vh::ButtonPictures pictures;
        vh::unique_icon disk_picture;
    } m_drawing;
    // While the window is not shown yet.
    std::optional<SkinAttr> m_skinAttr;
    std::map<int32_t, std::unique_ptr<CLinkControlHolder>> m_links;
    DialogEvent m_event;
    std::deque<DialogEvent> m_queue;
    // Counts the ends, so that a wait notices one that came from its own events.
    unsigned m_ends = 0;
    bool m_abandoned = false;
    // What a message of the window raised, until the call that ran into it raises it again.
    std::exception_ptr m_raised;
};
