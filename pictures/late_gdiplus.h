// Functions of GDI+ that pictures need.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <algorithm>

// The header takes the two names from the global scope, where windows.h does not put them here.
namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

#include "../scriptdata/late_windows.h"

namespace vh::late {

inline constinit late_library gdiplus(L"gdiplus.dll");

namespace gp = Gdiplus::DllExports;
inline constinit late_function<decltype(Gdiplus::GdiplusStartup)> gdiplus_startup(gdiplus, "GdiplusStartup");
inline constinit late_function<decltype(gp::GdipCreateBitmapFromFile)> bitmap_from_file(gdiplus,
                                                                                        "GdipCreateBitmapFromFile");
inline constinit late_function<decltype(gp::GdipCreateBitmapFromStream)>
    bitmap_from_stream(gdiplus, "GdipCreateBitmapFromStream");
inline constinit late_function<decltype(gp::GdipCreateBitmapFromResource)>
    bitmap_from_resource(gdiplus, "GdipCreateBitmapFromResource");
inline constinit late_function<decltype(gp::GdipCreateBitmapFromScan0)> bitmap_from_memory(gdiplus,
                                                                                           "GdipCreateBitmapFromScan0");
inline constinit late_function<decltype(gp::GdipDisposeImage)> dispose_image(gdiplus, "GdipDisposeImage");
inline constinit late_function<decltype(gp::GdipGetImageWidth)> get_image_width(gdiplus, "GdipGetImageWidth");
inline constinit late_function<decltype(gp::GdipGetImageHeight)> get_image_height(gdiplus, "GdipGetImageHeight");
inline constinit late_function<decltype(gp::GdipGetImageRawFormat)> get_image_format(gdiplus, "GdipGetImageRawFormat");
inline constinit late_function<decltype(gp::GdipCreateFromHDC)> graphics_of_dc(gdiplus, "GdipCreateFromHDC");
inline constinit late_function<decltype(gp::GdipGetImageGraphicsContext)>
    graphics_of_image(gdiplus, "GdipGetImageGraphicsContext");
inline constinit late_function<decltype(gp::GdipDeleteGraphics)> delete_graphics(gdiplus, "GdipDeleteGraphics");
inline constinit late_function<decltype(gp::GdipSetInterpolationMode)> set_interpolation(gdiplus,
                                                                                         "GdipSetInterpolationMode");
inline constinit late_function<decltype(gp::GdipDrawImageRectI)> draw_image(gdiplus, "GdipDrawImageRectI");
inline constinit late_function<decltype(gp::GdipBitmapLockBits)> lock_bits(gdiplus, "GdipBitmapLockBits");
inline constinit late_function<decltype(gp::GdipBitmapUnlockBits)> unlock_bits(gdiplus, "GdipBitmapUnlockBits");
inline constinit late_function<decltype(gp::GdipCreateHICONFromBitmap)> icon_from_bitmap(gdiplus,
                                                                                         "GdipCreateHICONFromBitmap");

inline constinit late_function<decltype(CreateStreamOnHGlobal)> stream_on_memory(ole32, "CreateStreamOnHGlobal");

} // namespace vh::late
