// Reads arbitrary bytes as a GIF file, and everything that it delivers.
#include "../pictures/formats/gif_header.h"
#include "fuzz.h"

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    CGifHeader reader;
    const vh::gif_record* record = nullptr;
    if (reader.Read(std::as_bytes(std::span(data, size)), record) != vh::gif_done)
        return;
    unsigned sum = 0;
    for (uint32_t which = CGifHeader::from_first; reader.Next(which, record) == vh::gif_done;
         which = CGifHeader::go_on) {
        if (record->kind == vh::gif_image && record->image.pixels_size)
            sum += record->image.pixels[0] + record->image.pixels[record->image.pixels_size - 1];
        else if (record->kind == vh::gif_plain_text)
            sum += static_cast<unsigned char>(record->text.text[record->text.length]);
        Require(reader.Free(record) == vh::gif_done);
    }
    Require(sum != ~0u);
}
