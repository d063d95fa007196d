// Codes of a changing number of bits, least significant first, out of a chain of sub-blocks.
#pragma once

#include <bit>
#include <cstring>

#include "gif_input.h"

namespace vh {

class gif_code_reader {
public:
    static constexpr unsigned end_of_data = ~0u;

    explicit gif_code_reader(gif_input& input) : m_input(input) {}

    // At most 12 bits. A sub-block is fetched when its first bit is needed, never earlier.
    unsigned Next(unsigned size)
    {
        if (m_count < size && !Fill(size))
            return end_of_data;
        const auto code = static_cast<unsigned>(m_bits & ((1u << size) - 1));
        m_bits >>= size;
        m_count -= size;
        return code;
    }

private:
    bool Fill(unsigned wanted)
    {
        if (m_block.size() >= sizeof(uint64_t) && std::endian::native == std::endian::little) {
            uint64_t next;
            std::memcpy(&next, m_block.data(), sizeof(next));
            m_bits |= next << m_count;
            const unsigned bytes = (63 - m_count) / 8;
            m_block = m_block.subspan(bytes);
            m_count += 8 * bytes;
            // What was taken above the counted bits comes again with the next filling, as the same bits.
            m_bits &= (uint64_t{1} << m_count) - 1;
            return true;
        }
        while (m_count < wanted) {
            if (m_block.empty() && (!m_input.SubBlock(m_block) || m_block.empty()))
                return false;
            m_bits |= std::to_integer<uint64_t>(m_block.front()) << m_count;
            m_block = m_block.subspan(1);
            m_count += 8;
        }
        return true;
    }

    gif_input& m_input;
    std::span<const std::byte> m_block;
    uint64_t m_bits = 0;
    unsigned m_count = 0;
};

} // namespace vh
