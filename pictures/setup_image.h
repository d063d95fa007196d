// A picture of a setup: a bitmap, a metafile or what GDI+ reads, with the way it is drawn.
#pragma once

#include <span>
#include <string_view>

#include "formats/bitmap_file.h"
#include "formats/gif_record.h"
#include "gdiplus_bitmap.h"
#include "picture_stage.h"

// What a picture has to know of the place where it is painted.
struct PaintInfo {
    // Bits of a pixel of the display.
    int depth = 0;
    HWND window = nullptr;
    int32_t effect = 0;
    // Belongs to the caller; of use on displays with a palette alone.
    HPALETTE palette = nullptr;
    bool realizing = false;
    COLORREF transparent = default_transparent;

    static constexpr COLORREF default_transparent = 0xFF00FF;
    bool uses_palette() const { return palette && depth <= 8; }
};

class SetupImage {
public:
    explicit SetupImage(HWND window = nullptr, int32_t effect = 0, HPALETTE palette = nullptr);

    // False when there is no such picture, or nothing that can be drawn; then the picture is empty.
    bool LoadFromLibrary(HMODULE module, uint32_t number);
    // By the name's extension: ".bmp", ".wmf", or a library (".dll" or none) with a bitmap of that number.
    bool LoadFromFile(const wchar_t* path, uint32_t number = 0);
    bool LoadByGdiplus(HMODULE module, uint32_t number);
    bool LoadByGdiplus(const wchar_t* path);
    bool LoadBitmap(const vh::bitmap_picture& picture);
    bool LoadMetafile(std::span<const std::byte> file);
    // The first picture of a GIF file; its transparent colour becomes that of this picture.
    bool LoadGif(std::span<const std::byte> file);
    // One picture of a file whose table serves those without one of their own.
    bool LoadGif(const vh::gif_image_record& frame, const vh::gif_header_record& header);

    // Flags of vh::picture_option.
    uint32_t options() const { return m_options; }
    void SetOptions(uint32_t options) { m_options = options; }
    // Distances from the anchor, or vh::centered_position.
    void SetPosition(int32_t x, int32_t y);
    // Factors or a size, as the options say.
    void SetSize(int32_t width, int32_t height);
    void SetTransparent(COLORREF color) { m_transparent = color; }

    // Its own size in pixels; a metafile has that of its bounds.
    SIZE size() const { return {m_width, m_height}; }
    // The size that it is drawn at.
    SIZE TargetSize() const { return TargetSize(m_options); }
    // Onto `client` pixels from the target's origin. False when there is nothing to draw with.
    bool Draw(HDC target, SIZE client, uint32_t more_options = 0);

private:
    void Clear();
    bool TakeGdiplus(vh::gdiplus_bitmap picture);
    SIZE TargetSize(uint32_t options) const;
    POINT PlaceOf(SIZE size, SIZE client, uint32_t options) const;
    vh::drawing_kind KindOf(uint32_t options) const;
    void DrawAs(vh::drawing_kind kind, vh::picture_stage stage);
    void DrawEffect(vh::drawing_kind kind, vh::picture_stage stage);
    void Widen(HDC target, SIZE client);
    // Into `context`, which the caller restores.
    void Realize(HDC context);

    vh::unique_bitmap m_bitmap;
    vh::unique_metafile m_metafile;
    vh::metafile_bounds m_bounds;
    bool m_effect_played = false;
    bool m_loaded = false;
    int32_t m_width = 0;
    int32_t m_height = 0;
    bool m_widened = false;
    COLORREF m_transparent = PaintInfo::default_transparent;
    uint32_t m_options = 0;
    int32_t m_x = 0;
    int32_t m_y = 0;
    int32_t m_size_x = vh::scale_of_one;
    int32_t m_size_y = vh::scale_of_one;
    PaintInfo m_paint;
    vh::gdiplus_bitmap m_gdiplus;
};
