#include "fonts.h"

#include "late_dialogs.h"

namespace vh {

LONG FontHeight(HDC device, int points) { return -MulDiv(points, late::get_device_caps(device, LOGPIXELSY), 72); }

HFONT MakeFont(HDC device, const wchar_t* face, int points)
{
    LOGFONTW font{};
    font.lfHeight = FontHeight(device, points);
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(font.lfFaceName, face, LF_FACESIZE);
    return late::create_font(&font);
}

} // namespace vh
