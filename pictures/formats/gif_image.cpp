#include "gif_image.h"

#include <memory>
#include <new>

#include "gif_decoder.h"

using namespace vh;

void CGifImage::Reset()
{
    m_place = {};
    m_packed = 0;
    m_colors.clear();
    m_pixels.Clear();
}

uint32_t CGifImage::Read(gif_input& input)
{
    if (!ReadGifPlace(input, m_place) || !input.Byte(m_packed) || !ReadGifColors(input, m_packed, m_colors))
        return gif_data_error;
    if (!input.TakeRoom(gif_pixels::StrideOf(m_place.width) * m_place.height) || !m_pixels.Allocate(m_place))
        return gif_out_of_memory;
    const std::unique_ptr<CGifDecoder> decoder(new (std::nothrow) CGifDecoder(m_pixels, interlaced()));
    return decoder ? decoder->Decode(input) : gif_out_of_memory;
}

void CGifImage::Deliver(gif_record& record) const
{
    constexpr uint8_t sorted = 0x20;
    record.kind = Kind();
    record.image.place = m_place;
    record.image.control = m_control;
    record.image.interlaced = interlaced();
    record.image.sorted = (m_packed & sorted) != 0;
    record.image.pixels = m_pixels.data();
    record.image.pixels_size = m_pixels.size();
    record.image.stride = static_cast<uint32_t>(m_pixels.stride());
}
