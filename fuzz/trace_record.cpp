// Walks arbitrary bytes as a trace file; what is read back must scramble to what was there.
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "../diagnostics/trace_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    vh::trace_reader reader(std::as_bytes(std::span(data, size)));
    std::span<const std::byte> payload;
    while (reader.next(payload) == vh::trace_status::record) {
        std::vector<std::byte> copy(payload.begin(), payload.end());
        vh::TraceDescramble(copy);
        vh::TraceScramble(copy);
        if (!std::equal(copy.begin(), copy.end(), payload.begin()))
            std::abort();
    }
    if (reader.offset() > size)
        std::abort();
    return 0;
}
