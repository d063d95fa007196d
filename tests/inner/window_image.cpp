// The window that shows a picture in a dialog.
#include "../../dialogs/window_image.h"
#include "../../dialogs/late_dialogs.h"
#include "../../dialogs/monitor_scale.h"
#include "../../scriptdata/late_fallbacks.h"
#include "../support/bitmap_writer.h"
#include "../support/replaced.h"
#include "../support/sheet.h"
#include "../support/temp_folder.h"
#include "../support/test.h"

namespace {

using namespace vh;
using namespace vh::test;

constexpr COLORREF magenta = RGB(255, 0, 255);

class Dialog {
public:
    Dialog()
        : m_window(CreateWindowExW(0, L"Static", L"", WS_POPUP | WS_VISIBLE, 0, 0, 200, 150, nullptr, nullptr, nullptr,
                                   nullptr))
    {
    }
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;
    ~Dialog() { DestroyWindow(m_window); }
    operator HWND() const { return m_window; }

    HWND Add(int left, int top, DWORD style = WS_VISIBLE) const
    {
        return CreateWindowExW(0, L"Button", L"", WS_CHILD | style, left, top, 30, 20, m_window, nullptr, nullptr,
                               nullptr);
    }

private:
    HWND m_window;
};

// 20 x 10: the left half magenta, the right half 0x123456.
std::string HalfAndHalf()
{
    std::string rows;
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 20; ++x)
            rows += Long(x < 10 ? 0xFF00FF : 0x123456);
    return BitmapFile(BitmapHeader(20, 10, 32), "", rows);
}

class WindowImage : public testing::Test {
protected:
    WindowImageRequest Request(const Dialog& dialog) const
    {
        WindowImageRequest request;
        request.owner = dialog;
        request.file = m_file.c_str();
        return request;
    }
    RECT PlaceOf(const CSetupWindowImage& image) const
    {
        RECT place{};
        GetWindowRect(image.window(), &place);
        return place;
    }
    static COLORREF PixelOf(HWND window, int x, int y)
    {
        UpdateWindow(window);
        const HDC context = GetDC(window);
        const COLORREF color = GetPixel(context, x, y);
        ReleaseDC(window, context);
        return color;
    }

    TempFolder m_folder;
    std::wstring m_file = m_folder.Write(L"picture.bmp", HalfAndHalf());
};

TEST_F(WindowImage, TellsWhatItCanNotCreate)
{
    const Dialog dialog;
    const std::wstring none = m_folder / L"none.bmp";
    CSetupWindowImage image;
    int32_t size = 7;
    EXPECT_EQ(image.GetWidth(nullptr), E_POINTER);
    EXPECT_EQ(image.GetHeight(nullptr), E_POINTER);
    EXPECT_EQ(image.GetWidth(&size), E_FAIL);
    EXPECT_EQ(image.GetHeight(&size), E_FAIL);
    EXPECT_EQ(size, 7);

    WindowImageRequest request = Request(dialog);
    request.owner = nullptr;
    EXPECT_EQ(image.Create(request), E_INVALIDARG);
    request = Request(dialog);
    request.library = GetModuleHandleW(nullptr);
    EXPECT_EQ(image.Create(request), E_INVALIDARG) << "both";
    request.file = L"";
    EXPECT_EQ(image.Create(request), E_INVALIDARG) << "no such resource";
    request.library = nullptr;
    EXPECT_EQ(image.Create(request), E_INVALIDARG) << "neither";
    request.file = none.c_str();
    for (const bool by_gdiplus : {false, true}) {
        request.by_gdiplus = by_gdiplus;
        EXPECT_EQ(image.Create(request), E_INVALIDARG);
    }
    EXPECT_EQ(image.window(), nullptr);
    EXPECT_EQ(image.GetWidth(&size), E_FAIL);

    const Replaced no_window(late::create_window_ex, static_cast<decltype(&CreateWindowExW)>(
                                                         [](DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int,
                                                            int, HWND, HMENU, HINSTANCE, void*) { return HWND{}; }));
    EXPECT_EQ(image.Create(Request(dialog)), E_FAIL);
}

