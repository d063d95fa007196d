// The window that shows a picture in a dialog, and the text that says which one.
#include "../../dialogs/window_image.h"
#include "../../dialogs/image_spec.h"
#include "../../dialogs/late_dialogs.h"
#include "../../dialogs/monitor_scale.h"
#include "../../scriptdata/late_fallbacks.h"
#include "../support/bitmap_writer.h"
#include "../support/dialog_driver.h"
#include "../support/handle_counts.h"
#include "../support/pixels.h"
#include "../support/sheet.h"

namespace {

constexpr COLORREF magenta = RGB(255, 0, 255);

// 20 x 10: the left half magenta, the right half 0x123456.
std::string HalfAndHalf()
{
    std::string rows;
    for (int y = 0; y < 10; ++y)
        for (int x = 0; x < 20; ++x)
            rows += Long(x < 10 ? 0xFF00FF : 0x123456);
    return BitmapFile(BitmapHeader(20, 10, 32), "", rows);
}

// A picture in a dialog, with what a test asks of it.
struct WindowImage : testing::Test {
    ~WindowImage() override { DestroyWindow(dialog); }
    HWND Add(int left, int top, DWORD style = WS_VISIBLE) const
    {
        return NewWindow(L"Button", WS_CHILD | style, {left, top, left + 30, top + 20}, dialog);
    }
    HRESULT Create() { return image.Create(request); }
    // The size that the picture says of itself.
    SIZE Size() const
    {
        int32_t width = 0, height = 0;
        EXPECT_TRUE(image.GetWidth(&width) == S_OK && image.GetHeight(&height) == S_OK);
        return {width, height};
    }
    COLORREF Pixel(int x, int y) const
    {
        UpdateWindow(image.window());
        return PixelOf(image.window(), x, y);
    }

