// Makes GIF files: the pixels that a test or a bench wants, packed in the usual ways.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vh::test {

enum class Clears { when_full, never, often };

// How the pixels of one image are packed.
struct GifPacking {
    unsigned minimum = 8; // code size
    Clears clears = Clears::when_full;
    bool clear_first = true;
    std::size_t block = 255;
};

// The compressed data with its minimum code size, in sub-blocks, with the terminator.
inline std::string PackGifPixels(const std::vector<uint8_t>& pixels, const GifPacking& packing = {})
{
    const unsigned clear = 1u << packing.minimum;
    std::string data;
    uint64_t bits = 0;
    unsigned count = 0, size = packing.minimum + 1, next = clear + 2;
    const auto put = [&](unsigned code) {
        bits |= uint64_t{code} << count;
        for (count += size; count >= 8; count -= 8, bits >>= 8)
            data += static_cast<char>(bits & 255);
    };
    // Code and pixel behind it, to the code of both.
    std::vector<uint16_t> strings(std::size_t{4096} << 8);
    std::vector<std::size_t> entered;
    const auto forget = [&] {
        for (const std::size_t key : entered)
            strings[key] = 0;
        entered.clear();
        size = packing.minimum + 1;
        next = clear + 2;
    };
    const auto enter = [&](std::size_t key) {
        strings[key] = static_cast<uint16_t>(next++);
        entered.push_back(key);
        if (next - 1 == 1u << size && size < 12)
            ++size;
    };
    forget();
    if (packing.clear_first)
        put(clear);
    unsigned code = pixels.empty() ? clear : pixels.front();
    for (std::size_t i = 1; i < pixels.size(); ++i) {
        const std::size_t key = std::size_t{code} << 8 | pixels[i];
        if (strings[key]) {
            code = strings[key];
            continue;
        }
        put(code);
        if (next < 4096)
            enter(key);
        if ((next == 4096 && packing.clears == Clears::when_full) ||
            (packing.clears == Clears::often && next % 50 == 0)) {
            put(clear);
            forget();
        }
        code = pixels[i];
    }
    if (!pixels.empty()) {
        put(code);
        // The reader enters one more string before the end code.
        if (next < 4096 && ++next - 1 == 1u << size && size < 12)
            ++size;
    }
    put(clear + 1);
    if (count)
        data += static_cast<char>(bits & 255);

    std::string packed(1, static_cast<char>(packing.minimum));
    for (std::size_t at = 0; at < data.size(); at += packing.block) {
        const std::string block = data.substr(at, packing.block);
        packed += static_cast<char>(block.size());
        packed += block;
    }
    return packed + '\0';
}

inline std::string GifWord(unsigned value) { return {static_cast<char>(value & 255), static_cast<char>(value >> 8)}; }

// A table of 2 to the power of `bits` colors.
inline std::string GifColors(unsigned bits, unsigned first = 0)
{
    std::string table;
    for (unsigned i = 0; i < 1u << bits; ++i)
        for (unsigned part = 0; part < 3; ++part)
            table += static_cast<char>(first + i * 3 + part);
    return table;
}

// Signature and screen, with a global table of so many bits; 0 means none.
inline std::string GifScreen(unsigned width, unsigned height, unsigned bits, std::string_view signature = "GIF89a")
{
    return std::string(signature) + GifWord(width) + GifWord(height) +
           static_cast<char>(bits ? 0x80 | (bits - 1) << 4 | (bits - 1) : 0) + std::string(2, '\0') +
           (bits ? GifColors(bits) : "");
}

// An image's head up to its data; a local table of so many bits; 0 means none.
inline std::string GifImageHead(unsigned left, unsigned top, unsigned width, unsigned height, bool interlaced = false,
                                unsigned bits = 0)
{
    return std::string(",") + GifWord(left) + GifWord(top) + GifWord(width) + GifWord(height) +
           static_cast<char>((interlaced ? 0x40 : 0) | (bits ? 0x80 | (bits - 1) : 0)) +
           (bits ? GifColors(bits, 100) : "");
}

} // namespace vh::test
