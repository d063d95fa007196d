// Pictures drawn on memory, compared pixel by pixel.
#include "../../pictures/late_drawing.h"
#include "../../pictures/option_text.h"
#include "../../pictures/setup_image.h"
#include "../support/bitmap_writer.h"
#include "../support/sheet.h"

namespace {

constexpr DWORD ground = 0x102030; // of the sheet, as 0xRRGGBB
constexpr COLORREF ground_color = RGB(0x10, 0x20, 0x30);
constexpr int width = 16, height = 12;

// The picture under test: no two pixels are alike, but for the quarter that is to be left out.
constexpr bool LeftOut(int x, int y) { return x < width / 2 && y < height / 2; }
constexpr DWORD PixelAt(int x, int y)
{
    return LeftOut(x, y) ? 0xFF00FF : static_cast<DWORD>(0x400000 + (x * 8 << 8) + y * 8);
}

SetupImage Loaded(uint32_t options = 0, int32_t effect = 0)
{
    std::vector<DWORD> pixels;
    for (int at = 0; at < width * height; ++at)
        pixels.push_back(PixelAt(at % width, at / width));
    bitmap_picture picture;
    picture.width = width;
    picture.height = -height;
    picture.bits = 32;
    picture.pixels = std::as_bytes(std::span(pixels));
    SetupImage image(nullptr, effect);
    EXPECT_TRUE(image.LoadBitmap(picture));
    image.SetOptions(options);
    return image;
}

// What is wrong with a sheet that should show `wanted`; empty when nothing is.
std::string Differences(const Sheet& sheet, const std::function<DWORD(int, int)>& wanted)
{
    for (int y = 0; y < sheet.size().cy; ++y)
        for (int x = 0; x < sheet.size().cx; ++x)
            if (sheet.Pixel(x, y) != wanted(x, y))
                return ColorText(sheet.Pixel(x, y)) + " instead of " + ColorText(wanted(x, y)) + " at " +
                       std::to_string(x) + ", " + std::to_string(y);
    return {};
}

// The picture at a place, every pixel `times` as large, on the sheet's ground.
std::function<DWORD(int, int)> PictureAt(int left, int top, int times = 1)
{
    return [=](int x, int y) {
        const bool inside = x >= left && y >= top && x < left + times * width && y < top + times * height;
        return inside ? PixelAt((x - left) / times, (y - top) / times) : ground;
    };
}

TEST(Pictures, StandWhereAnchorsPositionsAndSizesPutThem)
{
    constexpr int32_t middle = centered_position;
    // Of two anchors the last one in the order 8, 4, 2, 1 holds.
    Table<uint32_t, int32_t, int32_t, int, int> cases = {{0, 3, 5, 3, 5},
                                                         {anchor_top_left, 3, 5, 3, 5},
                                                         {anchor_top_right, 3, 5, 60 - 16 - 3, 5},
                                                         {anchor_bottom_left, 3, 5, 3, 50 - 12 - 5},
                                                         {anchor_bottom_right, 3, 5, 60 - 16 - 3, 50 - 12 - 5},
                                                         {anchor_bottom_left | anchor_top_right, 3, 5, 60 - 16 - 3, 5},
                                                         {anchor_bottom_right | anchor_top_left, 3, 5, 3, 5},
                                                         {anchor_bottom_right, middle, 5, 22, 50 - 12 - 5},
                                                         {anchor_bottom_right, 3, middle, 60 - 16 - 3, 19},
                                                         {0, middle, middle, 22, 19},
                                                         {option_center | anchor_bottom_right, 3, 5, 22, 19},
                                                         {0, -4, -2, -4, -2},
                                                         {0, 55, 45, 55, 45}};
    for (const auto& [flags, x, y, left, top] : cases) {
        Sheet sheet(60, 50, ground_color);
        SetupImage image = Loaded(flags);
        image.SetPosition(x, y);
        EXPECT_TRUE(image.Draw(sheet.context(), sheet.size()));
        EXPECT_EQ(Differences(sheet, PictureAt(left, top)), "") << flags << " " << x << " " << y;
    }
}

TEST(Pictures, TakeTheSizeThatTheOptionsSay)
{
    Table<uint32_t, int32_t, int32_t, SIZE> cases = {{0, 5, 5, {16, 12}},
                                                     {option_fixed_size, 5, 7, {5, 7}},
                                                     {option_scale, 50000, 200000, {8, 24}},
                                                     {option_scale, 33333, 99999, {5, 11}},
                                                     {option_scale | option_fixed_size, 200000, 100000, {32, 12}}};
    for (const auto& [flags, size_x, size_y, wanted] : cases) {
        SetupImage image = Loaded(flags);
        image.SetSize(size_x, size_y);
        EXPECT_EQ(image.TargetSize(), wanted);
        // What is drawn begins and ends at the edges of that size.
        Sheet sheet(60, 50, ground_color);
        image.SetPosition(10, 10);
        image.Draw(sheet.context(), sheet.size());
        for (int x = 0; x < 60; ++x)
            EXPECT_EQ(sheet.Pixel(x, 10 + wanted.cy / 2) != ground, x >= 10 && x < 10 + wanted.cx) << x;
        for (int y = 0; y < 50; ++y)
            EXPECT_EQ(sheet.Pixel(10 + wanted.cx / 2, y) != ground, y >= 10 && y < 10 + wanted.cy) << y;
    }
}

TEST(Pictures, LeaveOneColorOut)
{
    for (const int times : {1, 2, 3}) {
        Sheet sheet(60, 50, ground_color);
        SetupImage image = Loaded(option_scale);
        image.SetSize(times * scale_of_one, times * scale_of_one);
        image.SetPosition(2, 3);
        SetBkColor(sheet.context(), RGB(1, 2, 3));
        for (int draws = 0; draws < 2; ++draws)
            image.Draw(sheet.context(), sheet.size(), option_transparent);
        const auto shown = [whole = PictureAt(2, 3, times)](int x, int y) {
            return whole(x, y) == 0xFF00FF ? ground : whole(x, y);
        };
        EXPECT_EQ(Differences(sheet, shown), "") << times;
        EXPECT_EQ(GetBkColor(sheet.context()), RGB(1, 2, 3));
    }
    // Another color than the usual one.
    Sheet sheet(20, 20, ground_color);
    SetupImage image = Loaded(option_transparent);
    image.SetTransparent(RGB(0x40, 15 * 8, 11 * 8));
    image.Draw(sheet.context(), sheet.size());
    EXPECT_EQ(Differences(sheet, [&](int x, int y) { return x == 15 && y == 11 ? ground : PictureAt(0, 0)(x, y); }),
              "");
}

TEST(Pictures, TileFillAndWiden)
{
    Sheet tiles(40, 30, ground_color);
    SetupImage image = Loaded(option_tile);
    image.SetPosition(5, 5);
    image.Draw(tiles.context(), tiles.size());
    EXPECT_EQ(Differences(tiles, [](int x, int y) { return PixelAt(x % width, y % height); }), "");

    // Widened once: the second sheet shows what was made for the first.
    image = Loaded(option_full);
    Sheet wide(20, 18, ground_color);
    SetBkColor(wide.context(), RGB(9, 8, 7));
    image.Draw(wide.context(), wide.size());
    const auto widened = [](int x, int y) {
        const DWORD shown = PictureAt(2, 3)(x, y);
        return shown == ground ? 0x090807 : shown;
    };
    EXPECT_EQ(Differences(wide, widened), "");
    EXPECT_EQ(image.size().cx, 20);
    Sheet wider(24, 20, ground_color);
    image.Draw(wider.context(), wider.size());
    EXPECT_EQ(Differences(wider, [&](int x, int y) { return x < 20 && y < 18 ? widened(x, y) : ground; }), "");

    // Blocks of one color stay what they are, wherever the stretching cuts.
    image = Loaded(option_stretch);
    Sheet stretched(160, 120, ground_color);
    image.Draw(stretched.context(), stretched.size());
    for (const auto& [x, y] : {std::pair(1, 1), {70, 1}, {1, 50}, {70, 50}})
        EXPECT_EQ(stretched.Pixel(x, y), 0xFF00FFu);
    EXPECT_NE(stretched.Pixel(159, 119), ground);
}

// The copies that a drawing makes on its target, as rectangles; one of them fails.
std::string CopiesOf(SetupImage& image, const Sheet& sheet, int fails_at = 0)
{
    static std::string seen;
    static int left;
    seen.clear();
    left = fails_at;
    const auto note = [](HDC to, int x, int y, int cx, int cy, HDC from, int from_x, int from_y, DWORD how) -> BOOL {
        seen += std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(cx) + "x" + std::to_string(cy) +
                (how == SRCCOPY ? ";" : "*;");
        return --left != 0 && BitBlt(to, x, y, cx, cy, from, from_x, from_y, how);
    };
    const Replaced noted(late::bit_blt, note);
    EXPECT_TRUE(image.Draw(sheet.context(), sheet.size()));
    return seen;
}

std::string Times(int count, const std::string& text) { return count ? text + Times(count - 1, text) : ""; }

TEST(Pictures, AppearWithTheirEffectOnce)
{
    const std::string whole = "0,0 16x12;";
    Table<int32_t, std::string, int, std::string> cases = {
        {0, whole, 0, ""},
        {1, Times(19, "0,0 16x12*;") + whole, 2, Times(2, "0,0 16x12*;") + whole},
        {2, Times(20, whole), 3, Times(4, whole)},
        {3, Times(20, whole), 3, Times(4, whole)},
        {4, "0,0 4x12;12,0 4x12;8,0 4x12;4,0 4x12;" + whole, 2, "0,0 4x12;12,0 4x12;"},
        {5, "0,0 16x2;0,10 16x2;0,4 16x2;0,6 16x2;0,8 16x2;0,2 16x2;" + whole, 1, "0,0 16x2;"},
        {6,
         "0,0 16x1;0,11 16x1;0,0 1x12;15,0 1x12;5,5 6x1;5,6 6x1;5,5 1x2;10,5 1x2;"
         "2,2 12x1;2,9 12x1;2,2 1x8;13,2 1x8;3,3 10x1;3,8 10x1;3,3 1x6;12,3 1x6;"
         "4,4 8x1;4,7 8x1;4,4 1x4;11,4 1x4;1,1 14x1;1,10 14x1;1,1 1x10;14,1 1x10;" +
             whole,
         1, "0,0 16x1;" + whole},
        {7, whole, 0, ""},
        {8, whole, 0, ""},
        {-1, whole, 0, ""}};
    for (const auto& [number, expected, fails_at, copies_of_failing] : cases) {
        Sheet sheet(20, 20, ground_color);
        SetupImage image = Loaded(0, number);
        EXPECT_EQ(CopiesOf(image, sheet), expected) << number;
        EXPECT_EQ(Differences(sheet, PictureAt(0, 0)), "") << number;
        EXPECT_EQ(CopiesOf(image, sheet), whole) << number;
        image = Loaded(0, number);
        if (fails_at) {
            EXPECT_EQ(CopiesOf(image, sheet, fails_at), copies_of_failing) << number;
        }
    }
}

// Between the steps only whole pixels of the picture appear, more with each step; a dissolve shows them in patterns of
// eight by eight.
TEST(Pictures, ComeIntoViewStepByStep)
{
    static std::vector<int> shown;
    static std::optional<Sheet> sheet;
    const auto look = [](HDC to, int x, int y, int cx, int cy, HDC from, int from_x, int from_y, DWORD how) -> BOOL {
        const BOOL done = BitBlt(to, x, y, cx, cy, from, from_x, from_y, how);
        shown.push_back(0);
        for (int at = 0; at < width * height; ++at) {
            const int column = at % width, row = at / width;
            const bool here = sheet->Pixel(column, row) == PixelAt(column, row);
            EXPECT_TRUE(here || sheet->Pixel(column, row) == ground);
            EXPECT_TRUE(how == SRCCOPY || column >= 8 ||
                        here == (sheet->Pixel(column + 8, row) == PixelAt(column + 8, row)));
            shown.back() += here;
        }
        return done;
    };
    const Replaced noted(late::bit_blt, look);
    // How much is there in the middle, at least and at most.
    Table<int32_t, int, int> cases = {{1, 50, 190}, {2, 48, 48}, {3, 96, 96}, {4, 96, 96}, {5, 96, 96}};
    for (const auto& [effect, least, most] : cases) {
        shown.clear();
        sheet.emplace(20, 20, ground_color);
        Loaded(0, effect).Draw(sheet->context(), sheet->size());
        EXPECT_TRUE(std::ranges::is_sorted(shown)) << effect;
        const int middle = shown[(shown.size() - 1) / 2 - (effect > 3)];
        EXPECT_TRUE(middle >= least && middle <= most) << effect << " " << middle;
    }
    sheet.reset();
}

// A metafile that fills the left half of its bounds (-10, 20) to (90, 70); it may tell more words than there are.
void LoadMetafile(SetupImage& image, std::size_t words_more = 0)
{
    const HDC recorder = CreateMetaFileW(nullptr);
    SelectObject(recorder, GetStockObject(WHITE_BRUSH));
    SelectObject(recorder, GetStockObject(NULL_PEN));
    Rectangle(recorder, -10, 20, 41, 71);
    const HMETAFILE metafile = CloseMetaFile(recorder);
    std::string bits(GetMetaFileBitsEx(metafile, 0, nullptr), '\0');
    GetMetaFileBitsEx(metafile, static_cast<UINT>(bits.size()), bits.data());
    DeleteMetaFile(metafile);
    bits.replace(6, 4, Long(bits.size() / 2 + words_more));
    const std::string bounds = Word(0xFFF6) + Word(20) + Word(90) + Word(70);
    const std::string file = Long(0x9AC6CDD7) + Word(0) + bounds + Word(1000) + Long(0) + Word(0) + bits;
    ASSERT_TRUE(image.LoadFromFile(TempFolder().Write(L"left.WMF", file).c_str()));
    EXPECT_EQ(image.size(), (SIZE{100, 50}));
}

TEST(Pictures, PlayMetafilesAtTheirPlace)
{
    constexpr DWORD white = 0xFFFFFF;
    // tested well inside and well outside of its right edge
    Table<uint32_t, int32_t, int, int, int, int> cases = {
        {0, 0, 5, 6, 55, 56}, {option_transparent, 0, 5, 6, 55, 56}, {option_fixed_size, 0, 5, 6, 25, 36},
        {0, 2, 5, 6, 55, 56}, {option_full, 0, 0, 0, 60, 100},       {option_stretch, 0, 0, 0, 60, 100}};
    for (const auto& [flags, number, left, top, right, bottom] : cases) {
        Sheet sheet(120, 100, ground_color);
        SetupImage image = Loaded(0, number); // the bitmap goes
        LoadMetafile(image);
        image.SetOptions(flags);
        image.SetPosition(5, 6);
        image.SetSize(40, 30);
        EXPECT_TRUE(image.Draw(sheet.context(), sheet.size()));
        EXPECT_EQ(sheet.Pixel(left + 2, top + 2), white) << flags;
        EXPECT_EQ(sheet.Pixel(right - 3, bottom - 3), white) << flags;
        EXPECT_EQ(sheet.Pixel(right + 3, bottom - 3), ground) << flags;
    }
    // At each place of its size, from the origin.
    Sheet sheet(210, 110, ground_color);
    SetupImage image;
    LoadMetafile(image, 1000);
    image.SetOptions(option_tile);
    image.Draw(sheet.context(), sheet.size());
    for (const auto& [x, y] : {std::pair(2, 2), {102, 2}, {2, 52}, {202, 102}})
        EXPECT_EQ(sheet.Pixel(x, y), white);
    EXPECT_EQ(sheet.Pixel(60, 2), ground);
}

TEST(Pictures, OptionTextNamesTheFlags)
{
    Table<std::string_view, uint32_t> cases = {
        {"LOWER_LEFT,SCALE", 0x100008}, {"", 0},
        {",nothing,TRANSPARENT,", 32},  {"UPPER_RIGHT", 1},
        {"transparent, SCALE", 0},      {"UPPER_LEFT,LOWER_RIGHT,TRANSPARENT,VCENTER,HCENTER", 2 | 4 | 32 | 256 | 512}};
    for (const auto& [text, flags] : cases)
        EXPECT_EQ(ReadOptionText(text), flags) << text;
    EXPECT_EQ(drawing_options, 0x10002Fu);
}

} // namespace
