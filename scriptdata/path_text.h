// Paths as text: their parts, their joining, their shortening and the test of their syntax. Nothing here asks the
// system, and units are wchar_t in the library and char16_t elsewhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace vh {

// Makes the parameter follow the other arguments, so that literals and owned strings convert to it.
template <class Unit>
using path_view = std::type_identity_t<std::basic_string_view<Unit>>;

namespace detail {

template <class Unit>
constexpr Unit backslash = Unit('\\');

template <class Unit>
constexpr bool IsAnyOf(Unit unit, std::string_view wanted)
{
    for (const char one : wanted)
        if (unit == Unit(one))
            return true;
    return false;
}

template <class Unit>
constexpr bool IsLetter(Unit unit)
{
    return (unit >= Unit('A') && unit <= Unit('Z')) || (unit >= Unit('a') && unit <= Unit('z'));
}

// "c:b" is the file b in the current folder of a drive.
template <class Unit>
constexpr std::basic_string_view<Unit> WithoutDrive(std::basic_string_view<Unit> text)
{
    return text.size() >= 2 && text[1] == Unit(':') ? text.substr(2) : text;
}

} // namespace detail

// "c:", "\\server\share" or nothing.
template <class Unit>
constexpr std::basic_string_view<Unit> PathRoot(std::basic_string_view<Unit> path)
{
    constexpr Unit backslash = detail::backslash<Unit>;
    if (path.size() >= 3 && path[0] == backslash && path[1] == backslash) {
        const std::size_t behind_server = path.find(backslash, 2);
        if (behind_server == path.npos)
            return path;
        return path.substr(0, path.find(backslash, behind_server + 1));
    }
    return path.size() >= 2 && path[1] == Unit(':') ? path.substr(0, 2) : path.substr(0, 0);
}

// All up to the last backslash, which is included, or else the root.
template <class Unit>
constexpr std::basic_string_view<Unit> PathPart(std::basic_string_view<Unit> path)
{
    const auto root = PathRoot(path);
    const std::size_t last = path.rfind(detail::backslash<Unit>);
    return last != path.npos && last >= root.size() ? path.substr(0, last + 1) : root;
}

// The path part without the root.
template <class Unit>
constexpr std::basic_string_view<Unit> PathDirectory(std::basic_string_view<Unit> path)
{
    return PathPart(path).substr(PathRoot(path).size());
}

// What stands behind the path part.
template <class Unit>
constexpr std::basic_string_view<Unit> PathFile(std::basic_string_view<Unit> path)
{
    return detail::WithoutDrive(path.substr(PathPart(path).size()));
}

// The file without its last extension.
template <class Unit>
constexpr std::basic_string_view<Unit> PathFileName(std::basic_string_view<Unit> path)
{
    const auto file = path.substr(PathPart(path).size());
    return detail::WithoutDrive(file.substr(0, file.rfind(Unit('.'))));
}

// The last extension without its dot.
template <class Unit>
constexpr std::basic_string_view<Unit> PathExtension(std::basic_string_view<Unit> path)
{
    const auto file = path.substr(PathPart(path).size());
    const std::size_t dot = file.rfind(Unit('.'));
    return dot == file.npos ? file.substr(file.size()) : file.substr(dot + 1);
}

// The path of the folder: up to the last backslash beyond the root, which is included; without one all of it.
template <class Unit>
constexpr std::basic_string_view<Unit> PathFolder(std::basic_string_view<Unit> path)
{
    const std::size_t last = path.rfind(detail::backslash<Unit>);
    return last != path.npos && last >= PathRoot(path).size() ? path.substr(0, last + 1) : path;
}

// The path with its extension replaced, or added where it has none. `extension` comes with its dot.
template <class Unit>
std::basic_string<Unit> PathWithExtension(std::basic_string_view<Unit> path, path_view<Unit> extension)
{
    const std::size_t dot = path.rfind(Unit('.'));
    const bool has_one = dot != path.npos && dot >= PathPart(path).size();
    std::basic_string<Unit> changed(has_one ? path.substr(0, dot) : path);
    return changed.append(extension);
}

// Adds a name to a path in place, with one backslash between them; the empty path takes the name as it stands. `Text`
// is any string of units with operator+=.
template <class Text, class Unit>
void PathAppend(Text& path, std::basic_string_view<Unit> name)
{
    constexpr Unit backslash = detail::backslash<Unit>;
    if (path.size() != 0 && path.data()[path.size() - 1] != backslash)
        path += backslash;
    path += name;
}

// The units that one more step of shortening would replace by "...".
struct path_gap {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool found = false;
};

// The first folder behind the root and what earlier steps left there; never the file name.
template <class Unit>
constexpr path_gap PathShorteningGap(std::basic_string_view<Unit> path)
{
    constexpr Unit backslash = detail::backslash<Unit>;
    const std::size_t first = path.find(backslash, PathRoot(path).size());
    std::size_t current = first;
    while (current != path.npos && current + 1 < path.size() && path[current + 1] == Unit('.'))
        current = path.find(backslash, current + 1);
    if (current == path.npos)
        return {};
    const std::size_t next = path.find(backslash, current + 1);
    if (next == path.npos)
        return {};
    return {first + 1, next, true};
}

// One step of shortening, in place. False when nothing is left to shorten. `Text` is any string of units.
template <class Text>
bool ShortenPath(Text& path)
{
    using Unit = std::remove_cvref_t<decltype(path.data()[0])>;
    using traits = std::char_traits<Unit>;
    constexpr std::size_t dots = 3;
    const std::size_t size = path.size();
    const path_gap gap = PathShorteningGap(std::basic_string_view<Unit>(path.data(), size));
    if (!gap.found)
        return false;
    const std::size_t shorter = size - (gap.end - gap.begin) + dots;
    if (shorter > size)
        path.resize(shorter);
    traits::move(path.data() + gap.begin + dots, path.data() + gap.end, size - gap.end);
    traits::assign(path.data() + gap.begin, dots, Unit('.'));
    path.resize(shorter);
    return true;
}

// Whether a text could be a path. It may stand in quotes, or in blanks.
template <class Unit>
constexpr bool IsPathSyntax(std::basic_string_view<Unit> text)
{
    if (!text.empty() && text.front() == Unit('"'))
        text.remove_prefix(1);
    if (!text.empty() && text.back() == Unit('"'))
        text.remove_suffix(1);
    while (!text.empty() && detail::IsAnyOf(text.front(), " \t"))
        text.remove_prefix(1);
    while (!text.empty() && detail::IsAnyOf(text.back(), " \t"))
        text.remove_suffix(1);
    if (text.empty())
        return false;
    if (text.size() >= 2 && text[1] == Unit(':')) {
        if (!detail::IsLetter(text[0]))
            return false;
        text.remove_prefix(2);
    }
    for (const Unit unit : text)
        if (detail::IsAnyOf(unit, "\"*/:<>?|"))
            return false;
    return true;
}

} // namespace vh