    const TempFolder folder;
    const std::wstring file = folder.Write(L"picture.bmp", HalfAndHalf());
    HWND dialog = NewWindow(L"Static", WS_POPUP | WS_VISIBLE, {0, 0, 200, 150});
    WindowImageRequest request{.owner = dialog, .file = file.c_str()};
    CSetupWindowImage image;
};

TEST_F(WindowImage, TellsWhatItCanNotCreate)
{
    int32_t size = 7;
    const auto expect_no_size = [&] {
        EXPECT_GIVES(image.GetWidth(&size), E_FAIL, size, 7);
        EXPECT_GIVES(image.GetHeight(&size), E_FAIL, size, 7);
    };
    expect_no_size();
    EXPECT_EACH(E_POINTER, image.GetWidth(nullptr), image.GetHeight(nullptr));
    const std::wstring none = folder / L"none.bmp";
    const HMODULE program = GetModuleHandleW(nullptr);
    Table<const char*, WindowImageRequest> cases = {
        {"no owner", {.file = file.c_str()}},
        {"both", {.owner = dialog, .library = program, .file = file.c_str()}},
        {"neither", {.owner = dialog, .file = L""}},
        {"no such resource", {.owner = dialog, .library = program, .file = L""}},
        {"no such file", {.owner = dialog, .file = none.c_str()}},
        {"no such file for GDI+", {.owner = dialog, .file = none.c_str(), .by_gdiplus = true}}};
    for (const auto& [name, refused] : cases)
        EXPECT_EQ(image.Create(refused), E_INVALIDARG) << name;
    EXPECT_EQ(image.window(), nullptr);
    expect_no_size();
    const Replaced no_window(late::create_window_ex,
                             [](DWORD, const wchar_t*, const wchar_t*, DWORD, int, int, int, int, HWND, HMENU,
                                HINSTANCE, void*) WINAPI -> HWND { return nullptr; });
    EXPECT_EQ(Create(), E_FAIL);
}

TEST_F(WindowImage, StandsHiddenAtTheSizeOfThePicture)
{
    ASSERT_EQ(Create(), S_OK);
    EXPECT_EQ(GetParent(image.window()), dialog);
    EXPECT_FALSE(IsWindowVisible(image.window()));
    EXPECT_TRUE(GetWindowLongW(image.window(), GWL_EXSTYLE) & WS_EX_TRANSPARENT);
    EXPECT_TRUE(GetWindowLongW(image.window(), GWL_STYLE) & WS_CLIPSIBLINGS);
    EXPECT_EQ(Size(), (SIZE{20, 10}));
    const auto move = [&] {
        EXPECT_EACH(S_OK, image.SetLeft(5), image.SetTop(7), image.SetWidth(30), image.SetHeight(40));
    };
    move();
    EXPECT_EQ(PlaceOnScreen(image.window()), (RECT{5, 7, 35, 47}));
    // Nothing moves that stands there already.
    const Replaced moves(late::move_window);
    move();
    EXPECT_THROW(image.SetLeft(6), vh::win32_exception);
}

TEST_F(WindowImage, PaintsThePictureOverItsBackground)
{
    for (const bool transparent : {false, true}) {
        request.transparent = transparent;
        ASSERT_EQ(Create(), S_OK);
        image.SetWidth(30);
        image.SetVisible(true);
        image.SetBackground(RGB(1, 2, 3));
        EXPECT_EQ(Pixel(5, 5), transparent ? RGB(1, 2, 3) : magenta);
        EXPECT_EQ(Pixel(15, 5), RGB(0x12, 0x34, 0x56));
        EXPECT_EQ(Pixel(25, 5), RGB(1, 2, 3));
        image.SetOptions(option_center);
        EXPECT_EQ(Pixel(2, 5), RGB(1, 2, 3));
        EXPECT_EQ(Pixel(18, 5), RGB(0x12, 0x34, 0x56));
        const int handles = OpenGdiObjects();
        for (int i = 0; i < 20; ++i)
            RedrawWindow(image.window(), nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
        EXPECT_EQ(OpenGdiObjects(), handles);
        image.SetVisible(false);
        EXPECT_FALSE(IsWindowVisible(image.window()));
    }
}

TEST_F(WindowImage, TakesItsPlaceInTheOrderOfWindows)
{
    const HWND first = Add(0, 0), second = Add(50, 0), third = Add(100, 0);
    Table<HWND, int32_t, HWND, HWND> cases = {{second, 0, second, third},
                                              {second, WindowImageRequest::before_it, first, second},
                                              {third, 0, third, nullptr},
                                              {first, WindowImageRequest::before_it, nullptr, first}};
    for (const auto& [after, where, before_it, behind_it] : cases) {
        CSetupWindowImage placed;
        request.insert_after = after;
        request.position = where;
        ASSERT_EQ(placed.Create(request), S_OK);
        EXPECT_EQ(GetWindow(placed.window(), GW_HWNDPREV), before_it);
        EXPECT_EQ(GetWindow(placed.window(), GW_HWNDNEXT), behind_it);
    }
}

TEST_F(WindowImage, LeavesControlsOnTop)
{
    const HWND over = Add(10, 5), beside = Add(20, 5), hidden = Add(0, 0, 0);
    ASSERT_EQ(Create(), S_OK);
    image.SetVisible(true);
    for (const HWND control : {over, beside, hidden})
        ValidateRect(control, nullptr);
    UpdateWindow(image.window());
    EXPECT_TRUE(GetUpdateRect(over, nullptr, FALSE));
    EXPECT_FALSE(GetUpdateRect(beside, nullptr, FALSE) || GetUpdateRect(hidden, nullptr, FALSE));
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
    Table<UINT, int32_t, SIZE> cases = {{96, 0, {20, 10}},   {96, 100, {20, 10}},  {96, 200, {10, 5}},
                                        {144, 200, {15, 8}}, {192, 200, {20, 10}}, {192, 100, {20, 10}},
                                        {120, 150, {17, 8}}};
    for (const auto& [dots, made_for, wanted] : cases) {
        s_dpi = dots;
        request.display_size = made_for;
        ASSERT_EQ(Create(), S_OK);
        EXPECT_EQ(Size(), wanted) << dots << " " << made_for;
        // Other options don't lose the size.
        image.SetOptions(anchor_top_left);
        EXPECT_EQ(Size(), wanted) << dots << " " << made_for;
        EXPECT_EQ(PlaceOnScreen(image.window()), (RECT{0, 0, wanted.cx, wanted.cy}));
    }
}

TEST_F(WindowImage, AsksTheScreenWhereMonitorsTellNoScale)
{
    const Replaced none(late::get_dpi_for_monitor);
    const Replaced caps(late::get_device_caps,
                        [](HDC, int index) WINAPI { return index == LOGPIXELSX ? static_cast<int>(s_dpi) : 0; });
    for (const auto& [dots, scale] : {std::pair(0u, 100), {144u, 150}}) {
        s_dpi = dots;
        EXPECT_EQ(MonitorScale(), scale);
    }
    const Replaced no_screen(late::get_dc, [](HWND) WINAPI -> HDC { return nullptr; });
    EXPECT_EQ(MonitorScale(), 100);
}

TEST_F(WindowImage, OutlivesItsDialogAndTakesItsClassAlong)
{
    {
        CSetupWindowImage shown;
        for (int times = 0; times < 2; ++times)
            ASSERT_EQ(shown.Create(request), S_OK);
        shown.SetVisible(true);
        UpdateWindow(shown.window());
        DestroyWindow(dialog);
        EXPECT_EQ(shown.window(), nullptr);
        shown.SetVisible(false);
        EXPECT_EQ(shown.SetLeft(3), S_OK);
    }
    WNDCLASSW left{};
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), CSetupWindowImage::window_class, &left));
}

