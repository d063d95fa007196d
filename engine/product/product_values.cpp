#include "product_values.h"

#include <algorithm>

#include "product.h"

namespace vh::engine {

std::wstring Identifier(const JsonPlace& at)
{
    const std::wstring text = at.Text(38);
    GUID id{};
    if (text.size() != 38 || FAILED(IIDFromString(text.c_str(), &id)))
        at.Fail(L"must be an identifier in braces");
    return Upper(text);
}

std::wstring Version(const JsonPlace& at)
{
    const std::wstring text = at.Text(64);
    if (!IsVersion(text))
        at.Fail(L"must be a version of up to four numbers with dots");
    return text;
}

WORD Language(const JsonPlace& at) { return static_cast<WORD>(at.Number(1, 65535)); }

std::wstring PlainName(const JsonPlace& at)
{
    std::wstring name = at.Name();
    if (name.find_first_of(L"\\<") != std::wstring::npos)
        at.Fail(L"must not hold a backslash or '<'");
    return name;
}

std::wstring PathPattern(const JsonPlace& at)
{
    std::wstring text = at.Name(longest_path);
    std::wstring slashes = text;
    std::replace(slashes.begin(), slashes.end(), L'/', L'\\');
    if ((L"\\" + slashes + L"\\").find(L"\\..\\") != std::wstring::npos)
        at.Fail(L"must not hold \"..\"");
    // Parts without a pattern are names already; a drive and the empty parts of a root are none.
    for (std::size_t start = 0; start <= slashes.size();) {
        const std::size_t end = std::min(slashes.find(L'\\', start), slashes.size());
        const std::wstring part = slashes.substr(start, end - start);
        start = end + 1;
        if (part.empty() || part.ends_with(L':') || part.find(L'<') != std::wstring::npos)
            continue;
        if (const std::wstring fault = PathFault(part); !fault.empty())
            at.Fail(L"\"" + text + L"\" " + fault);
    }
    return text;
}

std::wstring Below(const JsonPlace& at)
{
    std::wstring path = at.Text(longest_path);
    if (const std::wstring fault = PathFault(path); !path.empty() && !fault.empty()) {
        at.Fail(L"\"" + path + L"\" " + fault);
        return {};
    }
    std::replace(path.begin(), path.end(), L'/', L'\\');
    return path;
}

unsigned Flags(const JsonPlace& at, unsigned start)
{
    unsigned flags = start;
    at.Each("flags", 16, [&](const JsonPlace& flag) {
        const std::wstring name = flag.Text();
        const auto* known = std::find_if(std::begin(file_flag_names), std::end(file_flag_names),
                                         [&](const FileFlagName& entry) { return name == entry.name; });
        if (known == std::end(file_flag_names))
            flag.Fail(L"unknown flag \"" + name + L"\"");
        else
            flags |= known->flag;
    });
    return flags;
}

std::string Bytes(const JsonPlace& at)
{
    const std::wstring digits = at.Text();
    std::string bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const std::wstring pair = digits.substr(i, 2);
        if (pair.size() != 2 || pair.find_first_not_of(L"0123456789abcdefABCDEF") != std::wstring::npos) {
            at.Fail(L"must be pairs of hexadecimal digits");
            break;
        }
        bytes += static_cast<char>(wcstoul(pair.c_str(), nullptr, 16));
    }
    return bytes;
}

} // namespace vh::engine
