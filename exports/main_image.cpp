// Exported functions of the main image, which has no main window yet, and of the palette.
#include "vhrt/main_image.h"

#include "../pictures/palette.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "pending.h"

using namespace vh::pending;

// Main image.
int32_t _SetAltMainImage(ObjectContext* context, int32_t, const wchar_t*) { return Missing(context, general_failure); }
int32_t _SetAltMainImageEx(ObjectContext* context, int32_t, const wchar_t*)
{
    return Missing(context, general_failure);
}

int32_t _SetPaletteFile(ObjectContext* context, const wchar_t* path)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        c.palette = vh::LoadPalette(path ? path : L"");
        return 0;
    });
}