TEST_F(WindowImage, StandsHiddenAtTheSizeOfThePicture)
{
    const Dialog dialog;
    CSetupWindowImage image;
    ASSERT_EQ(image.Create(Request(dialog)), S_OK);
    EXPECT_EQ(GetParent(image.window()), static_cast<HWND>(dialog));
    EXPECT_FALSE(IsWindowVisible(image.window()));
    EXPECT_TRUE(GetWindowLongW(image.window(), GWL_EXSTYLE) & WS_EX_TRANSPARENT);
    EXPECT_TRUE(GetWindowLongW(image.window(), GWL_STYLE) & WS_CLIPSIBLINGS);
    int32_t width = 0;
    int32_t height = 0;
    EXPECT_EQ(image.GetWidth(&width), S_OK);
    EXPECT_EQ(image.GetHeight(&height), S_OK);
    EXPECT_EQ(width, 20);
    EXPECT_EQ(height, 10);
    image.SetLeft(5);
    image.SetTop(7);
    image.SetWidth(30);
    image.SetHeight(40);
    const RECT place = PlaceOf(image);
    EXPECT_EQ(place.left, 5);
    EXPECT_EQ(place.top, 7);
    EXPECT_EQ(place.right, 35);
    EXPECT_EQ(place.bottom, 47);

    // Nothing moves that stands there already.
    const Replaced moves(late::move_window);
    EXPECT_EQ(image.SetLeft(5), S_OK);
    EXPECT_EQ(image.SetTop(7), S_OK);
    EXPECT_EQ(image.SetWidth(30), S_OK);
    EXPECT_EQ(image.SetHeight(40), S_OK);
    EXPECT_THROW(image.SetLeft(6), vh::win32_exception);
}

TEST_F(WindowImage, PaintsThePictureOverItsBackground)
{
    const Dialog dialog;
    for (const bool transparent : {false, true}) {
        CSetupWindowImage image;
        WindowImageRequest request = Request(dialog);
        request.transparent = transparent;
        ASSERT_EQ(image.Create(request), S_OK);
        image.SetWidth(30);
        image.SetVisible(true);
        image.SetBackground(RGB(1, 2, 3));
        EXPECT_EQ(PixelOf(image.window(), 5, 5), transparent ? RGB(1, 2, 3) : magenta);
        EXPECT_EQ(PixelOf(image.window(), 15, 5), RGB(0x12, 0x34, 0x56));
        EXPECT_EQ(PixelOf(image.window(), 25, 5), RGB(1, 2, 3));
        image.SetOptions(option_center);
        EXPECT_EQ(PixelOf(image.window(), 2, 5), RGB(1, 2, 3));
        EXPECT_EQ(PixelOf(image.window(), 18, 5), RGB(0x12, 0x34, 0x56));
        image.SetVisible(false);
        EXPECT_FALSE(IsWindowVisible(image.window()));
    }
}

TEST_F(WindowImage, TakesItsPlaceInTheOrderOfWindows)
{
    const Dialog dialog;
    const HWND first = dialog.Add(0, 0);
    const HWND second = dialog.Add(50, 0);
    const HWND third = dialog.Add(100, 0);
    // in the order of windows
    vh::test::Table<HWND, int32_t, HWND> cases = {
        {second, 0, second}, {second, WindowImageRequest::before_it, first}, {third, 0, third}};
    for (const auto& [after, where, before_it] : cases) {
        CSetupWindowImage image;
        WindowImageRequest request = Request(dialog);
        request.insert_after = after;
        request.position = where;
        ASSERT_EQ(image.Create(request), S_OK);
        EXPECT_EQ(GetWindow(image.window(), GW_HWNDPREV), before_it);
    }
    CSetupWindowImage image;
    WindowImageRequest request = Request(dialog);
    request.insert_after = first;
    request.position = WindowImageRequest::before_it;
    ASSERT_EQ(image.Create(request), S_OK);
    EXPECT_EQ(GetWindow(image.window(), GW_HWNDNEXT), first);
}

