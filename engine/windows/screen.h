// What a run has on the screen. Runs that are silent, or whose host wants no windows, have nothing there.
#pragma once

#include <memory>
#include <vector>

#include "main_window.h"
#include "picture_cache.h"
#include "status_window.h"
#include "template_dialog.h"

namespace vh::engine {

class Screen {
public:
    explicit Screen(Core& core) : status(core), m_core(core) {}
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    // Whether this run shows windows.
    bool Shows() const;
    // The host's window, or the engine's own, which is made now; null when there is none.
    HWND Handle();
    // The engine's own window; null when there is none.
    MainWindow* Main();
    // The same without making it.
    MainWindow* MainIfMade() const { return m_main.get(); }

    // A hidden dialog, or null where nothing shows. It goes with the run at the latest.
    std::shared_ptr<TemplateDialog> MakeDialog(HWND parent, std::wstring_view library, long number);

    // Shows how far a transfer has come, and lets the thread's windows work.
    void Show(const Progress& progress);
    // Asks the person at the screen whether the run is to end.
    void AskToCancel();
    // The run is over: all windows go, and none comes any more.
    void Close();

    StatusWindow status;
    PictureCache cache;
    // How pictures come into view.
    long effect = 0;

private:
    void Breathe();

    Core& m_core;
    bool m_closed = false;
    bool m_breathing = false;
    bool m_asking = false;
    std::unique_ptr<MainWindow> m_main;
    std::vector<std::weak_ptr<TemplateDialog>> m_dialogs;
};

} // namespace vh::engine
