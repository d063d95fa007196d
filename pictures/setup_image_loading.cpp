// Where a picture comes from.
#include <cstring>
#include <vector>

#include "../scriptdata/char_traits.h"
#include "../scriptdata/path_text.h"
#include "formats/gif_header.h"
#include "formats/metafile_file.h"
#include "picture_file.h"
#include "setup_image.h"

using namespace vh;

namespace {

// The system reads a header of the newer kind with the whole table behind it.
struct bitmap_information {
    BITMAPINFOHEADER header;
    union {
        table_color colors[256];
        DWORD masks[3];
    };
};

bitmap_information InformationOf(const bitmap_picture& picture)
{
    bitmap_information made{};
    made.header.biSize = sizeof(made.header);
    made.header.biWidth = picture.width;
    made.header.biHeight = picture.height;
    made.header.biPlanes = 1;
    made.header.biBitCount = picture.bits;
    made.header.biCompression = picture.compression;
    made.header.biSizeImage = static_cast<DWORD>(picture.pixels.size());
    made.header.biClrUsed = static_cast<DWORD>(picture.colors.size());
    if (picture.compression == bitmap_fields)
        std::copy(picture.masks.begin(), picture.masks.end(), made.masks);
    else
        std::copy(picture.colors.begin(), picture.colors.end(), made.colors);
    return made;
}

bool IsExtension(std::wstring_view extension, std::wstring_view wanted)
{
    using folded = std::basic_string_view<wchar_t, char_traitsi>;
    return folded(extension.data(), extension.size()) == folded(wanted.data(), wanted.size());
}

} // namespace

void SetupImage::Clear()
{
    m_bitmap.reset();
    m_metafile.reset();
    m_gdiplus = {};
    m_effect_played = m_loaded = m_widened = false;
    m_width = m_height = 0;
}

bool SetupImage::LoadFromLibrary(HMODULE module, uint32_t number)
{
    Clear();
    const HRSRC place = FindResourceW(module, MAKEINTRESOURCEW(static_cast<WORD>(number)), RT_BITMAP);
    const HGLOBAL loaded = place ? LoadResource(module, place) : nullptr;
    const void* bytes = loaded ? LockResource(loaded) : nullptr;
    bitmap_picture picture;
    return bytes &&
           ReadBitmapResource({static_cast<const std::byte*>(bytes), SizeofResource(module, place)}, picture) ==
               picture_done &&
           LoadBitmap(picture);
}

bool SetupImage::LoadFromFile(const wchar_t* path, uint32_t number)
{
    Clear();
    const std::wstring_view extension = PathExtension(std::wstring_view(path));
    if (extension.empty() || IsExtension(extension, L"dll")) {
        const unique_module library(LoadLibraryW(path));
        return library && LoadFromLibrary(library.get(), number);
    }
    const bool is_bitmap = IsExtension(extension, L"bmp");
    std::vector<std::byte> bytes;
    if ((!is_bitmap && !IsExtension(extension, L"wmf")) || !ReadPictureFile(path, bytes))
        return false;
    if (!is_bitmap)
        return LoadMetafile(bytes);
    bitmap_picture picture;
    return ReadBitmapFile(bytes, picture) == picture_done && LoadBitmap(picture);
}

bool SetupImage::LoadBitmap(const bitmap_picture& picture)
{
    Clear();
    const unique_screen_context screen(late::get_dc(HWND{nullptr}));
    m_paint.depth = late::get_device_caps(screen.get(), BITSPIXEL) * late::get_device_caps(screen.get(), PLANES);
    const saved_context saved(screen.get());
    if (m_paint.uses_palette())
        Realize(screen.get());
    const bitmap_information information = InformationOf(picture);
    BITMAPINFOHEADER header = information.header;
    header.biHeight = std::abs(header.biHeight);
    m_bitmap.reset(late::create_di_bitmap(screen.get(), &header, DWORD{CBM_INIT}, picture.pixels.data(),
                                          reinterpret_cast<const BITMAPINFO*>(&information), UINT{DIB_RGB_COLORS}));
    if (!m_bitmap)
        return false;
    m_width = header.biWidth;
    m_height = header.biHeight;
    return m_loaded = true;
}

bool SetupImage::LoadMetafile(std::span<const std::byte> file)
{
    Clear();
    metafile_picture picture;
    if (ReadMetafile(file, picture) != picture_done)
        return false;
    m_metafile.reset(late::set_metafile_bits(static_cast<UINT>(picture.bits.size()),
                                             reinterpret_cast<const BYTE*>(picture.bits.data())));
    if (!m_metafile)
        return false;
    m_bounds = {picture.left, picture.top, picture.right, picture.bottom};
    m_width = std::abs(picture.right - picture.left);
    m_height = std::abs(picture.bottom - picture.top);
    return m_loaded = true;
}

bool SetupImage::LoadGif(std::span<const std::byte> file)
{
    Clear();
    CGifHeader gif;
    const gif_record* header = nullptr;
    const gif_record* block = nullptr;
    if (gif.Read(file, header) != gif_done)
        return false;
    for (uint32_t which = CGifHeader::from_first; gif.Next(which, block) == gif_done; which = CGifHeader::go_on)
        if (block->kind == gif_image)
            return LoadGif(block->image, header->header);
    return false;
}

bool SetupImage::LoadGif(const gif_image_record& frame, const gif_header_record& header)
{
    const std::span table =
        frame.color_count ? std::span(frame.colors, frame.color_count) : std::span(header.colors, header.color_count);
    bitmap_picture picture;
    picture.width = frame.place.width;
    picture.height = frame.place.height;
    picture.bits = 8;
    picture.colors.assign(table.begin(), table.end());
    picture.pixels = std::as_bytes(std::span(frame.pixels, frame.pixels_size));
    if (frame.control.transparent && frame.control.transparent_index < table.size()) {
        const table_color color = table[frame.control.transparent_index];
        SetTransparent(RGB(color.red, color.green, color.blue));
    }
    return LoadBitmap(picture);
}

bool SetupImage::LoadByGdiplus(HMODULE module, uint32_t number)
{
    return TakeGdiplus(gdiplus_bitmap::FromResource(module, number));
}

bool SetupImage::LoadByGdiplus(const wchar_t* path) { return TakeGdiplus(gdiplus_bitmap::FromFile(path)); }

bool SetupImage::TakeGdiplus(gdiplus_bitmap picture)
{
    Clear();
    if (!picture)
        return false;
    const SIZE size = picture.size();
    m_gdiplus = std::move(picture);
    m_width = static_cast<int32_t>(size.cx);
    m_height = static_cast<int32_t>(size.cy);
    return m_loaded = true;
}
