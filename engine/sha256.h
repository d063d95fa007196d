// SHA-256 by the system's own provider.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include <windows.h>

#include <bcrypt.h>

#include "../scriptdata/unique.h"

namespace vh::engine {

struct hash_traits {
    using value_type = BCRYPT_HASH_HANDLE;
    static BCRYPT_HASH_HANDLE none() { return nullptr; }
    static void close(BCRYPT_HASH_HANDLE hash) { BCryptDestroyHash(hash); }
};

class Sha256 {
public:
    // Throws engine_error when the system has no provider.
    Sha256();

    void Add(std::span<const std::byte> bytes);
    // 64 hexadecimal digits; the next Add begins anew.
    std::wstring Finish();

private:
    unique<hash_traits> m_hash;
};

// Reads the file to its end. Throws engine_error when it can't be read.
std::wstring Sha256OfFile(const std::wstring& path);

} // namespace vh::engine
