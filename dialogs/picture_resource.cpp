#include "picture_resource.h"

#include "../pictures/gdiplus_bitmap.h"
#include "monitor_scale.h"

namespace vh {

HMODULE FindPicture(const ResourceModules& modules, int number)
{
    const wchar_t* const types[] = {RT_BITMAP, L"PNG"};
    return modules.Find(types, MAKEINTRESOURCEW(number));
}

unique_icon LoadPictureIcon(const ResourceModules& modules, int number, int design_scale)
{
    const HMODULE module = FindPicture(modules, number);
    const gdiplus_bitmap picture =
        module ? gdiplus_bitmap::FromResource(module, static_cast<uint32_t>(number)) : gdiplus_bitmap();
    if (!picture)
        return {};
    SIZE size = picture.size();
    if (const int display = MonitorScale(); display < design_scale)
        size = {MulDiv(size.cx, display, design_scale), MulDiv(size.cy, display, design_scale)};
    return picture.Resized(size).Icon();
}

} // namespace vh
