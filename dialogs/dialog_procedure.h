// The window side of script dialogs: creation from templates, and what their windows answer to messages.
#pragma once

#include <utility>
#include <windows.h>

#include "../scriptdata/stringx.h"

class CScriptDialog;
class CDialogManager;

// Numbers of controls that mean the same in every dialog.
enum DialogControl : int {
    control_brand = 7,
    control_title = 50,
    control_second_title = 51,
    control_top = 52,
    control_first_image_button = 101,
    control_last_image_button = 109,
    control_disk_picture = 902,
    control_image = 1200,
    control_separator = 1300,
    control_warning = 17808
};

// Style bit of a definition; the others choose the delivery.
constexpr int style_centred = 2;

// Of a dialog's window: its CScriptDialog.
constexpr const wchar_t* dialog_property = L"PCSCRIPTDLG";
constexpr const wchar_t* skin_property = L"SKINATTR";

// The dialog that a thread waits on, while it waits: its messages find it without a look at the property.
class WaitingDialog {
public:
    explicit WaitingDialog(CScriptDialog& dialog) : m_before(std::exchange(s_current, &dialog)) {}
    WaitingDialog(const WaitingDialog&) = delete;
    WaitingDialog& operator=(const WaitingDialog&) = delete;
    ~WaitingDialog() { s_current = m_before; }

    static CScriptDialog* Current() { return s_current; }

private:
    static thread_local CScriptDialog* s_current;
    CScriptDialog* m_before;
};

struct DialogProcedure {
    static INT_PTR CALLBACK Run(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    static INT_PTR Answer(CScriptDialog* dialog, HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    static INT_PTR Initialise(CScriptDialog& dialog, HWND window);
    static void Place(CScriptDialog& dialog);
    static void MakeSeparator(CScriptDialog& dialog);
    static void ShowWarning(CScriptDialog& dialog);
    static void MakeTitle(CScriptDialog& dialog);
    static void CallHook(CScriptDialog& dialog);
    static void ShowDiskPicture(CScriptDialog& dialog);
    static void FindTop(CScriptDialog& dialog);
    static void ShowMainImage(CScriptDialog& dialog);
    static void FindLinks(CScriptDialog& dialog);
    static INT_PTR OnCommand(CScriptDialog* dialog, WPARAM wParam, LPARAM lParam);
    static INT_PTR OnNotify(CScriptDialog* dialog, WPARAM wParam, LPARAM lParam);
    static void OnLink(CScriptDialog& dialog, const NMHDR& header);
    static INT_PTR ColorOfStatic(const CScriptDialog* dialog, HDC device, HWND control);
    static void PaintBrand(const CScriptDialog& dialog);
    static void PrepareSkin(CScriptDialog& dialog);
    static void OnDestroy(CScriptDialog& dialog, HWND window);
};
