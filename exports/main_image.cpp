// Exported functions of the main image: there is no main window yet.
#include "vhrt/main_image.h"

#include "pending.h"

using namespace vh::pending;

// Main image.
int32_t _SetAltMainImage(ObjectContext* context, int32_t, const wchar_t*) { return Missing(context, general_failure); }
int32_t _SetAltMainImageEx(ObjectContext* context, int32_t, const wchar_t*)
{
    return Missing(context, general_failure);
}
int32_t _SetPaletteFile(ObjectContext* context, const wchar_t*) { return Missing(context, 0); }
