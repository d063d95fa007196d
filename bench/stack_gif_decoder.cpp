#include "stack_gif_decoder.h"

namespace bench {

namespace {

struct code_source {
    const std::byte* at;
    const std::byte* end;
    unsigned left = 0; // in the sub-block
    uint32_t bits = 0;
    unsigned count = 0;

    int Next(unsigned size)
    {
        while (count < size) {
            if (left == 0) {
                if (at == end)
                    return -1;
                left = std::to_integer<unsigned>(*at++);
                if (left == 0 || left > static_cast<std::size_t>(end - at))
                    return -1;
            }
            bits |= std::to_integer<uint32_t>(*at++) << count;
            --left;
            count += 8;
        }
        const int code = static_cast<int>(bits & ((1u << size) - 1));
        bits >>= size;
        count -= size;
        return code;
    }
};

} // namespace

bool DecodeWithStack(std::span<const std::byte> data, uint8_t* pixels, unsigned width, unsigned height)
{
    constexpr unsigned limit = 4096;
    static uint16_t prefix[limit];
    static uint8_t suffix[limit];
    static uint8_t stack[limit + 1];
    const unsigned minimum = std::to_integer<unsigned>(data[0]);
    const unsigned clear = 1u << minimum;
    code_source source{data.data() + 1, data.data() + data.size()};
    for (unsigned i = 0; i < clear; ++i) {
        prefix[i] = 0;
        suffix[i] = static_cast<uint8_t>(i);
    }
    const std::size_t stride = (width + 3) / 4 * 4;
    unsigned size = minimum + 1, next = clear + 2, row = 0;
    unsigned old = limit;
    uint8_t first = 0;
    uint8_t* line = pixels + (height - 1) * stride;
    uint8_t* out = line;
    for (;;) {
        const int read = source.Next(size);
        if (read < 0)
            return false;
        auto code = static_cast<unsigned>(read);
        if (code == clear) {
            size = minimum + 1;
            next = clear + 2;
            old = limit;
            continue;
        }
        if (code == clear + 1)
            return true;
        const unsigned given = code;
        uint8_t* top = stack;
        if (code >= next) {
            if (code > next || old == limit)
                return false;
            *top++ = first;
            code = old;
        }
        for (; code >= clear; code = prefix[code])
            *top++ = suffix[code];
        *top++ = first = suffix[code];
        while (top > stack && row < height) {
            *out++ = *--top;
            if (out == line + width) {
                ++row;
                line -= stride;
                out = line;
            }
        }
        if (old != limit && next < limit) {
            prefix[next] = static_cast<uint16_t>(old);
            suffix[next] = first;
            if (++next == 1u << size && size < 12)
                ++size;
        }
        old = given;
    }
}

} // namespace bench
