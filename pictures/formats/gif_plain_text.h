// A text that a GIF file wants drawn in a grid of cells.
#pragma once

#include <string>

#include "gif_control_data.h"

class CGifPlainText : public CGifControlData {
public:
    void Reset() override;
    uint32_t Read(vh::gif_input& input) override;
    vh::gif_kind Kind() const override { return vh::gif_plain_text; }
    void Deliver(vh::gif_record& record) const override;

private:
    vh::gif_place m_place{};
    uint8_t m_cell_width = 0;
    uint8_t m_cell_height = 0;
    uint8_t m_foreground = 0;
    uint8_t m_background = 0;
    std::string m_text;
};
