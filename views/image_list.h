// Lists of small pictures, made by the library of controls that a control comes from.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "../scriptdata/stringx.h"

namespace vh {

// The pictures of items: tiles of 16 by 16 in a file of the support directory, which may be missing.
constexpr int item_picture_size = 16;

enum class tiles { added, missing, refused };

class image_list {
public:
    image_list() = default;
    // `module` is that of the control's class; one without image lists, or null, means the system's own.
    image_list(HMODULE module, SIZE size, UINT flags, int initial, int growth);
    image_list(image_list&& other) noexcept;
    image_list& operator=(image_list&& other) noexcept;
    ~image_list();

    explicit operator bool() const { return m_list != nullptr; }
    HIMAGELIST get() const { return m_list; }

    bool Add(HBITMAP picture) const;
    // The pictures of the items; `width` becomes that of all of them.
    tiles AddTiles(const stringx& support_dir, int& width) const;
    void Draw(int index, HDC context) const;

private:
    HMODULE m_module = nullptr;
    HIMAGELIST m_list = nullptr;
};

// The size of a bitmap; empty for null.
SIZE SizeOf(HBITMAP bitmap);

} // namespace vh
