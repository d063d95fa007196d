// The pictures of check boxes, from the theme at the display's scale or as the classic look has them.
#pragma once

#include <windows.h>

#include <uxtheme.h>

#include "../scriptdata/unique_gdi.h"

class CDpiControlUtils {
public:
    // `theme_class` is a class of the theme, such as "Button"; without a theme only the classic look is there.
    CDpiControlUtils(HWND window, const wchar_t* theme_class);
    CDpiControlUtils(const CDpiControlUtils&) = delete;
    CDpiControlUtils& operator=(const CDpiControlUtils&) = delete;
    virtual ~CDpiControlUtils();

    // Parts and states of a check box.
    enum : int { check_box = 3, clear = 1, checked = 5, checked_disabled = 8 };

    // In pixels: the theme's, or else the classic one.
    SIZE GetSize(int part, int state) const;
    // The theme's picture, or else the classic one; empty when neither can be drawn. The ground is the window colour.
    vh::unique_bitmap GetBitmap(int part, int state) const;
    // Empty without a theme.
    vh::unique_bitmap GetThemedBitmap(int part, int state) const;
    vh::unique_bitmap GetClassicBitmap(int part, int state) const;

    // Kind and state of DrawFrameControl.
    static UINT ClassicPart(int part) { return part == check_box ? DFC_BUTTON : 0; }
    static UINT ClassicState(int part, int state);

private:
    bool ThemeSize(int part, int state, SIZE& size) const;

    HTHEME m_theme;
    HWND m_window;
};
