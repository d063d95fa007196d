// The trace file's format: records of a 32-bit little-endian length and that many scrambled bytes.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vh {

inline constexpr std::size_t trace_record_limit = 16384;

// In place; the position counts from 0 in every record.
inline void TraceScramble(std::span<std::byte> payload)
{
    unsigned step = 0;
    for (std::byte& b : payload) {
        const auto moved = static_cast<std::uint8_t>(std::to_integer<unsigned>(b) + step);
        b = std::byte{static_cast<std::uint8_t>(std::rotl(moved, 2) ^ 33)};
        step = step == 70 ? 0 : step + 1;
    }
}

inline void TraceDescramble(std::span<std::byte> payload)
{
    unsigned step = 0;
    for (std::byte& b : payload) {
        const auto stored = static_cast<std::uint8_t>(std::to_integer<unsigned>(b) ^ 33);
        b = std::byte{static_cast<std::uint8_t>(std::rotr(stored, 2) - step)};
        step = step == 70 ? 0 : step + 1;
    }
}

inline std::uint32_t TraceRecordLength(std::span<const std::byte, 4> prefix)
{
    std::uint32_t length = 0;
    for (std::size_t i = 4; i-- > 0;)
        length = length << 8 | std::to_integer<std::uint32_t>(prefix[i]);
    return length;
}

enum class trace_status {
    record,  // a whole record was taken
    end,     // nothing is left
    partial, // the data ends inside a record: cut off, or still being written
    damaged  // a length that no record has
};

// Walks the records of a trace file that is in memory.
class trace_reader {
public:
    explicit trace_reader(std::span<const std::byte> data) : m_data(data) {}

    // The still scrambled payload of the next record. Only trace_status::record moves on.
    trace_status next(std::span<const std::byte>& payload)
    {
        const auto rest = m_data.subspan(m_offset);
        if (rest.empty())
            return trace_status::end;
        if (rest.size() < 4)
            return trace_status::partial;
        const std::uint32_t length = TraceRecordLength(rest.first<4>());
        if (length > trace_record_limit)
            return trace_status::damaged;
        if (rest.size() - 4 < length)
            return trace_status::partial;
        payload = rest.subspan(4, length);
        m_offset += 4 + std::size_t{length};
        return trace_status::record;
    }
    // Where the next record begins, in bytes.
    std::size_t offset() const { return m_offset; }

private:
    std::span<const std::byte> m_data;
    std::size_t m_offset = 0;
};

} // namespace vh
