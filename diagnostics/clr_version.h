// Which of two versions of the common language runtime is newer.
#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

namespace vh {

namespace detail {

// The next field of a version, as a number; false when there is none. Empty fields don't count.
template <class Char>
bool TakeVersionField(std::basic_string_view<Char>& rest, uint32_t& number)
{
    while (!rest.empty() && rest.front() == Char{'.'})
        rest.remove_prefix(1);
    if (rest.empty())
        return false;
    constexpr uint64_t most = std::numeric_limits<uint32_t>::max();
    uint64_t value = 0;
    bool digits = true;
    for (; !rest.empty() && rest.front() != Char{'.'}; rest.remove_prefix(1)) {
        digits = digits && rest.front() >= Char{'0'} && rest.front() <= Char{'9'};
        if (digits)
            value = value * 10 + static_cast<uint64_t>(rest.front() - Char{'0'});
        if (value > most)
            value = most;
    }
    number = static_cast<uint32_t>(value);
    return true;
}

} // namespace detail

// Texts such as "v4.0.30319". Result: 1 when b is newer, -1 when a is, 0 when neither is. Fields count as decimal
// numbers; where one text has more of them, the next one alone decides.
template <class Char>
int CompareRuntimeVersions(std::basic_string_view<Char> a, std::basic_string_view<Char> b)
{
    if (a == b)
        return 0;
    if (a.empty())
        return 1;
    if (b.empty())
        return -1;
    a.remove_prefix(1);
    b.remove_prefix(1);
    for (;;) {
        uint32_t of_a = 0, of_b = 0;
        const bool more_in_a = detail::TakeVersionField(a, of_a);
        const bool more_in_b = detail::TakeVersionField(b, of_b);
        if (of_a != of_b)
            return of_b > of_a ? 1 : -1;
        if (!more_in_a || !more_in_b)
            return 0;
    }
}

} // namespace vh