using Triple = std::array<int, 3>;

TEST(ImageSpec, IsReadFieldByField)
{
    // Text; names, flags, colors, scale, and whether it is a resource's alone and a number.
    Table<const wchar_t*, const wchar_t*, const wchar_t*, bool, bool, Triple, Triple, int, bool, bool> cases = {
        {L"", L"", L"", false, false, {}, {}, 100, false, false},
        {L"a.bmp", L"a.bmp", L"", false, false, {}, {}, 100, false, false},
        {L"@a.bmp,b.bmp", L"a.bmp", L"b.bmp", false, false, {}, {}, 100, false, false},
        {L"10,20", L"10", L"20", false, false, {}, {}, 100, false, true},
        {L"0,20;1;1", L"", L"20", true, true, {}, {}, 100, false, true},
        {L"10,0;0;1x;1,2,3;4,5,6;150", L"10", L"", false, true, {1, 2, 3}, {6, 5, 4}, 150, false, true},
        {L"10", L"10", L"", false, false, {}, {}, 100, false, true},
        {L"x;;;1,2;4,5,6,7;0", L"x", L"", false, false, {}, {6, 5, 4}, 100, false, false},
        {L"x;11;10; 1,-2, 3;;twenty", L"x", L"", true, true, {1, -2, 3}, {}, 100, false, false},
        {L"@@c:\\p.png", L"c:\\p.png", L"c:\\p.png", false, false, {}, {}, 100, true, false},
        {L"@@10777;200;1", L"10777", L"10777", false, false, {}, {}, 200, true, true},
        {L"@@p;0", L"p", L"p", false, false, {}, {}, 100, true, false},
        {L"@!", L"!", L"", false, false, {}, {}, 100, false, false}};
    for (const auto& [text, normal, alternative, flag1, flag2, color1, color2, scale, resource_only, numeric] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        const vh::ImageSpec spec = vh::ParseImageSpec(text);
        EXPECT_EQ(spec.normal.view(), normal);
        EXPECT_EQ(spec.alternative.view(), alternative);
        EXPECT_TRUE(spec.flag1 == flag1 && spec.flag2 == flag2);
        EXPECT_EQ(spec.color1, color1);
        EXPECT_EQ(spec.color2, color2);
        EXPECT_EQ(spec.scale, scale);
        EXPECT_TRUE(spec.resource_only == resource_only && spec.numeric() == numeric);
    }
}

} // namespace
