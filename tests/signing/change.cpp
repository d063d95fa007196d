// What the tests of signing do from the inside; exit code 0 when all was as it has to be.
//     changes FILE PLACE STEP           changes and cuts a signed file in a file of its own: none may verify
//     unwritable FILE KEY CERTIFICATE   signs where writing fails: the file stays as it was
//     store PFX PASSWORD user|machine   puts what has a key into "MY"
#include <cstdio>

#include "../../diagnostics/file_signer.h"
#include "../support/handle_counts.h"
#include "../support/import_patch.h"

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
        // Every fifth, since both ways share what they look at. Who did not verify can't be trusted.
        return result || (++m_turn % 5 == 0 &&
                          (m_context.VerifyFileAgainst(m_place.c_str(), L"VHRT") == 0 || m_context.TrustSigner()));
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

std::vector<char> Read(const wchar_t* path)
{
    const std::string content = BytesOf(std::filesystem::path(path));
    return {content.begin(), content.end()};
}

int Change(wchar_t** words)
{
    const std::vector<char> bytes = Read(words[0]);
    const auto header = vh::ReadSignedHeader(std::as_bytes(std::span(bytes)));
    Changes changes(bytes, words[1]);
    if (!header || !changes.Verifies(bytes)) {
        std::printf("the file as it is does not verify\n");
        return 1;
    }
    changes.errors.clear();
    const int handles = OpenHandles();
    const std::size_t step = std::wcstoul(words[2], nullptr, 10);
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
    if (OpenHandles() > handles + 10)
        std::printf("%d handles more\n", OpenHandles() - handles), ++changes.failures;
    for (const auto& [error, times] : changes.errors)
        std::printf("%08lx %d\n", error, times);
    return changes.failures ? 1 : 0;
}

// Half of what is to be written, and then a failure or a short count.
bool g_refuses;
BOOL WINAPI WriteHalf(HANDLE file, const void* bytes, DWORD size, DWORD* written, OVERLAPPED*)
{
    OfSystem<decltype(WriteFile)>("WriteFile")(file, bytes, size / 2, written, nullptr);
    SetLastError(ERROR_DISK_FULL);
    return g_refuses ? FALSE : TRUE;
}

int SignUnwritable(wchar_t** words)
{
    const std::vector<char> before = Read(words[0]);
    const ImportPatch patch(GetModuleHandleW(nullptr), "WriteFile", reinterpret_cast<void*>(&WriteHalf));
    int failures = patch.found() ? 0 : 1;
    for (g_refuses = false;; g_refuses = true) {
        const DWORD result = vh::FileSigner().SignFile(words[0], words[1], words[2], L"");
        failures += result != vh::sign_write_failed || Read(words[0]) != before;
        std::printf("%lu, %zu bytes\n", result, Read(words[0]).size());
        if (g_refuses)
            return failures;
    }
}

int Store(wchar_t** words)
{
    const bool machine = std::wstring_view(words[2]) == L"machine";
    std::vector<char> bytes = Read(words[0]);
    CRYPT_DATA_BLOB blob{static_cast<DWORD>(bytes.size()), reinterpret_cast<BYTE*>(bytes.data())};
    const vh::unique_store source(PFXImportCertStore(&blob, words[1], machine ? CRYPT_MACHINE_KEYSET : 0));
    const vh::unique_store target(
        CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0,
                      machine ? CERT_SYSTEM_STORE_LOCAL_MACHINE : CERT_SYSTEM_STORE_CURRENT_USER, L"MY"));
    for (const vh::unique_certificate& one : vh::AllCertificates(source.get()))
        if (!CertAddCertificateContextToStore(target.get(), one.get(), CERT_STORE_ADD_REPLACE_EXISTING, nullptr))
            return 1;
    return source && target ? 0 : 1;
}

} // namespace

int wmain(int count, wchar_t** words)
{
    const std::map<std::wstring, int (*)(wchar_t**)> modes = {
        {L"changes", Change}, {L"unwritable", SignUnwritable}, {L"store", Store}};
    return count == 5 && modes.contains(words[1]) ? modes.at(words[1])(words + 2) : 2;
}
