// The dialogs of one context: which are defined, which is current, and what all of them share.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <optional>

#include "dialog_scene.h"
#include "dialog_skin.h"
#include "main_image.h"
#include "script_dialog.h"

class CDialogManager {
public:
    explicit CDialogManager(const vh::DialogScene& scene);
    CDialogManager(const CDialogManager&) = delete;
    CDialogManager& operator=(const CDialogManager&) = delete;

    // Results of Define and Release.
    enum : int32_t { done = 0, failed = -1, still_open = -2, unknown = -4, name_taken = -5 };

    int32_t Define(const stringx& name, const DialogDefinition& definition);
    int32_t Release(const stringx& name);
    // Null for a name that no dialog has. The holder keeps the dialog alive where its own events end it.
    std::shared_ptr<CScriptDialog> Find(const stringx& name) const;

    // The context ends: all windows go, and with them the dialogs that nobody waits on.
    void AbandonAll();

    // The stack of active dialogs: a name that goes on it disables the dialog that was current, and taking it off
    // enables that again.
    void Push(const stringx& name);
    void Pop();
    // Null when no dialog is current.
    const stringx* CurrentName() const { return m_active.empty() ? nullptr : &m_active.back(); }
    // The window of a dialog by name; the status window under its reserved name. Null when there is none.
    HWND WindowOf(const stringx& name) const;

    void SetFont(const stringx& face, uint16_t size);
    const stringx& font_name() const { return m_fontName; }
    uint16_t font_size() const { return m_fontSize; }

    // The main image text, and the one before it; a new one reaches every dialog.
    void SetMainImage(const stringx& text);
    const stringx& main_image() const { return m_mainImage; }
    stringx previous_image;

    // The object that shows main images; a context without dialogs has none.
    void CreateMainImage() { m_imageWindow = std::make_shared<vh::MainImage>(); }
    void EndMainImage() { m_imageWindow.reset(); }
    std::shared_ptr<vh::MainImage> image_window() const { return m_imageWindow; }

    // The caption that dialogs with a title control take.
    stringx window_title;
    bool branding = true;
    // Whether the system draws the controls of this program with themes.
    bool controls_themed = false;

    vh::DialogSkin skin;

    const vh::DialogScene& scene() const { return m_scene; }

    // The thread's next message. One that came while an event was waiting is kept for the next wait.
    std::optional<MSG> fetched;

private:
    // Enables or disables what stands under a name. A name that was never defined gets an empty entry by that, so
    // that it can't be defined any more.
    void Enable(const stringx& name, bool on);

    std::map<stringx, std::shared_ptr<CScriptDialog>> m_dialogs;
    std::deque<stringx> m_active;
    stringx m_fontName;
    stringx m_mainImage;
    uint16_t m_fontSize = 0;
    std::shared_ptr<vh::MainImage> m_imageWindow;
    vh::DialogScene m_scene;
};
