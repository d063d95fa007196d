// Pictures from files and libraries, drawn and read back.
#include "../../pictures/late_gdiplus.h"
#include "../../pictures/palette.h"
#include "../../pictures/setup_image.h"
#include "../support/bitmap_writer.h"
#include "../support/sheet.h"

namespace {

constexpr DWORD ground = 0xFFFFFF;

// The colors of the first pixels of a sheet, row by row: "FF0000 00FF00 ".
std::string Colors(SetupImage& image, int width, int height)
{
    const Sheet sheet(width + 1, height + 1, ground);
    EXPECT_TRUE(image.Draw(sheet.context(), sheet.size()));
    std::string colors;
    for (int at = 0; at < width * height; ++at)
        colors += ColorText(sheet.Pixel(at % width, at / width)) + " ";
    EXPECT_EACH(ground, sheet.Pixel(width, 0), sheet.Pixel(0, height));
    return colors;
}

// Two rows of two pixels: red green / blue white. The lower row comes first in the file, if not told otherwise.
constexpr const char* four_colors = "FF0000 00FF00 0000FF FFFFFF ";
const std::string table = Long(0xFF0000) + Long(0x00FF00) + Long(0x0000FF) + Long(0xFFFFFF); // red, green, blue, white
const std::string old_table = Number(0xFF0000, 3) + Number(0x00FF00, 3) + Number(0x0000FF, 3) + Number(0xFFFFFF, 3);

std::string Rows(std::string lower, std::string upper)
{
    lower.resize((lower.size() + 3) / 4 * 4);
    upper.resize((upper.size() + 3) / 4 * 4);
    return lower + upper;
}

TEST(PictureLoading, TakesEveryKindOfBitmap)
{
    const TempFolder folder;
    const std::string rows_24 =
        Rows(Number(0x0000FF, 3) + Number(0xFFFFFF, 3), Number(0xFF0000, 3) + Number(0x00FF00, 3));
    const std::string rows_8 = Rows("\2\3", std::string("\0\1", 2)), rows_4 = Rows("\x23", "\x01");
    const struct {
        const char* name;
        std::string file, colors = four_colors;
    } cases[] = {
        {"1 bit", BitmapFile(BitmapHeader(2, 2, 1), table.substr(0, 8), Rows("\x80", "\x40")),
         "FF0000 00FF00 00FF00 FF0000 "},
        {"4 bits", BitmapFile(BitmapHeader(2, 2, 4, 0, 4), table, rows_4)},
        {"8 bits", BitmapFile(BitmapHeader(2, 2, 8, 0, 4), table, rows_8)},
        {"8 bits, top first", BitmapFile(BitmapHeader(2, -2, 8, 0, 4), table, Rows(std::string("\0\1", 2), "\2\3"))},
        {"8 bits, later in the file", BitmapFile(BitmapHeader(2, 2, 8, 0, 4), table, "gap" + rows_8, 14 + 40 + 16 + 3)},
        {"old, 8 bits",
         BitmapFile(Long(12) + Word(2) + Word(2) + Word(1) + Word(8), old_table + std::string(3 * 252, '\0'), rows_8)},
        {"old, 24 bits", BitmapFile(Long(12) + Word(2) + Word(2) + Word(1) + Word(24), "", rows_24)},
        {"16 bits", BitmapFile(BitmapHeader(2, 2, 16), "", Word(0x001F) + Word(0x7FFF) + Word(0x7C00) + Word(0x03E0))},
        {"16 bits, 5 6 5", BitmapFile(BitmapHeader(2, 2, 16, 3), Long(0xF800) + Long(0x07E0) + Long(0x001F),
                                      Word(0x001F) + Word(0xFFFF) + Word(0xF800) + Word(0x07E0))},
        {"24 bits", BitmapFile(BitmapHeader(2, 2, 24), "", rows_24)},
        {"32 bits",
         BitmapFile(BitmapHeader(2, 2, 32), "", Long(0x0000FF) + Long(0xFFFFFF) + Long(0xFF0000) + Long(0x00FF00))},
        {"32 bits, red last", BitmapFile(BitmapHeader(2, 2, 32, 3), Long(0xFF) + Long(0xFF00) + Long(0xFF0000),
                                         Long(0xFF0000) + Long(0xFFFFFF) + Long(0x0000FF) + Long(0x00FF00))},
        {"newest header, fields",
         BitmapFile(BitmapHeader(2, 2, 16, 3, 0, 124).replace(40, 12, Long(0xF800) + Long(0x07E0) + Long(0x001F)), "",
                    Word(0x001F) + Word(0xFFFF) + Word(0xF800) + Word(0x07E0))},
        {"runs of 8", BitmapFile(BitmapHeader(2, 2, 8, 1, 4), table, std::string("\1\2\1\3\0\0\1\0\1\1\0\1", 12))},
        {"runs of 4", BitmapFile(BitmapHeader(2, 2, 4, 2, 4), table, std::string("\2\x23\0\0\2\x01\0\1", 8))}};
    for (const auto& one : cases) {
        SetupImage image;
        ASSERT_TRUE(image.LoadFromFile(folder.Write(L"picture.Bmp", one.file).c_str())) << one.name;
        EXPECT_EQ(Colors(image, 2, 2), one.colors) << one.name;
    }
}

std::wstring StandardLibrary() { return Beside(L"vhtexts_standard.dll"); }

TEST(PictureLoading, LooksForPicturesWhereTheyAreSaidToBe)
{
    const TempFolder folder;
    const std::string good = BitmapFile(BitmapHeader(2, 1, 24), "", Number(0x332211, 3) + Number(0x665544, 3) + "..");
    const std::wstring bitmap = folder.Write(L"good.bmp", good), library = StandardLibrary();
    CopyFileW(library.c_str(), (folder / L"some.dll").c_str(), FALSE);
    const std::string nothing = "FFFFFF FFFFFF ";
    Table<std::wstring, uint32_t, std::string> cases = {
        {bitmap, 0, "332211 665544 "},
        {folder.Write(L"good.txt", good), 0, nothing},
        {bitmap, 0, "332211 665544 "},
        {folder.Write(L"good.wmf", good), 0, nothing},
        {folder.Write(L"other.bmp", "PM" + good.substr(2)), 0, nothing},
        {folder.Write(L"short.bmp", good.substr(0, good.size() - 1)), 0, nothing},
        {folder.Write(L"empty.bmp", ""), 0, nothing},
        {folder / L"some", 301, "FF0000 00FF00 "},
        {folder / L"none.bmp", 0, nothing},
        {library, 301, "FF0000 00FF00 "},
        {L"", 0, nothing},
        {library, 302, nothing},
        {library, 303, nothing},
        {folder / L"none.dll", 301, nothing},
        {folder.Write(L"no library", "text"), 301, nothing}};
    // A picture that fails takes the one before away.
    SetupImage image;
    for (const auto& [file, number, colors] : cases) {
        EXPECT_EQ(image.LoadFromFile(file.c_str(), number), colors != nothing) << file;
        EXPECT_EQ(Colors(image, 2, 1), colors) << file;
    }
}

TEST(PictureLoading, LeavesOtherFormatsToGdiplus)
{
    const unique_module library(LoadLibraryW(StandardLibrary().c_str()));
    SetupImage image;
    ASSERT_TRUE(image.LoadByGdiplus(library.get(), 302));
    EXPECT_EQ(image.size(), (SIZE{3, 2}));
    EXPECT_EQ(Colors(image, 3, 2), "FF0000 00FF00 0000FF 010203 FAF0E6 804020 ");
    ASSERT_TRUE(image.LoadByGdiplus(library.get(), 301));
    EXPECT_EQ(Colors(image, 2, 1), "FF0000 00FF00 ");
    EXPECT_FALSE(image.LoadByGdiplus(library.get(), 303));
    EXPECT_EQ(Colors(image, 1, 1), "FFFFFF ");
    ASSERT_TRUE(image.LoadByGdiplus(library.get(), 302) && image.LoadFromLibrary(library.get(), 301));
    EXPECT_EQ(Colors(image, 2, 1), "FF0000 00FF00 ") << "what GDI+ had is gone";

    const TempFolder folder;
    const HRSRC place = FindResourceW(library.get(), MAKEINTRESOURCEW(302), L"PNG");
    const std::string png(static_cast<const char*>(LockResource(LoadResource(library.get(), place))), 81);
    ASSERT_TRUE(image.LoadByGdiplus(folder.Write(L"picture.png", png).c_str()));
    // The same place as for other pictures.
    image.SetOptions(anchor_bottom_right);
    const Sheet sheet(10, 10, RGB(0, 0, 0));
    image.Draw(sheet.context(), sheet.size());
    EXPECT_EQ(sheet.Pixel(7, 8), 0xFF0000u);
    EXPECT_EQ(sheet.Pixel(9, 9), 0x804020u);
    EXPECT_FALSE(image.LoadByGdiplus((folder / L"none.png").c_str()));

    const gdiplus_bitmap small = gdiplus_bitmap::FromResource(library.get(), 302);
    const gdiplus_bitmap large = small.Resized({30, 20});
    EXPECT_EQ(large.size(), (SIZE{30, 20}));
    EXPECT_TRUE(large.Icon());
    EXPECT_FALSE(gdiplus_bitmap().Resized({3, 2}) || gdiplus_bitmap().Icon());
}

// A display of 8 bits whose palette is the picture's.
TEST(PictureLoading, RealizesThePaletteOfAFileOnDisplaysThatHaveOne)
{
    static UINT realized;
    const Replaced caps(late::get_device_caps, [](HDC context, int index) WINAPI -> int {
        return index == BITSPIXEL ? 8 : index == PLANES ? 1 : GetDeviceCaps(context, index);
    });
    const Replaced realize(late::realize_palette, [](HDC) WINAPI -> UINT { return ++realized; });
    const TempFolder folder;
    const std::string colors = PaletteFile(256, 256, 4 + 1024, 0x030201);
    const unique_palette palette = LoadPalette(folder.Write(L"some.pal", colors).c_str());
    PALETTEENTRY last{};
    EXPECT_GIVES(GetPaletteEntries(palette.get(), 255, 1, &last), 1u, last.peGreen, 3);
    EXPECT_EQ(last.peRed, 0);
    EXPECT_FALSE(LoadPalette((folder / L"none.pal").c_str()));
    EXPECT_FALSE(LoadPalette(folder.Write(L"cut.pal", colors.substr(0, 100)).c_str()));
    const std::string file = BitmapFile(BitmapHeader(1, 1, 24), "", Long(0));
    bitmap_picture picture;
    ASSERT_EQ(ReadBitmapFile(std::as_bytes(std::span(file)), picture), 0u);
    const Sheet sheet(2, 2, ground);
    for (const auto& [of, loading, drawing] : {std::tuple(HPALETTE{}, 0u, 0u), std::tuple(palette.get(), 1u, 2u)}) {
        realized = 0;
        SetupImage image(nullptr, 0, of);
        image.LoadBitmap(picture);
        EXPECT_EQ(realized, loading);
        image.Draw(sheet.context(), sheet.size());
        EXPECT_EQ(realized, loading + drawing);
    }
}

} // namespace
