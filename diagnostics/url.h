// Which paths are addresses on the network.
#pragma once

#include <string_view>

#include "../scriptdata/char_traits.h"

namespace vh {

inline bool StartsWithI(std::wstring_view text, std::wstring_view prefix)
{
    return text.size() >= prefix.size() && char_traitsi::compare(text.data(), prefix.data(), prefix.size()) == 0;
}

// A scheme that scripts may read from, with something behind it.
inline bool IsUrl(std::wstring_view path)
{
    for (std::wstring_view scheme :
         {std::wstring_view(L"http://"), std::wstring_view(L"ftp://"), std::wstring_view(L"https://")})
        if (path.size() > scheme.size() && StartsWithI(path, scheme))
            return true;
    return false;
}

// A scheme that vh::file reads itself.
inline bool IsWebUrl(std::wstring_view path) { return StartsWithI(path, L"http://") || StartsWithI(path, L"https://"); }

} // namespace vh
