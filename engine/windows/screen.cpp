#include "screen.h"

#include "../core.h"

namespace vh::engine {

bool Screen::Shows() const
{
    const Options& options = m_core.options;
    return !m_closed && !options.silent && (options.window || options.windows != Windows::none);
}

HWND Screen::Handle()
{
    if (m_core.options.window)
        return m_core.options.window;
    const MainWindow* main = Main();
    return main ? main->handle() : nullptr;
}

MainWindow* Screen::Main()
{
    if (!m_main && Shows() && !m_core.options.window && m_core.options.windows == Windows::all)
        m_main = std::make_unique<MainWindow>(*this, m_core.product->product->name);
    return m_main.get();
}

std::shared_ptr<TemplateDialog> Screen::MakeDialog(HWND parent, std::wstring_view library, long number)
{
    if (!Shows())
        return nullptr;
    auto made =
        std::make_shared<TemplateDialog>(parent, library.empty() ? std::wstring() : m_core.FindFile(library), number);
    std::erase_if(m_dialogs, [](const auto& dialog) { return dialog.expired(); });
    m_dialogs.push_back(made);
    return made;
}

void Screen::Show(const Progress& progress)
{
    status.Show(progress);
    Breathe();
}

// The loop stays short where messages come faster than they go. A message may lead back here: one loop is enough.
void Screen::Breathe()
{
    constexpr int most = 200;
    if (m_breathing || (!m_main && !status.handle()))
        return;
    m_breathing = true;
    MSG message;
    for (int i = 0; i < most && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
        if (message.message == WM_QUIT) {
            // Somebody else's loop is to end.
            PostQuitMessage(static_cast<int>(message.wParam));
            break;
        }
        if (status.handle() && IsDialogMessageW(status.handle(), &message))
            continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    m_breathing = false;
}

void Screen::AskToCancel()
{
    if (m_asking || m_core.cancelled || !Shows())
        return;
    m_asking = true;
    const std::wstring* given = m_core.FindString(L"CANCEL_QUESTION");
    const std::wstring question = given ? m_core.DisplayText(*given) : L"Do you want to cancel the setup?";
    const HWND owner = status.handle() ? status.handle() : Handle();
    const int answer = MessageBoxW(owner, question.c_str(), m_core.product->product->name.c_str(),
                                   MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2);
    if (answer == IDYES)
        m_core.cancelled = true;
    m_asking = false;
}

void Screen::Close()
{
    m_closed = true;
    status.Close();
    cache.Drop();
    for (const auto& dialog : m_dialogs)
        if (const auto held = dialog.lock())
            held->Destroy();
    m_dialogs.clear();
    m_main.reset();
}

} // namespace vh::engine
