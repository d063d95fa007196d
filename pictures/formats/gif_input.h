// The bytes of a GIF file that are still to be read, and the room that its pictures may still take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vh {

enum gif_result : uint32_t {
    gif_done = 0,
    // The file ends between two blocks.
    gif_malformed = 5,
    gif_data_error = 13,
    gif_out_of_memory = 14,
    gif_no_more = 18,
    gif_bad_argument = 87,
    gif_unknown_record = 998,
};

class gif_input {
public:
    explicit gif_input(std::span<const std::byte> rest) : m_rest(rest) {}

    std::size_t remaining() const { return m_rest.size(); }
    // Reads past the end answer false and take nothing.
    bool Byte(uint8_t& value)
    {
        if (m_rest.empty())
            return false;
        value = std::to_integer<uint8_t>(m_rest.front());
        m_rest = m_rest.subspan(1);
        return true;
    }
    bool Word(uint16_t& value)
    {
        if (m_rest.size() < 2)
            return false;
        value = static_cast<uint16_t>(std::to_integer<unsigned>(m_rest[0]) | std::to_integer<unsigned>(m_rest[1]) << 8);
        m_rest = m_rest.subspan(2);
        return true;
    }
    bool Bytes(std::size_t count, std::span<const std::byte>& taken)
    {
        if (m_rest.size() < count)
            return false;
        taken = m_rest.first(count);
        m_rest = m_rest.subspan(count);
        return true;
    }
    bool StartsWith(uint8_t value) const
    {
        return !m_rest.empty() && std::to_integer<uint8_t>(m_rest.front()) == value;
    }

    // One sub-block without its length byte; an empty one, whose length byte is taken too, ends a chain.
    bool SubBlock(std::span<const std::byte>& block)
    {
        gif_input ahead = *this;
        uint8_t length = 0;
        if (!ahead.Byte(length) || !ahead.Bytes(length, block))
            return false;
        *this = ahead;
        return true;
    }
    // Steps over what is left of a chain of sub-blocks, but not over the empty one.
    bool StepOverSubBlocks()
    {
        gif_input ahead = *this;
        std::span<const std::byte> block;
        while (!ahead.StartsWith(0))
            if (!ahead.SubBlock(block))
                return false;
        *this = ahead;
        return true;
    }

    // False when the pictures of one file take more than any program shows.
    bool TakeRoom(std::size_t size)
    {
        if (size > m_room)
            return false;
        m_room -= size;
        return true;
    }

private:
    static constexpr std::size_t room_of_a_file = std::size_t{1} << 32;

    std::span<const std::byte> m_rest;
    std::size_t m_room = room_of_a_file;
};

} // namespace vh
