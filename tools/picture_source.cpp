#include "picture_source.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>

#include "file_bytes.h"
#include "picture_sheet.h"
#include "pictures/formats/metafile_file.h"
#include "scriptdata/char_traits.h"
#include "scriptdata/path_text.h"

namespace tools {

namespace {

// What has no size of its own in pixels is shown at this one.
constexpr SIZE metafile_size{256, 256};

// The formats of the library's own readers, by the extension or by how the file begins.
struct OwnFormat {
    const char* name;
    const wchar_t* extension;
    std::string_view start;
};
constexpr std::array<OwnFormat, 3> own_formats = {{
    {"gif", L"gif", "GIF"},
    {"bmp", L"bmp", "BM"},
    {"wmf", L"wmf", "\xD7\xCD\xC6\x9A"},
}};

std::string FormatOf(const std::wstring& file, std::span<const std::byte> bytes)
{
    using folded = std::basic_string_view<wchar_t, vh::char_traitsi>;
    const std::wstring_view extension = vh::PathExtension(std::wstring_view(file));
    for (const OwnFormat& own : own_formats)
        if (folded(extension.data(), extension.size()) == folded(own.extension))
            return own.name;
    for (const OwnFormat& own : own_formats)
        if (vh::byte_view(bytes).StartsWith(own.start))
            return own.name;
    return {};
}

} // namespace

PictureSource::PictureSource(const std::wstring& file, unsigned frame) : m_file(file), m_bytes(ReadBytes(file))
{
    format = FormatOf(file, m_bytes);
    if (format == "gif")
        ReadGif(frame);
    else if (format == "bmp")
        ReadBitmap(frame);
    else if (format == "wmf")
        ReadMetafile(frame);
    else
        ReadByGdiplus(frame);
}

void PictureSource::ReadGif(unsigned frame)
{
    result = m_gif.Read(m_bytes, m_header);
    if (result != vh::gif_done)
        return;
    frames = m_header->header.frame_count;
    const vh::gif_record* record = nullptr;
    unsigned number = 0;
    for (uint32_t which = CGifHeader::from_first; !m_image; which = CGifHeader::go_on) {
        result = m_gif.Next(which, record);
        if (result != vh::gif_done)
            return;
        if (record->kind == vh::gif_image && number++ == frame)
            m_image = record;
    }
    const vh::gif_image_record& image = m_image->image;
    size = {image.place.width, image.place.height};
    colors = image.color_count ? image.color_count : m_header->header.color_count;
    if (image.control.transparent)
        transparent = image.control.transparent_index;
}

bool PictureSource::IsOnly(unsigned frame)
{
    frames = 1;
    if (frame > 0)
        result = vh::gif_no_more;
    return frame == 0;
}

void PictureSource::ReadBitmap(unsigned frame)
{
    result = vh::ReadBitmapFile(m_bytes, m_bitmap);
    if (result != vh::picture_done || !IsOnly(frame))
        return;
    size = {m_bitmap.width, std::abs(m_bitmap.height)};
    colors = static_cast<uint32_t>(m_bitmap.colors.size());
}

void PictureSource::ReadMetafile(unsigned frame)
{
    vh::metafile_picture picture;
    SetupImage image;
    result = vh::ReadMetafile(m_bytes, picture);
    if (result == vh::picture_done && !image.LoadMetafile(m_bytes))
        result = vh::picture_data_error;
    if (result == vh::picture_done && IsOnly(frame))
        size = metafile_size;
}

void PictureSource::ReadByGdiplus(unsigned frame)
{
    format = "unknown";
    const vh::gdiplus_bitmap picture = vh::gdiplus_bitmap::FromFile(m_file.c_str());
    if (!picture) {
        result = vh::picture_data_error;
        return;
    }
    format = picture.Format();
    if (IsOnly(frame))
        size = picture.size();
}

bool PictureSource::Load(SetupImage& image) const
{
    if (format == "bmp")
        return image.LoadBitmap(m_bitmap);
    if (format == "wmf")
        return image.LoadMetafile(m_bytes);
    if (format != "gif")
        return image.LoadByGdiplus(m_file.c_str());
    return image.LoadGif(m_image->image, m_header->header);
}

std::string PictureSource::Pixels() const
{
    if (m_image) {
        const vh::gif_image_record& frame = m_image->image;
        std::string pixels;
        for (std::size_t row = frame.place.height; row-- > 0;)
            pixels.append(reinterpret_cast<const char*>(frame.pixels) + row * frame.stride, frame.place.width);
        return pixels;
    }
    SetupImage image;
    if (!Load(image))
        throw std::runtime_error("the system can't hold a picture of this size");
    image.SetOptions(vh::option_fixed_size);
    image.SetSize(static_cast<int32_t>(size.cx), static_cast<int32_t>(size.cy));
    const PictureSheet sheet(size);
    image.Draw(sheet.context(), size);
    return sheet.Pixels();
}

} // namespace tools
