// An application's own block of a GIF file, as it stands.
#pragma once

#include "gif_control_data.h"

class CGifUnknownAppExt : public CGifControlData {
public:
    void Reset() override { m_data.clear(); }
    uint32_t Read(vh::gif_input& input) override;
    vh::gif_kind Kind() const override { return vh::gif_unknown_extension; }
    void Deliver(vh::gif_record& record) const override;

private:
    // Sub-blocks with their length bytes.
    std::vector<uint8_t> m_data;
};
