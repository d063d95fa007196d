// The window that shows one picture in a dialog.
#pragma once

#include <memory>

#include "../pictures/setup_image.h"
#include "window_impl.h"

// What a window shows, and how. The picture comes from a file or from a library, never from both.
struct WindowImageRequest {
    HWND owner = nullptr;
    // In the order of windows this one comes behind it; with a position of `before_it` behind the one before.
    HWND insert_after = nullptr;
    int32_t position = 0;
    HMODULE library = nullptr;
    const wchar_t* file = nullptr;
    uint32_t number = 0;
    bool transparent = false;
    int32_t effect = 0;
    uint32_t options = 0;
    HPALETTE palette = nullptr;
    // The scale in percent that the picture is made for; 0 means any.
    int32_t display_size = 0;
    bool by_gdiplus = false;

    static constexpr int32_t before_it = GW_HWNDPREV;
};

class CSetupWindowImage : public CVHWindowImpl<CSetupWindowImage> {
public:
    static constexpr const wchar_t* window_class = L"VHWndImgCls";
    static constexpr COLORREF no_color = 0xFFFFFFFF;

    LRESULT WindowProc(UINT message, WPARAM wparam, LPARAM lparam) override;

    // The window is not visible yet. A failure of any kind to get the picture is E_INVALIDARG.
    HRESULT Create(const WindowImageRequest& request);
    // The size that the picture is drawn at.
    HRESULT GetWidth(int32_t* width) const;
    HRESULT GetHeight(int32_t* height) const;
    HRESULT SetLeft(int32_t left);
    HRESULT SetTop(int32_t top);
    HRESULT SetWidth(int32_t width);
    HRESULT SetHeight(int32_t height);
    HRESULT SetOptions(uint32_t options);
    HRESULT SetVisible(bool visible);
    HRESULT SetBackground(COLORREF color);

private:
    void Clear();
    bool Load(const WindowImageRequest& request);
    void PlaceBehind(const WindowImageRequest& request) const;
    void ScaleForDisplay(int32_t display_size);
    HRESULT MoveTo(const RECT& place);
    void Repaint() const;
    void Paint();
    // Controls of the dialog that the picture lies under.
    void RepaintControls() const;

    std::unique_ptr<SetupImage> m_picture;
    HWND m_owner = nullptr;
    bool m_visible = false;
    bool m_transparent = false;
    uint32_t m_options = 0;
    RECT m_place{};
    COLORREF m_background = no_color;
    // The display wants another size than the picture is made for.
    bool m_scaled = false;
};
