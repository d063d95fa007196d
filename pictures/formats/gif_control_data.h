// A block of a GIF file that is kept: what all kinds have in common.
#pragma once

#include <span>
#include <vector>

#include "gif_input.h"
#include "gif_record.h"

class CGifControlData {
public:
    virtual ~CGifControlData() = default;
    virtual void Reset() = 0;
    // From behind the introducer, and for an extension its label, up to the block's terminator.
    virtual uint32_t Read(vh::gif_input& input) = 0;
    virtual vh::gif_kind Kind() const = 0;
    virtual void Deliver(vh::gif_record& record) const = 0;

    void SetControl(const vh::gif_control& control) { m_control = control; }
    // The colours that a record of this block takes a copy of.
    virtual std::span<const vh::table_color> colors() const { return {}; }

protected:
    CGifControlData() = default;
    CGifControlData(const CGifControlData&) = default;
    CGifControlData& operator=(const CGifControlData&) = default;

    vh::gif_control m_control{};
};

namespace vh {

// The table that a packed byte announces; none leaves it empty. False when the file ends in it.
bool ReadGifColors(gif_input& input, uint8_t packed, std::vector<table_color>& colors);
bool ReadGifPlace(gif_input& input, gif_place& place);

} // namespace vh
