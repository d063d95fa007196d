#include "gif_unknown_app_ext.h"

using namespace vh;

uint32_t CGifUnknownAppExt::Read(gif_input& input)
{
    std::span<const std::byte> block;
    while (!input.StartsWith(0)) {
        if (!input.SubBlock(block))
            return gif_data_error;
        m_data.push_back(static_cast<uint8_t>(block.size()));
        const auto* bytes = reinterpret_cast<const uint8_t*>(block.data());
        m_data.insert(m_data.end(), bytes, bytes + block.size());
    }
    return gif_done;
}

void CGifUnknownAppExt::Deliver(gif_record& record) const
{
    record.kind = Kind();
    record.extension = {m_data.size(), m_data.data()};
}
