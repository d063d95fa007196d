// Exported functions that take paths and URLs apart.
#include "vhrt/paths.h"

#include <array>

#include "../diagnostics/late_wininet.h"
#include "../diagnostics/url.h"
#include "../dialogs/compact_path.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/results.h"
#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"
#include "../system/path_syntax.h"

namespace {

using view = std::wstring_view;

// The path with every part as the directory has it; empty when one can't be found.
stringx LongPath(view path)
{
    const view root = vh::PathRoot(path);
    stringx found(root);
    view rest = path.substr(root.size());
    if (root.empty() && rest.starts_with(L'\\'))
        found += L'\\';
    while (!rest.empty()) {
        const std::size_t end = rest.find(L'\\');
        const view name = rest.substr(0, end);
        rest = end == rest.npos ? view() : rest.substr(end + 1);
        if (name.empty())
            continue;
        const std::size_t before = found.size();
        vh::PathAppend(found, name);
        WIN32_FIND_DATAW entry;
        if (!vh::unique_find(FindFirstFileW(found.c_str(), &entry)))
            return {};
        found.resize(before);
        vh::PathAppend(found, view(entry.cFileName));
    }
    if (path.ends_with(L'\\') && !found.view().ends_with(L'\\'))
        found += L'\\';
    return found;
}

// The components of a URL; all empty when it is none.
struct cracked_url {
    stringx scheme, host, user, password, path, extra;
    URL_COMPONENTSW components{};
    bool found = false;

    explicit cracked_url(const wchar_t* url)
    {
        // The first pass counts: a component with a length and no buffer is pointed to, not copied.
        for (const auto& part : parts())
            components.*part.length = 1;
        found = crack(url);
        if (!found)
            return;
        for (const auto& part : parts()) {
            part.text->resize(components.*part.length);
            components.*part.buffer = part.text->data();
            ++(components.*part.length);
        }
        found = crack(url);
        for (const auto& part : parts())
            part.text->resize(found ? components.*part.length : 0);
    }

private:
    struct component {
        stringx* text;
        LPWSTR URL_COMPONENTSW::*buffer;
        DWORD URL_COMPONENTSW::*length;
    };

    std::array<component, 6> parts()
    {
        using all = URL_COMPONENTSW;
        return {{{&scheme, &all::lpszScheme, &all::dwSchemeLength},
                 {&host, &all::lpszHostName, &all::dwHostNameLength},
                 {&user, &all::lpszUserName, &all::dwUserNameLength},
                 {&password, &all::lpszPassword, &all::dwPasswordLength},
                 {&path, &all::lpszUrlPath, &all::dwUrlPathLength},
                 {&extra, &all::lpszExtraInfo, &all::dwExtraInfoLength}}};
    }
    bool crack(const wchar_t* url)
    {
        components.dwStructSize = sizeof(components);
        return vh::late::internet_crack_url && vh::late::internet_crack_url(url, DWORD{0}, DWORD{0}, &components);
    }
};

template <std::size_t Size>
bool Fits(view text, wchar_t (&field)[Size])
{
    return vh::CopyOut(text, field, static_cast<int32_t>(Size)) == 0;
}

} // namespace

int32_t PathGetDrive(const wchar_t* path, wchar_t* buffer, int32_t size)
{
    return vh::CopyOut(vh::PathRoot(vh::View(path)), buffer, size);
}

int32_t PathGetDir(const wchar_t* path, wchar_t* buffer, int32_t size)
{
    return vh::CopyOut(vh::PathDirectory(vh::View(path)), buffer, size);
}

int32_t PathGetPath(const wchar_t* path, wchar_t* buffer, int32_t size)
{
    return vh::CopyOut(vh::PathPart(vh::View(path)), buffer, size);
}

int32_t PathGetFile(const wchar_t* path, wchar_t* buffer, int32_t size)
{
    return vh::CopyOut(vh::PathFile(vh::View(path)), buffer, size);
}

int32_t PathGetFileName(const wchar_t* path, wchar_t* buffer, int32_t size)
{
    return vh::CopyOut(vh::PathFileName(vh::View(path)), buffer, size);
}

int32_t PathGetFileExt(const wchar_t* path, wchar_t* buffer, int32_t size)
{
    return vh::CopyOut(vh::PathExtension(vh::View(path)), buffer, size);
}

int32_t PathGetLongFromShort(const wchar_t* path, wchar_t* buffer, int32_t size)
{
    const view given = vh::View(path);
    const stringx found = LongPath(given);
    return vh::CopyOut(found.empty() ? given : found.view(), buffer, size);
}

int32_t PathCompactPathPixel(HWND window, const wchar_t* path, wchar_t* buffer, int32_t size)
{
    stringx text(vh::View(path));
    if (!vh::CompactPath(window, text))
        return -1;
    return vh::CopyOut(text, buffer, size);
}

int32_t PathCrackUrl(const wchar_t* url, VHRTUrlParts* parts)
{
    if (!parts)
        return -1;
    const cracked_url cracked(url ? url : L"");
    if (!Fits(cracked.scheme, parts->scheme) || !Fits(cracked.host, parts->host) || !Fits(cracked.user, parts->user) ||
        !Fits(cracked.password, parts->password) || !Fits(cracked.path, parts->path) ||
        !Fits(cracked.extra, parts->extra))
        return -1;
    if (cracked.found) {
        parts->schemeType = cracked.components.nScheme;
        parts->port = cracked.components.nPort;
    }
    return 0;
}

int32_t PathIsValidSyntax(const wchar_t* text) { return vh::PathSyntax(text); }
