#include "status_window.h"

#include <algorithm>

#include "../core.h"
#include "bar_object.h"
#include "picture.h"
#include "screen.h"

namespace vh::engine {

namespace {

enum control : int {
    control_brand = 7,
    control_image = 1200,
    control_line = 1300,
    control_title = 1400,
    control_file = 1401,
    control_percent = 1402,
    control_bar = 1403,
};
constexpr long branding_option = 7;
// Of the flags of an opening: the run is not to be cancelled by its window.
constexpr long no_cancel = 1;

// The picture's part of a main image text: "@@picture;scale", "picture,another;..."; empty for none.
std::wstring_view PictureIn(std::wstring_view text)
{
    while (text.starts_with(L'@'))
        text.remove_prefix(1);
    text = text.substr(0, text.find_first_of(L";,"));
    return text == L"!" ? std::wstring_view() : text;
}

} // namespace

void StatusWindow::Open(HWND parent, std::wstring_view library, long number, long flags)
{
    CloseWindow();
    if (number == 0)
        return;
    m_dialog = m_core.screen->MakeDialog(parent, library, number);
    if (!m_dialog)
        return;
    m_dialog->onCancel = [this] { m_core.screen->AskToCancel(); };
    if (const HWND cancel = flags & no_cancel ? m_dialog->Control(IDCANCEL) : nullptr)
        EnableWindow(cancel, FALSE);
    ShowTitle();
    ShowMainImage();
    ShowBranding();
    AttachBar();
}

void StatusWindow::Close()
{
    CloseWindow();
    m_bar.reset();
}

void StatusWindow::CloseWindow()
{
    if (const auto own = m_bar.query<IEngineBar>())
        own->Attach(nullptr, nullptr);
    m_dialog.reset();
    m_picture.reset();
    m_position = m_from = m_to = 0;
    m_fileShown.clear();
    m_percentShown.clear();
}

void StatusWindow::SetVisible(bool on) const
{
    if (m_dialog)
        m_dialog->Show(on);
}

void StatusWindow::SetTitle(std::wstring_view title)
{
    m_title = title;
    ShowTitle();
}

void StatusWindow::ShowTitle() const
{
    if (!m_dialog || m_title.empty())
        return;
    const std::wstring text = m_core.DisplayText(m_title);
    SetWindowTextW(handle(), text.c_str());
    SetDlgItemTextW(handle(), control_title, text.c_str());
}

void StatusWindow::SetMainImage(std::wstring_view text)
{
    m_mainImage = text;
    ShowMainImage();
}

// A text that names no picture that can be shown leaves the control empty.
void StatusWindow::ShowMainImage()
{
    const HWND control = m_dialog ? m_dialog->Control(control_image) : nullptr;
    if (!control || m_mainImage.empty())
        return;
    unique_bitmap picture;
    if (const std::wstring name(PictureIn(m_mainImage)); !name.empty()) {
        const bool numeric =
            std::all_of(name.begin(), name.end(), [](wchar_t unit) { return unit >= L'0' && unit <= L'9'; });
        if (numeric && name.size() < 6)
            picture = PictureOf(m_dialog->library(), std::stoi(name));
        else
            try {
                picture = LoadPicture(m_core, name);
            } catch (const engine_error& error) {
                m_core.Note(error.message().file, error.message().reason);
            }
    }
    if (picture)
        picture = Scaled(picture.get(), SizeOf(m_dialog->PlaceOf(control)));
    const LONG_PTR style = GetWindowLongPtrW(control, GWL_STYLE);
    SetWindowLongPtrW(control, GWL_STYLE, (style & ~SS_TYPEMASK) | SS_BITMAP);
    const RECT place = m_dialog->PlaceOf(control);
    SendMessageW(control, STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(picture.get()));
    MoveWindow(control, place.left, place.top, SizeOf(place).cx, SizeOf(place).cy, TRUE);
    // Without a picture a control would keep what was there.
    ShowWindow(control, picture ? SW_SHOWNA : SW_HIDE);
    // The control shows it and leaves it to its owner.
    m_picture = std::move(picture);
}

void StatusWindow::SetOption(long option, bool on)
{
    m_options[option] = on;
    ShowBranding();
}

// Without the brand text the line beside it takes its room too.
void StatusWindow::ShowBranding() const
{
    const auto option = m_options.find(branding_option);
    const HWND brand = m_dialog ? m_dialog->Control(control_brand) : nullptr;
    if (!brand || option == m_options.end())
        return;
    ShowWindow(brand, option->second ? SW_SHOWNA : SW_HIDE);
    const HWND line = m_dialog->Control(control_line);
    if (!line || option->second)
        return;
    RECT place = m_dialog->PlaceOf(line);
    place.left = m_dialog->PlaceOf(brand).left;
    MoveWindow(line, place.left, place.top, SizeOf(place).cx, SizeOf(place).cy, TRUE);
}

void StatusWindow::SetBar(ISetupProgressBar* bar)
{
    m_bar.reset(bar);
    AttachBar();
}

void StatusWindow::AttachBar()
{
    if (const auto own = m_bar.query<IEngineBar>()) {
        own->Attach(handle(), m_dialog ? m_dialog->Control(control_bar) : nullptr);
        ShowBar();
    }
}

void StatusWindow::ShowBar() const
{
    if (const auto own = m_bar.query<IEngineBar>())
        own->Move(m_position);
}

void StatusWindow::Begin(int stop_at)
{
    m_from = m_position;
    m_to = std::clamp(stop_at, 0, 100);
}

void StatusWindow::Link(bool on)
{
    if (!on)
        m_from = m_to = m_position;
}

void StatusWindow::Show(const Progress& progress)
{
    m_position = m_from + (m_to - m_from) * progress.percent / 100;
    if (!m_dialog)
        return;
    ShowBar();
    SetText(control_file, m_fileShown, progress.file);
    SetText(control_percent, m_percentShown, Number(m_position) + L" %");
}

void StatusWindow::SetText(int control, std::wstring& shown, const std::wstring& text)
{
    if (shown == text)
        return;
    shown = text;
    SetDlgItemTextW(handle(), control, text.c_str());
}

} // namespace vh::engine
