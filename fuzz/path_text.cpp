// Any text taken apart as a path: parts stay inside of it and fit together, shortening ends.
#include "../scriptdata/path_text.h"
#include "fuzz.h"

void Fuzz(const uint8_t* data, std::size_t size)
{
    std::u16string text(size / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
    const std::u16string_view path = text;

    const auto root = vh::PathRoot(path);
    const auto part = vh::PathPart(path);
    Require(path.starts_with(root) && path.starts_with(part) && part.size() >= root.size());
    Require(root.size() + vh::PathDirectory(path).size() == part.size());
    Require(path.ends_with(vh::PathFile(path)) && path.ends_with(vh::PathExtension(path)));
    Require(vh::PathFileName(path).find(u'\\') == path.npos || part == root);
    Require(vh::PathWithExtension(path, u".x").ends_with(u".x"));
    if (vh::IsPathSyntax(path))
        Require(path.find_first_of(u"*/<>?|") == path.npos);

    std::u16string shortened = text;
    std::size_t steps = 0;
    while (vh::ShortenPath(shortened))
        Require(++steps <= text.size());
    Require(shortened.starts_with(root));
}
