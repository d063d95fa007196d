// The status window of the progress service. What it is told stays, also while it is not open.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "../../Src/inc/engine_progress.h"
#include "../../scriptdata/com_ptr.h"
#include "template_dialog.h"

namespace vh::engine {

class Core;
struct Progress;

class StatusWindow {
public:
    explicit StatusWindow(Core& core) : m_core(core) {}
    StatusWindow(const StatusWindow&) = delete;
    StatusWindow& operator=(const StatusWindow&) = delete;

    // From a dialog template, in the place of one that is open; number 0 opens none. Throws engine_error.
    void Open(HWND parent, std::wstring_view library, long number, long flags);
    void Close();
    HWND handle() const { return m_dialog ? m_dialog->handle() : nullptr; }
    void SetVisible(bool on) const;

    void SetTitle(std::wstring_view title);
    // A picture, a library's number, or "@!" for none.
    void SetMainImage(std::wstring_view text);
    void SetOption(long option, bool on);
    void SetBar(ISetupProgressBar* bar);
    const com_ptr<ISetupProgressBar>& bar() const { return m_bar; }
    const std::wstring& title() const { return m_title; }

    // The bar goes from where it is to `stop_at` percent while the announced bytes come.
    void Begin(int stop_at);
    // Without a link the bar stays where it is.
    void Link(bool on);
    int position() const { return m_position; }
    void Show(const Progress& progress);

private:
    void CloseWindow();
    void AttachBar();
    void ShowTitle() const;
    void ShowMainImage();
    void ShowBranding() const;
    void ShowBar() const;
    void SetText(int control, std::wstring& shown, const std::wstring& text);

    Core& m_core;
    std::shared_ptr<TemplateDialog> m_dialog;
    com_ptr<ISetupProgressBar> m_bar;
    std::wstring m_title;
    std::wstring m_mainImage;
    unique_bitmap m_picture;
    std::map<long, bool> m_options;
    int m_from = 0;
    int m_to = 0;
    int m_position = 0;
    std::wstring m_fileShown;
    std::wstring m_percentShown;
};

} // namespace vh::engine
