#include "md5.h"

#include <array>

#include <windows.h>

#include <wincrypt.h>

#include "pack.h"

namespace vh::engine {

namespace {

struct provider_traits {
    using value_type = HCRYPTPROV;
    static HCRYPTPROV none() { return 0; }
    static void close(HCRYPTPROV provider) { CryptReleaseContext(provider, 0); }
};
struct hash_traits {
    using value_type = HCRYPTHASH;
    static HCRYPTHASH none() { return 0; }
    static void close(HCRYPTHASH hash) { CryptDestroyHash(hash); }
};

} // namespace

std::wstring Md5OfFile(const std::wstring& path, const PackedFile* packed)
{
    PayloadReader file(path, packed);
    unique<provider_traits> provider;
    unique<hash_traits> hash;
    if (!CryptAcquireContextW(provider.put(), nullptr, nullptr, PROV_RSA_FULL, CRYPT_VERIFYCONTEXT) ||
        !CryptCreateHash(provider.get(), CALG_MD5, 0, 0, hash.put()))
        ThrowFileError(path, L"no digest provider", GetLastError());
    std::array<BYTE, 65536> block;
    std::size_t got = 0;
    do {
        got = file.Read(std::as_writable_bytes(std::span(block)));
        if (!CryptHashData(hash.get(), block.data(), static_cast<DWORD>(got), 0))
            ThrowFileError(path, L"the digest failed", GetLastError());
    } while (got);
    std::array<BYTE, 16> digest{};
    DWORD size = static_cast<DWORD>(digest.size());
    if (!CryptGetHashParam(hash.get(), HP_HASHVAL, digest.data(), &size, 0))
        ThrowFileError(path, L"the digest failed", GetLastError());
    return std::wstring(digest.begin(), digest.end());
}

} // namespace vh::engine
