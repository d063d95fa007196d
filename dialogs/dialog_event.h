// What a script dialog tells its script.
#pragma once

#include <windows.h>

struct DialogEvent {
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    // Of notifications alone.
    UINT code = 0;
    HWND source = nullptr;
    UINT_PTR sourceId = 0;
};

// How events reach the script; what stands for neither lets nothing through.
enum class Delivery { nothing = 0, standard = 1, all_commands = 4 };

// The reserved name of the status window.
constexpr const wchar_t* progress_dialog = L"ProgressDlg";
