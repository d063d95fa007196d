#include "path_syntax.h"

#include <iterator>

#include "../diagnostics/late_wininet.h"
#include "../diagnostics/url.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/results.h"

namespace vh {

namespace {

// 1, 0 or a system error code.
int32_t UrlSyntax(const wchar_t* url)
{
    wchar_t canonical[2048];
    auto size = static_cast<DWORD>(std::size(canonical));
    if (late::internet_canonicalize_url &&
        late::internet_canonicalize_url(url, canonical, &size, DWORD{ICU_BROWSER_MODE}))
        return 1;
    const DWORD error = GetLastError();
    return error == ERROR_INTERNET_INVALID_URL ? 0 : static_cast<int32_t>(error);
}

} // namespace

int32_t PathSyntax(const wchar_t* text)
{
    const std::wstring_view given = View(text);
    return IsUrl(given) ? UrlSyntax(text) : IsPathSyntax(given);
}

} // namespace vh
