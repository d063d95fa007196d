// The platform's folder dialog, with an edit control of our own where it is asked for.
#pragma once

#include <exception>
#include <windows.h>

#include <shtypes.h>

#include "picker_edit.h"

namespace vh {

struct PickerTexts {
    stringx title;
    stringx message;
    stringx label;        // above the edit control
    stringx second_label; // below it, or the status line where there is no edit control
    stringx bad_folder;   // with a %s for the path
    stringx bad_folder_title;
};

class FolderPicker {
public:
    // `flags` are the platform's; `verify` lets only a new folder pass that can be made.
    FolderPicker(const PickerTexts& texts, int32_t flags, bool verify);

    // Shows the dialog until it is answered; false when it was cancelled.
    bool Run(HWND owner, const stringx& start);
    // The picked folder, or what it is called where it has no path.
    const stringx& Path() const { return m_path; }

private:
    static int CALLBACK OnNotice(HWND dialog, UINT notice, LPARAM parameter, LPARAM picker);
    static LRESULT CALLBACK OnMessage(HWND dialog, UINT message, WPARAM wide, LPARAM parameter);

    template <class Body>
    void Guarded(Body&& body) noexcept;
    void Start();
    void StartEditing();
    void TakeSelection(PCIDLIST_ABSOLUTE item);
    bool Accept();
    void EnableOk() const;
    LRESULT Handle(UINT message, WPARAM wide, LPARAM parameter);
    LRESULT HandleByPlatform(UINT message, WPARAM wide, LPARAM parameter) const;
    void Detach();

    const PickerTexts& m_texts;
    const int32_t m_flags;
    const bool m_editing;
    const bool m_verify;

    HWND m_dialog = nullptr;
    HWND m_owner = nullptr;
    WNDPROC m_platform = nullptr;
    PickerEdit m_edit;
    // The dialog is on show: what is selected is the user's choice from now on.
    bool m_started = false;
    bool m_accepted = false;
    stringx m_path;
    // What went wrong inside the dialog; it ends the dialog and goes on from Run.
    std::exception_ptr m_failure;
};

} // namespace vh
