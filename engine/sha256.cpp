#include "sha256.h"

#include <array>
#include <memory>

#include "files.h"
#include "late_bcrypt.h"

namespace vh::engine {

namespace {

struct provider_traits {
    using value_type = BCRYPT_ALG_HANDLE;
    static BCRYPT_ALG_HANDLE none() { return nullptr; }
    static void close(BCRYPT_ALG_HANDLE provider) { late::close_provider(provider, ULONG{0}); }
};

constexpr NTSTATUS ntstatus_missing = static_cast<NTSTATUS>(0xC0000135); // a library can't be found

void Require(NTSTATUS status)
{
    if (status < 0)
        throw engine_error(HRESULT_FROM_NT(status), {}, L"the system's SHA-256 can't be used");
}

// Has the lock while it lives, but for the time between Leave and Enter.
class Turn {
public:
    explicit Turn(SRWLOCK& lock) : m_lock(lock) { Enter(); }
    ~Turn() { Leave(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    void Enter() { AcquireSRWLockExclusive(&m_lock); }
    void Leave() { ReleaseSRWLockExclusive(&m_lock); }
    void Await(CONDITION_VARIABLE& until) { SleepConditionVariableSRW(&until, &m_lock, INFINITE, 0); }

private:
    SRWLOCK& m_lock;
};

// Opened once for the process.
BCRYPT_ALG_HANDLE Provider()
{
    static const unique<provider_traits> provider = [] {
        unique<provider_traits> made;
        if (!late::open_provider)
            Require(ntstatus_missing);
        Require(late::open_provider(made.put(), BCRYPT_SHA256_ALGORITHM, nullptr, ULONG{BCRYPT_HASH_REUSABLE_FLAG}));
        return made;
    }();
    return provider.get();
}

} // namespace

void hash_traits::close(BCRYPT_HASH_HANDLE hash) { late::destroy_hash(hash); }

Sha256::Sha256()
{
    Require(late::create_hash(Provider(), m_hash.put(), nullptr, ULONG{0}, nullptr, ULONG{0},
                              ULONG{BCRYPT_HASH_REUSABLE_FLAG}));
}

void Sha256::Add(std::span<const std::byte> bytes)
{
    // The provider reads only.
    auto* start = reinterpret_cast<UCHAR*>(const_cast<std::byte*>(bytes.data()));
    Require(late::hash_data(m_hash.get(), start, static_cast<ULONG>(bytes.size()), ULONG{0}));
}

std::wstring Sha256::Finish()
{
    std::array<char, 32> digest{};
    Require(late::finish_hash(m_hash.get(), reinterpret_cast<UCHAR*>(digest.data()), static_cast<ULONG>(digest.size()),
                              ULONG{0}));
    return ToHex({digest.data(), digest.size()});
}

Sha256Beside::Sha256Beside(std::span<std::byte> room) : m_room(room)
{
    m_thread = std::thread([this] { Work(); });
}

Sha256Beside::~Sha256Beside()
{
    {
        const Turn turn(m_lock);
        m_over = true;
    }
    WakeConditionVariable(&m_given);
    m_thread.join();
}

std::span<std::byte> Sha256Beside::Block(std::size_t number) const
{
    const std::size_t size = m_room.size() / blocks;
    return m_room.subspan(number % blocks * size, size);
}

void Sha256Beside::Work()
{
    Turn turn(m_lock);
    for (;;) {
        while (m_hashed == m_added && !m_over)
            turn.Await(m_given);
        if (m_over)
            return;
        const auto bytes = Block(m_hashed).first(m_sizes[m_hashed % blocks]);
        turn.Leave();
        Hash(bytes);
        turn.Enter();
        ++m_hashed;
        WakeConditionVariable(&m_taken);
    }
}

void Sha256Beside::Hash(std::span<const std::byte> bytes)
{
    try {
        m_hash.Add(bytes);
    } catch (const engine_error&) {
        m_failure = std::current_exception();
    }
}

std::span<std::byte> Sha256Beside::Free()
{
    Turn turn(m_lock);
    while (m_added - m_hashed == blocks)
        turn.Await(m_taken);
    return Block(m_added);
}

void Sha256Beside::Add(std::size_t size)
{
    if (!size)
        return;
    {
        const Turn turn(m_lock);
        m_sizes[m_added++ % blocks] = size;
    }
    WakeConditionVariable(&m_given);
}

std::wstring Sha256Beside::Finish()
{
    {
        Turn turn(m_lock);
        while (m_hashed != m_added)
            turn.Await(m_taken);
    }
    if (m_failure)
        std::rethrow_exception(std::exchange(m_failure, nullptr));
    return m_hash.Finish();
}

std::wstring Sha256OfFile(const std::wstring& path)
{
    constexpr DWORD block_size = 256 * 1024;
    const unique_file file(CreateFileW(LongPath(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
    if (!file)
        ThrowFileError(path, GetLastError());
    Sha256 hash;
    const auto block = std::make_unique<std::byte[]>(block_size);
    for (DWORD got = block_size; got;) {
        if (!ReadFile(file.get(), block.get(), block_size, &got, nullptr))
            ThrowFileError(path, GetLastError());
        hash.Add({block.get(), got});
    }
    return hash.Finish();
}

} // namespace vh::engine
