// Changes each byte of a signed file in turn, and cuts the file at each place of its trailer: none may verify.
// Arguments: the file, a file of its own, and the step from place to place. Exit code 0 when nothing verified.
#include <cstdio>

#include "../../diagnostics/signature_context.h"
#include "../support/test.h"

namespace {

class Changes {
public:
    Changes(std::vector<char> bytes, std::filesystem::path place) : m_bytes(std::move(bytes)), m_place(std::move(place))
    {
    }

    bool Verifies(const std::vector<char>& bytes)
    {
        std::ofstream(m_place, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        vh::SignerInfo info;
        const bool result = m_context.VerifySignedFile(m_place.c_str(), info);
        if (result == (info.last_error != 0))
            std::printf("a result without its error\n"), ++failures;
        ++errors[info.last_error];
        // Every fifth, since both ways share what they look at.
        return result || (++m_turn % 5 == 0 && m_context.VerifyFileAgainst(m_place.c_str(), L"VHRT") == 0);
    }
    void Change(std::size_t at, int bits)
    {
        std::vector<char> changed = m_bytes;
        changed[at] = static_cast<char>(changed[at] ^ bits);
        if (Verifies(changed))
            std::printf("verifies with byte %zu changed by %02x\n", at, static_cast<unsigned>(bits)), ++failures;
    }
    void Cut(std::size_t size)
    {
        if (Verifies({m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(size)}))
            std::printf("verifies with %zu bytes\n", size), ++failures;
    }

    int failures = 0;
    std::map<DWORD, int> errors;

private:
    unsigned m_turn = 0;
    std::vector<char> m_bytes;
    std::filesystem::path m_place;
    vh::SignatureContext m_context;
};

} // namespace

int wmain(int count, wchar_t** words)
{
    if (count != 4)
        return 2;
    const std::string content = BytesOf(std::filesystem::path(words[1]));
    const std::vector<char> bytes(content.begin(), content.end());
    const auto header = vh::ReadSignedHeader(std::as_bytes(std::span(bytes)));
    Changes changes(bytes, words[2]);
    if (!header || !changes.Verifies(bytes)) {
        std::printf("the file as it is does not verify\n");
        return 1;
    }
    changes.errors.clear();
    const std::size_t step = std::wcstoul(words[3], nullptr, 10);
    for (std::size_t at = 0; at < bytes.size(); at += step)
        changes.Change(at, 1 << at % 8);
    for (std::size_t size = header->content_end; size < bytes.size(); size += 3 * step)
        changes.Cut(size);
    changes.Cut(0);
    changes.Cut(vh::signed_header::size - 1);
    std::vector<char> longer = bytes;
    longer.push_back(0);
    if (changes.Verifies(longer))
        std::printf("verifies with a byte behind it\n"), ++changes.failures;
    for (const auto& [error, times] : changes.errors)
        std::printf("%08lx %d\n", error, times);
    return changes.failures ? 1 : 0;
}
