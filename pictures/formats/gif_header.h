// A whole GIF file (GIF87a, GIF89a): reads it at once and delivers what it holds, block by block.
#pragma once

#include <list>
#include <memory>

#include "gif_control_data.h"

class CGifHeader {
public:
    enum selector : uint32_t { from_first = 1, go_on = 2 };
    enum version_number : int { not_read = -1, gif_87a = 0, gif_89a = 1 };

    // Takes the whole file, and delivers the header's record. A file that fails leaves nothing.
    uint32_t Read(std::span<const std::byte> file, const vh::gif_record*& record);
    // The records of the blocks in the file's order; gif_no_more behind the last one.
    uint32_t Next(uint32_t which, const vh::gif_record*& record);
    // Gives a record back before the file ends.
    uint32_t Free(const vh::gif_record* record);
    void Reset();

    int version() const { return m_version; }

private:
    struct delivered {
        vh::gif_record record{};
        std::vector<vh::table_color> colors;
    };

    uint32_t ReadScreen(vh::gif_input& input);
    uint32_t ReadBlocks(vh::gif_input& input);
    uint32_t ReadExtension(vh::gif_input& input);
    uint32_t ReadControl(vh::gif_input& input);
    uint32_t ReadText(vh::gif_input& input);
    uint32_t ReadApplication(vh::gif_input& input);
    // Reads the block and keeps it.
    template <class Block>
    uint32_t Keep(vh::gif_input& input);

    delivered& Deliver(std::span<const vh::table_color> colors);
    const vh::gif_record* DeliverHeader();

    std::vector<vh::table_color> m_colors;
    // Of a graphic control block, for the image or text behind it.
    vh::gif_control m_pending{};
    bool m_has_pending = false;
    uint16_t m_width = 0;
    uint16_t m_height = 0;
    uint8_t m_packed = 0;
    uint8_t m_background = 0;
    uint8_t m_aspect_ratio = 0;
    int m_version = not_read;
    std::vector<std::unique_ptr<CGifControlData>> m_blocks;
    std::size_t m_position = 0;
    std::list<delivered> m_delivered;
    bool m_loops = false;
    uint16_t m_loop_count = 0;
};
