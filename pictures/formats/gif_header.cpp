#include "gif_header.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <utility>

#include "gif_image.h"
#include "gif_plain_text.h"
#include "gif_unknown_app_ext.h"

using namespace vh;

namespace {

enum introducer : uint8_t { extension = 0x21, image = 0x2C, end_of_file = 0x3B };
enum label : uint8_t { plain_text = 0x01, graphic_control = 0xF9, comment = 0xFE, application = 0xFF };

std::string_view Text(std::span<const std::byte> bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool IsIntroducer(const gif_input& input)
{
    return input.StartsWith(extension) || input.StartsWith(image) || input.StartsWith(end_of_file);
}

// The terminator is one byte. Some writers put sub-blocks before it that nobody needs.
bool StepOverTerminator(gif_input& input)
{
    gif_input ahead = input;
    uint8_t terminator = 0;
    if (ahead.StepOverSubBlocks() && ahead.Byte(terminator) && IsIntroducer(ahead)) {
        input = ahead;
        return true;
    }
    return input.Byte(terminator);
}

} // namespace

void CGifHeader::Reset() { *this = {}; }

uint32_t CGifHeader::Read(std::span<const std::byte> file, const gif_record*& record)
{
    Reset();
    record = nullptr;
    gif_input input(file);
    uint32_t result = gif_out_of_memory;
    try {
        result = ReadScreen(input);
        if (result == gif_done)
            result = ReadBlocks(input);
        if (result == gif_done)
            record = DeliverHeader();
    } catch (const std::bad_alloc&) {
        result = gif_out_of_memory;
    }
    if (result != gif_done)
        Reset();
    return result;
}

uint32_t CGifHeader::ReadScreen(gif_input& input)
{
    constexpr std::size_t signature_size = 6;
    std::span<const std::byte> signature;
    if (!input.Bytes(signature_size, signature) || (Text(signature) != "GIF87a" && Text(signature) != "GIF89a"))
        return gif_data_error;
    m_version = Text(signature) == "GIF89a" ? gif_89a : gif_87a;
    const bool whole = input.Word(m_width) && input.Word(m_height) && input.Byte(m_packed) &&
                       input.Byte(m_background) && input.Byte(m_aspect_ratio) &&
                       ReadGifColors(input, m_packed, m_colors);
    return whole ? gif_done : gif_data_error;
}

uint32_t CGifHeader::ReadBlocks(gif_input& input)
{
    for (;;) {
        uint8_t introducer = 0;
        if (!input.Byte(introducer))
            return gif_malformed;
        if (introducer == end_of_file)
            return gif_done;
        if (introducer != extension && introducer != image)
            return gif_data_error;
        if (const uint32_t result = introducer == image ? Keep<CGifImage>(input) : ReadExtension(input))
            return result;
        if (!StepOverTerminator(input))
            return gif_malformed;
    }
}

template <class Block>
uint32_t CGifHeader::Keep(gif_input& input)
{
    auto block = std::make_unique<Block>();
    if constexpr (!std::is_same_v<Block, CGifUnknownAppExt>) {
        if (std::exchange(m_has_pending, false))
            block->SetControl(m_pending);
    }
    const uint32_t result = block->Read(input);
    if (result == gif_done)
        m_blocks.push_back(std::move(block));
    return result;
}

uint32_t CGifHeader::ReadExtension(gif_input& input)
{
    uint8_t label = 0;
    if (!input.Byte(label))
        return gif_malformed;
    switch (label) {
    case plain_text:
        return ReadText(input);
    case graphic_control:
        return ReadControl(input);
    case comment:
        return input.StepOverSubBlocks() ? gif_done : gif_malformed;
    case application:
        return ReadApplication(input);
    default:
        return gif_data_error;
    }
}

uint32_t CGifHeader::ReadControl(gif_input& input)
{
    constexpr uint8_t control_size = 4;
    uint8_t size = 0;
    uint8_t packed = 0;
    if (!input.Byte(size) || size != control_size || !input.Byte(packed) || !input.Word(m_pending.delay) ||
        !input.Byte(m_pending.transparent_index))
        return gif_data_error;
    m_pending.disposal = packed >> 2 & 7;
    m_pending.user_input = packed >> 1 & 1;
    m_pending.transparent = packed & 1;
    m_has_pending = true;
    return gif_done;
}

// A text that can't be read is left out, and the file goes on behind it.
uint32_t CGifHeader::ReadText(gif_input& input)
{
    const gif_input start = input;
    if (Keep<CGifPlainText>(input) == gif_done)
        return gif_done;
    input = start;
    return input.StepOverSubBlocks() ? gif_done : gif_malformed;
}

uint32_t CGifHeader::ReadApplication(gif_input& input)
{
    constexpr uint8_t loop_size = 3;
    constexpr uint8_t loop_id = 1;
    gif_input ahead = input;
    std::span<const std::byte> name;
    uint8_t size = 0;
    uint8_t id = 0;
    uint16_t count = 0;
    if (ahead.SubBlock(name) && Text(name) == "NETSCAPE2.0" && ahead.Byte(size) && size == loop_size &&
        ahead.Byte(id) && id == loop_id && ahead.Word(count)) {
        input = ahead;
        m_loops = true;
        m_loop_count = count;
        return gif_done;
    }
    return Keep<CGifUnknownAppExt>(input);
}

CGifHeader::delivered& CGifHeader::Deliver(std::span<const table_color> colors)
{
    m_delivered.emplace_back().colors.assign(colors.begin(), colors.end());
    return m_delivered.back();
}

const gif_record* CGifHeader::DeliverHeader()
{
    delivered& made = Deliver(m_colors);
    made.record.kind = gif_header;
    gif_header_record& header = made.record.header;
    header.frame_count = static_cast<uint32_t>(
        std::ranges::count_if(m_blocks, [](const auto& block) { return block->Kind() == gif_image; }));
    header.screen_width = m_width;
    header.screen_height = m_height;
    header.color_resolution = m_packed >> 4 & 7;
    header.sorted = m_packed >> 3 & 1;
    header.background = m_background;
    header.aspect_ratio = m_aspect_ratio;
    header.color_count = static_cast<uint32_t>(made.colors.size());
    header.colors = made.colors.empty() ? nullptr : made.colors.data();
    header.loops = m_loops;
    header.loop_count = m_loop_count;
    return &made.record;
}

uint32_t CGifHeader::Next(uint32_t which, const gif_record*& record)
{
    record = nullptr;
    if (which != from_first && which != go_on)
        return gif_bad_argument;
    if (which == from_first)
        m_position = 0;
    if (m_position >= m_blocks.size())
        return gif_no_more;
    const CGifControlData& block = *m_blocks[m_position];
    try {
        delivered& made = Deliver(block.colors());
        block.Deliver(made.record);
        if (block.Kind() == gif_image) {
            made.record.image.color_count = static_cast<uint32_t>(made.colors.size());
            made.record.image.colors = made.colors.empty() ? nullptr : made.colors.data();
        }
        record = &made.record;
    } catch (const std::bad_alloc&) {
        return gif_out_of_memory;
    }
    ++m_position;
    return gif_done;
}

uint32_t CGifHeader::Free(const gif_record* record)
{
    if (!record)
        return gif_bad_argument;
    const auto found = std::ranges::find_if(m_delivered, [&](const delivered& one) { return &one.record == record; });
    if (found == m_delivered.end())
        return gif_unknown_record;
    m_delivered.erase(found);
    return gif_done;
}
