// How fast bytes come in, and how many to ask for next.
#pragma once

#include <cstdint>

namespace vh {

// Looks at a recent stretch of 30 to 60 seconds: one window is in use while the next fills beside it.
class transfer_rate {
public:
    void clear() { *this = {}; }

    // One pass of a transfer: bytes, and clock units of which a second has `frequency`.
    void add(uint32_t bytes, uint64_t units, uint64_t frequency)
    {
        m_used.add(bytes, units, frequency);
        m_next.add(bytes, units, frequency);
    }

    // Bytes to ask for: small reads at first, for early progress on a slow line, then what 15 seconds bring.
    uint64_t chunk(uint32_t now_ms)
    {
        constexpr uint32_t measured_after_ms = 10001;
        constexpr uint64_t first_chunk = 1500;
        constexpr uint64_t seconds = 15;
        if (m_used.ms < measured_after_ms || m_used.bytes == 0)
            return first_chunk;
        const uint64_t wanted = seconds * bytes_per_second(now_ms);
        return wanted ? wanted : 1;
    }

    uint64_t bytes_per_second(uint32_t now_ms)
    {
        constexpr uint32_t window_length_ms = 30000;
        if (now_ms - m_swapped_ms > window_length_ms) {
            m_used = m_next;
            m_next = {};
            m_swapped_ms = now_ms;
        }
        uint64_t rate = 0;
        for (uint32_t scale = 10; scale <= 1000 && rate == 0; scale *= 10) {
            if (m_used.bytes > UINT32_MAX / scale && m_used.ms > 1) {
                m_used.bytes /= 2;
                m_used.ms /= 2;
            }
            if (m_used.ms == 0)
                return m_used.bytes;
            rate = uint64_t{m_used.bytes} * scale / m_used.ms * 1000 / scale;
        }
        return rate;
    }

private:
    struct window {
        uint32_t bytes = 0;
        uint32_t us = 0;
        uint32_t ms = 0;

        void add(uint32_t more, uint64_t units, uint64_t frequency)
        {
            bytes += more;
            if (units * 1000 >= frequency) {
                ms += static_cast<uint32_t>(units * 1000 / frequency);
                units = units * 1000 % frequency / 1000;
            }
            us += static_cast<uint32_t>(units * 1000000 / frequency);
            if (us > 1000) {
                ms += us / 1000;
                us %= 1000;
            }
        }
    };

    window m_used;
    window m_next;
    // Tick count of the last swap.
    uint32_t m_swapped_ms = 0;
};

} // namespace vh
