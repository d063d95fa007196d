#include "fonts.h"

#include "../pictures/gdi_objects.h"
#include "../scriptdata/stringx.h"
#include "late_dialogs.h"

namespace vh {

namespace {

constexpr struct {
    int bit;
    BYTE LOGFONTW::*flag;
} style_flags[] = {{0x1000, &LOGFONTW::lfItalic}, {0x2000, &LOGFONTW::lfUnderline}, {4, &LOGFONTW::lfStrikeOut}};

LOGFONTW Named(const wchar_t* face)
{
    LOGFONTW font{};
    font.lfCharSet = DEFAULT_CHARSET;
    lstrcpynW(font.lfFaceName, face, LF_FACESIZE);
    return font;
}

// What the device has of a face, until `use` has had enough.
template <class Use>
void EachFont(HDC device, const wchar_t* face, Use use)
{
    LOGFONTW wanted = Named(face);
    late::enum_fonts(
        device, &wanted,
        [](const LOGFONTW* font, const TEXTMETRICW*, DWORD, LPARAM given) -> int {
            return (*reinterpret_cast<Use*>(given))(*font);
        },
        reinterpret_cast<LPARAM>(&use), DWORD{0});
}

// A face as a LOGFONT asks for it, with the means of the first font of that name.
LOGFONTW Known(HDC device, const wchar_t* face)
{
    LOGFONTW known = Named(L"Arial");
    known.lfCharSet = ANSI_CHARSET;
    known.lfOutPrecision = OUT_TT_ONLY_PRECIS;
    known.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    EachFont(device, face, [&](const LOGFONTW& font) {
        if (stringxi(font.lfFaceName) != stringxi(face))
            return 1;
        known = Named(font.lfFaceName);
        known.lfCharSet = font.lfCharSet;
        known.lfOutPrecision = font.lfOutPrecision;
        known.lfClipPrecision = font.lfClipPrecision;
        known.lfPitchAndFamily = font.lfPitchAndFamily;
        return 0;
    });
    return known;
}

} // namespace

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

HFONT MakeStyledFont(const wchar_t* face, int points, int style)
{
    const unique_screen_context screen(late::get_dc(HWND{nullptr}));
    LOGFONTW font = Known(screen.get(), face);
    font.lfHeight = FontHeight(screen.get(), points);
    font.lfWeight = style & 0x40 ? FW_BOLD : FW_NORMAL;
    font.lfQuality = DRAFT_QUALITY;
    for (const auto& row : style_flags)
        font.*row.flag = style & row.bit ? 1 : 0;
    return late::create_font(&font);
}

int32_t IsFaceThere(const wchar_t* face)
{
    const unique_memory_context display(late::create_information_context(L"DISPLAY", nullptr, nullptr, nullptr));
    bool there = false;
    EachFont(display.get(), face, [&](const LOGFONTW&) {
        there = true;
        return 0;
    });
    if (!there)
        return 0;
    const LOGFONTW wanted = Named(face);
    const unique_font font(late::create_font(&wanted));
    const HGDIOBJ before = late::select_object(display.get(), font.get());
    TEXTMETRICW metrics{};
    const BOOL known = late::get_text_metrics(display.get(), &metrics);
    late::select_object(display.get(), before);
    return known;
}

} // namespace vh
