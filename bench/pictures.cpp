// GIF pictures of 16 megapixels, against a decoder with a stack and against GDI+.
#include <cstdlib>
#include <cstring>
#include <memory>

#include "../pictures/formats/gif_header.h"
#include "../pictures/gdiplus_bitmap.h"
#include "../pictures/late_gdiplus.h"
#include "../scriptdata/com_ptr.h"
#include "../tests/support/gif_writer.h"
#include "areas.h"
#include "stack_gif_decoder.h"

namespace bench {

namespace {

constexpr unsigned side = 4096;

struct picture {
    std::string file;
    std::size_t data_at; // the image's compressed data
    std::span<const std::byte> bytes() const { return std::as_bytes(std::span(file)); }
};

template <class Pixel>
picture Make(const Pixel& pixel)
{
    std::vector<uint8_t> pixels(std::size_t{side} * side);
    for (std::size_t y = 0; y < side; ++y)
        for (std::size_t x = 0; x < side; ++x)
            pixels[y * side + x] = pixel(x, y);
    picture made{vh::test::GifScreen(side, side, 8) + vh::test::GifImageHead(0, 0, side, side), 0};
    made.data_at = made.file.size();
    made.file += vh::test::PackGifPixels(pixels) + ";";
    return made;
}

const uint8_t* Decode(CGifHeader& reader, const picture& source)
{
    const vh::gif_record* record = nullptr;
    if (reader.Read(source.bytes(), record) != vh::gif_done || reader.Next(CGifHeader::from_first, record))
        return nullptr;
    return record->image.pixels;
}

struct free_memory {
    void operator()(uint8_t* memory) const { std::free(memory); }
};
using fresh_pixels = std::unique_ptr<uint8_t, free_memory>;

fresh_pixels DecodeOnStack(const picture& source)
{
    fresh_pixels pixels(static_cast<uint8_t*>(std::calloc(std::size_t{side} * side, 1)));
    DecodeWithStack(source.bytes().subspan(source.data_at), pixels.get(), side, side);
    return pixels;
}

// As far as the decoded pixels, which GDI+ makes when they are asked for.
void DecodeByGdiplus(const picture& source)
{
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, source.file.size());
    std::memcpy(GlobalLock(memory), source.file.data(), source.file.size());
    GlobalUnlock(memory);
    vh::com_ptr<IStream> stream;
    vh::late::stream_on_memory(memory, TRUE, stream.put());
    Gdiplus::GpBitmap* handle = nullptr;
    vh::late::bitmap_from_stream(stream.get(), &handle);
    const vh::gdiplus_bitmap bitmap(handle);
    Gdiplus::BitmapData data{};
    const Gdiplus::Rect all(0, 0, side, side);
    vh::late::lock_bits(handle, &all, UINT{Gdiplus::ImageLockModeRead}, PixelFormat8bppIndexed, &data);
    Keep(data.Scan0);
    vh::late::unlock_bits(handle, &data);
}

template <class Run>
work Each(const Run& run)
{
    return {[run](long count) {
        for (; count > 0; --count)
            run();
    }};
}

} // namespace

void Pictures(suite& s)
{
    uint32_t seed = 1;
    const auto random = [&] { return (seed = seed * 1664525 + 1013904223) >> 24; };
    const struct {
        const char* name;
        picture source;
    } cases[] = {
        {"flat", Make([](std::size_t x, std::size_t y) { return static_cast<uint8_t>((x / 256 + y / 256) % 7 * 30); })},
        {"noisy", Make([&](std::size_t, std::size_t) { return static_cast<uint8_t>(random() % 16); })},
    };
    const bool has_gdiplus = vh::StartGdiplus();
    for (const auto& one : cases) {
        const std::string name = std::string("16 megapixels, ") + one.name;
        CGifHeader reader;
        const uint8_t* pixels = Decode(reader, one.source);
        s.Count(name + ": decoders that agree", 1,
                pixels && std::memcmp(pixels, DecodeOnStack(one.source).get(), std::size_t{side} * side) == 0);
        reader.Reset();
        const work own = Each([&] {
            CGifHeader fresh;
            Keep(Decode(fresh, one.source));
        });
        s.Compare(name + ", to a decoder with a stack", 1 / 1.3, own, Each([&] { Keep(DecodeOnStack(one.source)); }));
        if (has_gdiplus)
            s.Compare(name + ", to GDI+", 1 / 2.5, own, Each([&] { DecodeByGdiplus(one.source); }));
    }
}

} // namespace bench
