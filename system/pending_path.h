// When two paths of pending operations are the same. Platform-free.
#pragma once

#include "../scriptdata/path_text.h"

namespace vh {

// The path without its "." and ".." steps. Any backslash and dot counts as a step "." unless a further dot follows, so
// that a name that begins with a dot is joined to the folder before it. The root has no folder above it.
template <class Unit>
std::basic_string<Unit> PlainPath(std::basic_string_view<Unit> path)
{
    constexpr Unit backslash = detail::backslash<Unit>;
    constexpr Unit up[] = {backslash, Unit('.'), Unit('.')};
    const auto has_dot = [&](std::size_t at) { return at < path.size() && path[at] == Unit('.'); };
    std::basic_string<Unit> plain;
    for (std::size_t at = 0; at < path.size(); ++at) {
        if (path[at] == backslash && has_dot(at + 1) && !has_dot(at + 2))
            ++at;
        else
            plain += path[at];
    }
    const std::size_t root = PathRoot(std::basic_string_view<Unit>(plain)).size();
    for (std::size_t at; (at = plain.find(up, root, std::size(up))) != plain.npos;) {
        const std::size_t before = at > root ? plain.rfind(backslash, at - 1) : at;
        const std::size_t begin = before != plain.npos && before >= root ? before : root;
        plain.erase(begin, at + std::size(up) - begin);
    }
    return plain;
}

} // namespace vh
