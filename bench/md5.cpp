// File signatures, against an unrolled RFC 1321 and against CryptoAPI.
#include <memory>
#include <string>

#include "../tests/support/temp_folder.h"
#include "areas.h"
#include "counting.h"
#include "modules.h"

namespace bench {

namespace {

using signature = decltype(_GenerateFileMD5SignatureHex);

work Sign(signature* sign, const std::wstring& path)
{
    return {[=](long count) {
        wchar_t text[33];
        for (; count > 0; --count)
            sign(nullptr, path.c_str(), text);
        Keep(text[0]);
    }};
}

std::wstring Signature(signature* sign, const std::wstring& path)
{
    wchar_t text[33] = {};
    sign(nullptr, path.c_str(), text);
    return text;
}

} // namespace

void Md5(suite& s)
{
    constexpr std::size_t bytes = 16 * 1024 * 1024;
    std::string content(bytes, '\0');
    uint32_t seed = 1;
    for (char& byte : content)
        byte = static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24);
    const vh::test::TempFolder folder;
    const std::wstring path = folder.Write(L"content.bin", content);

    const auto library = BENCH_GET(Library(), _GenerateFileMD5SignatureHex);
    const auto unrolled = BENCH_GET(Floor(), _GenerateFileMD5SignatureHex);
    const auto system = Floor().Get<signature>("GenerateMD5ByCryptoApi");
    const std::wstring right = Signature(system, path);
    s.Count("signatures that agree", 2, (Signature(library, path) == right) + (Signature(unrolled, path) == right));
    s.Compare("16 MB, to an unrolled loop", 1 / 0.97, Sign(library, path), Sign(unrolled, path));
    s.Compare("16 MB, to CryptoAPI", 1 / 1.1, Sign(library, path), Sign(system, path));

    const call_counter reads(Library().handle(), "ReadFile");
    Signature(library, path);
    s.Count("reads of 16 MB, mark and end included", bytes / 16384 + 2, reads.calls());
}

} // namespace bench
