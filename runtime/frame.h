// The frame of an exported function, written once.
#pragma once

#include <cstdint>
#include <string_view>
#include <windows.h>

struct ObjectContext;

namespace vh {

// Runs `body` on the context; without one the answer is `null_result`, and nothing is touched. There is no
// catch: exhausted memory has to reach the host.
template <class Body>
inline auto Framed(ObjectContext* context, Body&& body, int null_result = -1) -> decltype(body(*context))
{
    using Result = decltype(body(*context));
    return context ? body(*context) : static_cast<Result>(null_result);
}

// An engine failure as scripts see it: 0x8004F084 as -132. Other codes stay.
constexpr int32_t MapResult(int32_t code)
{
    const auto bits = static_cast<uint32_t>(code);
    const uint32_t low = bits & 0xFFFF;
    if ((bits & 0x1FFF0000) == 0x40000 && low >= 0xF000)
        return static_cast<int32_t>(0xF000 - low);
    return code;
}

// Framed, with a failure mapped. A size or a length is none, whatever its bits.
template <class Body>
inline int32_t Mapped(ObjectContext* context, Body&& body)
{
    if (!context)
        return -1;
    const int32_t code = body(*context);
    return code < 0 ? MapResult(code) : code;
}

} // namespace vh
