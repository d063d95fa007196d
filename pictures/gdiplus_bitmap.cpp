#include "gdiplus_bitmap.h"

#include <cstring>

#include "../scriptdata/com_ptr.h"
#include "late_gdiplus.h"

namespace vh {

namespace {

Gdiplus::GpBitmap* Bitmap(void* handle) { return static_cast<Gdiplus::GpBitmap*>(handle); }
Gdiplus::GpImage* Image(void* handle) { return Bitmap(handle); }

struct graphics_traits {
    using value_type = Gdiplus::GpGraphics*;
    static value_type none() { return nullptr; }
    static void close(value_type graphics) { late::delete_graphics(graphics); }
};
using unique_graphics = unique<graphics_traits>;

bool DrawOn(const unique_graphics& graphics, void* bitmap, POINT at, SIZE size)
{
    return late::set_interpolation(graphics.get(), Gdiplus::InterpolationModeHighQualityBicubic) == Gdiplus::Ok &&
           late::draw_image(graphics.get(), Image(bitmap), static_cast<INT>(at.x), static_cast<INT>(at.y),
                            static_cast<INT>(size.cx), static_cast<INT>(size.cy)) == Gdiplus::Ok;
}

struct global_traits {
    using value_type = HGLOBAL;
    static HGLOBAL none() { return nullptr; }
    static void close(HGLOBAL memory) { GlobalFree(memory); }
};

// A stream over a copy of a resource, which it owns.
com_ptr<IStream> StreamOf(HMODULE module, HRSRC place)
{
    com_ptr<IStream> stream;
    const HGLOBAL loaded = LoadResource(module, place);
    const void* bytes = loaded ? LockResource(loaded) : nullptr;
    const DWORD size = SizeofResource(module, place);
    unique<global_traits> memory(bytes ? GlobalAlloc(GMEM_MOVEABLE, size) : nullptr);
    void* copy = memory ? GlobalLock(memory.get()) : nullptr;
    if (!copy)
        return stream;
    std::memcpy(copy, bytes, size);
    GlobalUnlock(memory.get());
    if (SUCCEEDED(late::stream_on_memory(memory.get(), TRUE, stream.put())))
        static_cast<void>(memory.release());
    return stream;
}

} // namespace

void gdiplus_bitmap_traits::close(value_type bitmap) { late::dispose_image(Image(bitmap)); }

bool StartGdiplus()
{
    static const bool started = [] {
        Gdiplus::GdiplusStartupInput input;
        ULONG_PTR token = 0;
        return late::gdiplus_startup && late::gdiplus_startup(&token, &input, nullptr) == Gdiplus::Ok;
    }();
    return started;
}

gdiplus_bitmap gdiplus_bitmap::FromFile(const wchar_t* path)
{
    Gdiplus::GpBitmap* bitmap = nullptr;
    if (StartGdiplus())
        late::bitmap_from_file(path, &bitmap);
    return gdiplus_bitmap(bitmap);
}

gdiplus_bitmap gdiplus_bitmap::FromResource(HMODULE module, uint32_t number)
{
    Gdiplus::GpBitmap* bitmap = nullptr;
    if (!StartGdiplus())
        return {};
    const wchar_t* name = MAKEINTRESOURCEW(static_cast<WORD>(number));
    if (const HRSRC place = FindResourceW(module, name, L"PNG")) {
        if (const com_ptr<IStream> stream = StreamOf(module, place))
            late::bitmap_from_stream(stream.get(), &bitmap);
    } else if (FindResourceW(module, name, RT_BITMAP)) {
        late::bitmap_from_resource(module, name, &bitmap);
    }
    return gdiplus_bitmap(bitmap);
}

SIZE gdiplus_bitmap::size() const
{
    UINT width = 0;
    UINT height = 0;
    if (m_bitmap) {
        late::get_image_width(Image(m_bitmap.get()), &width);
        late::get_image_height(Image(m_bitmap.get()), &height);
    }
    return {static_cast<LONG>(width), static_cast<LONG>(height)};
}

bool gdiplus_bitmap::Draw(HDC target, POINT at, SIZE size) const
{
    unique_graphics graphics;
    return late::graphics_of_dc(target, graphics.put()) == Gdiplus::Ok && DrawOn(graphics, m_bitmap.get(), at, size);
}

gdiplus_bitmap gdiplus_bitmap::Resized(SIZE size) const
{
    Gdiplus::GpBitmap* bitmap = nullptr;
    BYTE* const own_memory = nullptr;
    if (m_bitmap)
        late::bitmap_from_memory(static_cast<INT>(size.cx), static_cast<INT>(size.cy), 0, PixelFormat32bppARGB,
                                 own_memory, &bitmap);
    gdiplus_bitmap made(bitmap);
    unique_graphics graphics;
    if (!made || late::graphics_of_image(Image(bitmap), graphics.put()) != Gdiplus::Ok ||
        !DrawOn(graphics, m_bitmap.get(), {0, 0}, size))
        return {};
    return made;
}

const char* gdiplus_bitmap::Format() const
{
    // The identifiers differ in their first part alone.
    struct row {
        uint32_t first;
        const char* name;
    };
    static constexpr row formats[] = {{0xB96B3CAB, "bmp"},  {0xB96B3CAC, "emf"},  {0xB96B3CAD, "wmf"},
                                      {0xB96B3CAE, "jpeg"}, {0xB96B3CAF, "png"},  {0xB96B3CB0, "gif"},
                                      {0xB96B3CB1, "tiff"}, {0xB96B3CB2, "exif"}, {0xB96B3CB5, "icon"}};
    GUID format{};
    if (m_bitmap)
        late::get_image_format(Image(m_bitmap.get()), &format);
    for (const row& one : formats)
        if (format.Data1 == one.first)
            return one.name;
    return "unknown";
}

unique_icon gdiplus_bitmap::Icon() const
{
    unique_icon icon;
    if (m_bitmap)
        late::icon_from_bitmap(Bitmap(m_bitmap.get()), icon.put());
    return icon;
}

} // namespace vh