TEST_F(WindowImage, LeavesControlsOnTop)
{
    const Dialog dialog;
    const HWND over = dialog.Add(10, 5);
    const HWND beside = dialog.Add(20, 5);
    const HWND hidden = dialog.Add(0, 0, 0);
    CSetupWindowImage image;
    ASSERT_EQ(image.Create(Request(dialog)), S_OK);
    image.SetVisible(true);
    for (const HWND control : {over, beside, hidden})
        ValidateRect(control, nullptr);
    UpdateWindow(image.window());
    EXPECT_TRUE(GetUpdateRect(over, nullptr, FALSE));
    EXPECT_FALSE(GetUpdateRect(beside, nullptr, FALSE));
    EXPECT_FALSE(GetUpdateRect(hidden, nullptr, FALSE));
}

UINT s_dpi = 96;
HRESULT WINAPI TellDpi(HMONITOR, MONITOR_DPI_TYPE, UINT* across, UINT* down)
{
    *across = *down = s_dpi;
    return S_OK;
}

TEST_F(WindowImage, ShrinksPicturesThatAreMadeForLargerScales)
{
    const Replaced dpi(late::get_dpi_for_monitor, &TellDpi);
    const Dialog dialog;
    vh::test::Table<UINT, int32_t, int32_t, int32_t> cases = {{96, 0, 20, 10},   {96, 100, 20, 10},  {96, 200, 10, 5},
                                                              {144, 200, 15, 8}, {192, 200, 20, 10}, {192, 100, 20, 10},
                                                              {120, 150, 17, 8}};
    for (const auto& [dots, made_for, wanted_width, wanted_height] : cases) {
        s_dpi = dots;
        CSetupWindowImage image;
        WindowImageRequest request = Request(dialog);
        request.display_size = made_for;
        ASSERT_EQ(image.Create(request), S_OK);
        const auto size_is = [&](int32_t width, int32_t height) {
            int32_t found_width = 0;
            int32_t found_height = 0;
            image.GetWidth(&found_width);
            image.GetHeight(&found_height);
            return found_width == width && found_height == height;
        };
        EXPECT_TRUE(size_is(wanted_width, wanted_height)) << dots << " " << made_for;
        // Other options don't lose the size.
        image.SetOptions(anchor_top_left);
        EXPECT_TRUE(size_is(wanted_width, wanted_height)) << dots << " " << made_for;
        const RECT place = PlaceOf(image);
        EXPECT_EQ(place.right - place.left, wanted_width);
        EXPECT_EQ(place.bottom - place.top, wanted_height);
    }
}

TEST_F(WindowImage, AsksTheScreenWhereMonitorsTellNoScale)
{
    const Replaced none(late::get_dpi_for_monitor);
    struct Screen {
        static int WINAPI Caps(HDC, int index) { return index == LOGPIXELSX ? Dpi() : 0; }
        static int& Dpi()
        {
            static int dpi = 0;
            return dpi;
        }
    };
    const Replaced caps(late::get_device_caps, &Screen::Caps);
    EXPECT_EQ(MonitorScale(), 100);
    Screen::Dpi() = 144;
    EXPECT_EQ(MonitorScale(), 150);
    Screen::Dpi() = 0;
    const Replaced no_screen(late::get_dc, static_cast<decltype(&GetDC)>([](HWND) { return HDC{}; }));
    EXPECT_EQ(MonitorScale(), 100);
}

TEST_F(WindowImage, OutlivesItsDialogAndTakesItsClassAlong)
{
    {
        CSetupWindowImage image;
        {
            const Dialog dialog;
            ASSERT_EQ(image.Create(Request(dialog)), S_OK);
            ASSERT_EQ(image.Create(Request(dialog)), S_OK);
            image.SetVisible(true);
            UpdateWindow(image.window());
        }
        EXPECT_EQ(image.window(), nullptr);
        image.SetVisible(false);
        EXPECT_EQ(image.SetLeft(3), S_OK);
    }
    WNDCLASSW left{};
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), CSetupWindowImage::window_class, &left));
}

} // namespace
