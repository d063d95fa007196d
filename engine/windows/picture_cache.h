// The picture of a dialog that closed stays in its place until the next one is shown, so that nothing flickers.
#pragma once

#include "gdi.h"

namespace vh::engine {

class PictureCache {
public:
    PictureCache() = default;
    PictureCache(const PictureCache&) = delete;
    PictureCache& operator=(const PictureCache&) = delete;
    ~PictureCache() { Drop(); }

    void Switch(bool on) { m_on = on; }
    // Takes the picture of a visible dialog and puts it behind that.
    void Keep(HWND dialog);
    void Drop();

    LRESULT Handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

private:
    bool m_on = false;
    unique_bitmap m_picture;
    HWND m_window = nullptr;
};

} // namespace vh::engine
