#include "gif_plain_text.h"

using namespace vh;

void CGifPlainText::Reset() { *this = {}; }

uint32_t CGifPlainText::Read(gif_input& input)
{
    constexpr uint8_t grid_size = 12;
    uint8_t size = 0;
    if (!input.Byte(size) || size != grid_size || !ReadGifPlace(input, m_place) || !input.Byte(m_cell_width) ||
        !input.Byte(m_cell_height) || !input.Byte(m_foreground) || !input.Byte(m_background))
        return gif_data_error;
    std::span<const std::byte> block;
    while (!input.StartsWith(0)) {
        if (!input.SubBlock(block))
            return gif_data_error;
        m_text.append(reinterpret_cast<const char*>(block.data()), block.size());
    }
    return gif_done;
}

void CGifPlainText::Deliver(gif_record& record) const
{
    record.kind = Kind();
    record.text = {m_place,
                   m_control,
                   m_cell_width,
                   m_cell_height,
                   m_foreground,
                   m_background,
                   static_cast<uint32_t>(m_text.size()),
                   m_text.c_str()};
}
