#include "main_image.h"

#include <algorithm>

#include "../pictures/gdi_objects.h"
#include "../pictures/picture_options.h"
#include "../pictures/placement.h"
#include "../scriptdata/path_text.h"
#include "picture_resource.h"

namespace vh {

namespace {

// The second image is for displays of 256 colours and more.
const stringx& ImageFor(const ImageSpec& spec)
{
    const unique_screen_context screen(late::get_dc(HWND{nullptr}));
    const int depth = late::get_device_caps(screen.get(), BITSPIXEL) * late::get_device_caps(screen.get(), PLANES);
    return depth >= 8 && !spec.alternative.empty() ? spec.alternative : spec.normal;
}

// Files that the library does not read by itself.
bool NeedsGdiplus(const stringx& path)
{
    const stringxi extension(PathExtension(path.view()));
    return !extension.empty() && extension != L"bmp" && extension != L"wmf" && extension != L"dll";
}

bool IsColor(const std::array<int, 3>& color) { return color != std::array<int, 3>{}; }

// Kept the other way round: blue comes first. The window still has that of the dialog before.
COLORREF GroundOf(const ImageSpec& spec)
{
    const auto& [blue, green, red] = spec.color2;
    return IsColor(spec.color2) ? RGB(red, green, blue) : CSetupWindowImage::no_color;
}

} // namespace

void MainImage::Show(HWND dialog, HWND control, const ImageSpec& spec, const ResourceModules& modules, HPALETTE palette)
{
    // The text of the control is no text for people.
    late::show_window(control, SW_HIDE);
    const stringx& image = ImageFor(spec);
    WindowImageRequest request;
    request.owner = dialog;
    request.insert_after = control;
    request.transparent = spec.flag1;
    request.options = spec.flag2 ? option_stretch : 0u;
    request.palette = palette;
    request.display_size = spec.scale;
    if (spec.numeric()) {
        std::wstring_view digits = image.view();
        int number = 0;
        ScanNumber(digits, number);
        request.library = FindPicture(modules, number);
        request.number = static_cast<uint32_t>(number);
        request.by_gdiplus = request.library && !FindResourceW(request.library, MAKEINTRESOURCEW(number), RT_BITMAP);
    } else {
        request.file = image.c_str();
        request.by_gdiplus = NeedsGdiplus(image);
    }
    if (FAILED(m_window.Create(request)))
        return;
    const RECT place = PlaceIn(dialog, control);
    m_window.SetLeft(place.left);
    m_window.SetTop(place.top);
    int32_t width = 0;
    int32_t height = 0;
    m_window.GetWidth(&width);
    m_window.GetHeight(&height);
    // A picture that is larger than its place is cut; a stretched one, or a ground around it, fills that.
    const bool fills = spec.flag2 || IsColor(spec.color2);
    m_window.SetWidth(fills ? WidthOf(place) : std::min(width, WidthOf(place)));
    m_window.SetHeight(fills ? HeightOf(place) : std::min(height, HeightOf(place)));
    m_window.SetBackground(GroundOf(spec));
    m_window.SetVisible(true);
}

} // namespace vh
