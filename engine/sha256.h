// SHA-256 by the system's own provider.
#pragma once

#include <array>
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
    // Divides the room, which has to outlive the object, into blocks.
    explicit Sha256Beside(std::span<std::byte> room);
    ~Sha256Beside();
    Sha256Beside(const Sha256Beside&) = delete;
    Sha256Beside& operator=(const Sha256Beside&) = delete;

    // The next block; it and what it holds stay as they are until it comes up again.
    std::span<std::byte> Free();
    // So many bytes of that block are part of the content.
    void Add(std::size_t size);
    // As that of Sha256.
    std::wstring Finish();

private:
    void Work();
    void Hash(std::span<const std::byte> bytes);
    std::span<std::byte> Block(std::size_t number) const;

    static constexpr std::size_t blocks = 8;
    std::span<std::byte> m_room;
    Sha256 m_hash;
    // The system's own, which need no call into it while nobody waits.
    SRWLOCK m_lock = SRWLOCK_INIT;
    CONDITION_VARIABLE m_given = CONDITION_VARIABLE_INIT;
    CONDITION_VARIABLE m_taken = CONDITION_VARIABLE_INIT;
    std::array<std::size_t, blocks> m_sizes{};
    std::size_t m_added = 0;  // blocks so far
    std::size_t m_hashed = 0; // of them
    bool m_over = false;
    std::exception_ptr m_failure;
    std::thread m_thread;
};

// Reads the file to its end. Throws engine_error when it can't be read.
std::wstring Sha256OfFile(const std::wstring& path);

} // namespace vh::engine
