// The pictures of component views, shared by all of the process: two check boxes and the items' own.
#pragma once

#include <optional>
#include <windows.h>

#include "../pictures/gdi_objects.h"
#include "image_list.h"
#include "size_text.h"
#include "view_scene.h"

namespace vh {

// A picture in a context of its own, ready to be copied.
class ready_picture {
public:
    explicit ready_picture(unique_bitmap bitmap);

    SIZE size() const { return m_size; }
    HDC context() const { return m_context.get(); }

private:
    unique_bitmap m_bitmap;
    SIZE m_size{};
    bitmap_context m_context;
};

class ViewPictures {
public:
    ViewPictures(HWND window, const stringx& support_dir);

    const ready_picture& check(bool selected) const { return selected ? m_checked : m_clear; }
    SIZE check_size() const { return m_checked.size(); }
    // Whether items have pictures of their own.
    bool usable() const { return m_usable; }
    // One past the last picture still counts; drawing it shows the ground alone.
    bool HasItem(int32_t image) const { return m_usable && image >= 0 && image <= m_width / item_picture_size; }
    // Over a ground of that colour.
    void DrawItem(HDC target, POINT place, int32_t image, int ground) const;

private:
    bool LoadItems(const stringx& support_dir);

    ready_picture m_checked;
    ready_picture m_clear;
    image_list m_items;
    std::optional<canvas> m_tile;
    int m_width = 0;
    bool m_usable;
};

// What the first view builds and every view uses; the view that built it takes it away.
struct SharedViews {
    std::optional<ViewPictures> pictures;
    size_format format;
    // Up to four units.
    stringx unit = L"K";

    static SharedViews& Get();
};

} // namespace vh
