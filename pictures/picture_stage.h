// One drawing of a picture: what is drawn, where, and on what.
#pragma once

#include "gdi_objects.h"
#include "picture_options.h"

namespace vh {

struct metafile_bounds {
    int32_t left = 0;
    int32_t top = 0;
    int32_t right = 0;
    int32_t bottom = 0;
};

struct picture_stage {
    HDC target = nullptr;
    SIZE client{}; // what may be painted on, from the origin
    POINT at{};
    SIZE size{}; // of the picture on the target
    // A bitmap, selected into a context; or else a metafile.
    HDC source = nullptr;
    SIZE source_size{};
    HMETAFILE metafile = nullptr;
    metafile_bounds bounds{};
    COLORREF left_out = 0; // the colour that a transparent drawing leaves out

    // The whole picture at its place.
    bool DrawPlain() const { return DrawAt(at, size); }
    bool DrawAt(POINT place, SIZE extent) const;
    // A part of the bitmap, which has the size that it takes on the target.
    bool CopyPart(const RECT& part) const;

private:
    bool PlayAt(POINT place, SIZE extent) const;
};

// Each kind of drawing. An effect answers false when nothing may follow it.
bool DrawTransparent(const picture_stage& stage);
bool DrawTiles(const picture_stage& stage);
bool DrawDissolve(const picture_stage& stage);
bool DrawZoom(const picture_stage& stage);
bool DrawZoomAcross(const picture_stage& stage);
bool DrawBlindsAcross(const picture_stage& stage);
bool DrawBlindsDown(const picture_stage& stage);
bool DrawFrames(const picture_stage& stage);

} // namespace vh
