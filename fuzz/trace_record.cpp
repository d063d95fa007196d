// Walks arbitrary bytes as a trace file; what is read back must scramble to what was there.
#include "../diagnostics/trace_record.h"
#include "fuzz.h"

void Fuzz(const std::uint8_t* data, std::size_t size)
{
    vh::trace_reader reader(std::as_bytes(std::span(data, size)));
    std::span<const std::byte> payload;
    while (reader.next(payload) == vh::trace_status::record) {
        std::vector<std::byte> copy(payload.begin(), payload.end());
        vh::TraceDescramble(copy);
        vh::TraceScramble(copy);
        Require(std::ranges::equal(copy, payload));
    }
    Require(reader.offset() <= size);
}
