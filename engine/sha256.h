// SHA-256 by the system's own provider.
#pragma once

#include <cstddef>
#include <exception>
#include <span>
#include <string>
#include <thread>

#include <windows.h>

#include <bcrypt.h>

#include "../scriptdata/unique.h"

namespace vh::engine {

struct hash_traits {
    using value_type = BCRYPT_HASH_HANDLE;
    static BCRYPT_HASH_HANDLE none() { return nullptr; }
    static void close(BCRYPT_HASH_HANDLE hash);
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

// The same on a thread of its own, beside whoever reads and writes.
class Sha256Beside {
public:
    Sha256Beside();
    ~Sha256Beside();
    Sha256Beside(const Sha256Beside&) = delete;
    Sha256Beside& operator=(const Sha256Beside&) = delete;

    // The bytes have to stay as they are until the next call returns.
    void Add(std::span<const std::byte> bytes);
    std::wstring Finish();

private:
    void Work();

    Sha256 m_hash;
    std::span<const std::byte> m_bytes; // none ends the thread
    std::exception_ptr m_failure;
    // Events: the run-time library's own semaphores may sleep for ever.
    unique_handle m_given;
    unique_handle m_taken;
    std::thread m_thread;
};

// Reads the file to its end. Throws engine_error when it can't be read.
std::wstring Sha256OfFile(const std::wstring& path);

} // namespace vh::engine
