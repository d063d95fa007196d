// Drawing functions of the system that pictures need.
#pragma once

#include <windows.h>

#include "../scriptdata/late_windows.h"

namespace vh::late {

inline constinit late_function<decltype(BitBlt)> bit_blt(gdi32, "BitBlt");
inline constinit late_function<decltype(CreateBitmap)> create_bitmap(gdi32, "CreateBitmap");
inline constinit late_function<decltype(CreateCompatibleBitmap)> create_compatible_bitmap(gdi32,
                                                                                          "CreateCompatibleBitmap");
inline constinit late_function<decltype(CreateCompatibleDC)> create_compatible_dc(gdi32, "CreateCompatibleDC");
inline constinit late_function<decltype(CreateDIBitmap)> create_di_bitmap(gdi32, "CreateDIBitmap");
inline constinit late_function<decltype(CreateDIBSection)> create_dib_section(gdi32, "CreateDIBSection");
inline constinit late_function<decltype(CreatePalette)> create_palette(gdi32, "CreatePalette");
inline constinit late_function<decltype(CreatePatternBrush)> create_pattern_brush(gdi32, "CreatePatternBrush");
inline constinit late_function<decltype(CreateSolidBrush)> create_solid_brush(gdi32, "CreateSolidBrush");
inline constinit late_function<decltype(DeleteDC)> delete_dc(gdi32, "DeleteDC");
inline constinit late_function<decltype(DeleteMetaFile)> delete_metafile(gdi32, "DeleteMetaFile");
inline constinit late_function<decltype(GdiFlush)> gdi_flush(gdi32, "GdiFlush");
inline constinit late_function<decltype(GetBkColor)> get_background(gdi32, "GetBkColor");
inline constinit late_function<decltype(GetSystemPaletteEntries)> get_system_palette(gdi32, "GetSystemPaletteEntries");
inline constinit late_function<decltype(IntersectClipRect)> intersect_clip(gdi32, "IntersectClipRect");
inline constinit late_function<decltype(PlayMetaFile)> play_metafile(gdi32, "PlayMetaFile");
inline constinit late_function<decltype(RealizePalette)> realize_palette(gdi32, "RealizePalette");
inline constinit late_function<decltype(RestoreDC)> restore_dc(gdi32, "RestoreDC");
inline constinit late_function<decltype(SaveDC)> save_dc(gdi32, "SaveDC");
inline constinit late_function<decltype(SelectPalette)> select_palette(gdi32, "SelectPalette");
inline constinit late_function<decltype(SetBkColor)> set_background(gdi32, "SetBkColor");
inline constinit late_function<decltype(SetMapMode)> set_map_mode(gdi32, "SetMapMode");
inline constinit late_function<decltype(SetMetaFileBitsEx)> set_metafile_bits(gdi32, "SetMetaFileBitsEx");
inline constinit late_function<decltype(SetStretchBltMode)> set_stretch_mode(gdi32, "SetStretchBltMode");
inline constinit late_function<decltype(SetTextColor)> set_text_color(gdi32, "SetTextColor");
inline constinit late_function<decltype(SetViewportExtEx)> set_viewport_extent(gdi32, "SetViewportExtEx");
inline constinit late_function<decltype(SetViewportOrgEx)> set_viewport_origin(gdi32, "SetViewportOrgEx");
inline constinit late_function<decltype(SetWindowExtEx)> set_window_extent(gdi32, "SetWindowExtEx");
inline constinit late_function<decltype(SetWindowOrgEx)> set_window_origin(gdi32, "SetWindowOrgEx");
inline constinit late_function<decltype(StretchBlt)> stretch_blt(gdi32, "StretchBlt");

inline constinit late_function<decltype(DrawFocusRect)> draw_focus(user32, "DrawFocusRect");
inline constinit late_function<decltype(DrawFrameControl)> draw_frame_control(user32, "DrawFrameControl");
inline constinit late_function<decltype(DrawIcon)> draw_icon(user32, "DrawIcon");
inline constinit late_function<decltype(FillRect)> fill_rect(user32, "FillRect");

} // namespace vh::late
