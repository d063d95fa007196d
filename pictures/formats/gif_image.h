// One image of a GIF file.
#pragma once

#include "gif_control_data.h"
#include "gif_pixels.h"

class CGifImage : public CGifControlData {
public:
    void Reset() override;
    uint32_t Read(vh::gif_input& input) override;
    vh::gif_kind Kind() const override { return vh::gif_image; }
    void Deliver(vh::gif_record& record) const override;
    std::span<const vh::table_color> colors() const override { return m_colors; }

private:
    bool interlaced() const { return m_packed & 0x40; }

    vh::gif_place m_place{};
    uint8_t m_packed = 0;
    std::vector<vh::table_color> m_colors;
    vh::gif_pixels m_pixels;
};
