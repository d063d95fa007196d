// Owners of GDI objects.
#pragma once

#include "late_windows.h"
#include "unique.h"

namespace vh {

template <class Handle>
struct gdi_traits {
    using value_type = Handle;
    static Handle none() { return nullptr; }
    static void close(Handle object) { late::delete_object(object); }
};

using unique_font = unique<gdi_traits<HFONT>>;
using unique_brush = unique<gdi_traits<HBRUSH>>;
using unique_bitmap = unique<gdi_traits<HBITMAP>>;

struct icon_traits {
    using value_type = HICON;
    static HICON none() { return nullptr; }
    static void close(HICON icon) { late::destroy_icon(icon); }
};
using unique_icon = unique<icon_traits>;

} // namespace vh
