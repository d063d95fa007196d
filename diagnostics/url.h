// Which paths are addresses on the network.
#pragma once

#include <string_view>

namespace vh {

// `scheme` is in lower case. It is ASCII, so that no locale takes part.
constexpr bool StartsWithScheme(std::wstring_view text, std::wstring_view scheme)
{
    if (text.size() < scheme.size())
        return false;
    for (std::size_t i = 0; i < scheme.size(); ++i) {
        const wchar_t unit = text[i];
        if (scheme[i] != (unit >= L'A' && unit <= L'Z' ? unit + (L'a' - L'A') : unit))
            return false;
    }
    return true;
}

// A scheme that scripts may read from, with something behind it.
inline bool IsUrl(std::wstring_view path)
{
    for (std::wstring_view scheme :
         {std::wstring_view(L"http://"), std::wstring_view(L"ftp://"), std::wstring_view(L"https://")})
        if (path.size() > scheme.size() && StartsWithScheme(path, scheme))
            return true;
    return false;
}

// A scheme that vh::file reads itself.
inline bool IsWebUrl(std::wstring_view path)
{
    return StartsWithScheme(path, L"http://") || StartsWithScheme(path, L"https://");
}

} // namespace vh
