// The version resource of a file.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include <windows.h>

namespace vh {

// The fixed fields are members. Copies share what lies behind them.
class version_info : public VS_FIXEDFILEINFO {
public:
    version_info() : VS_FIXEDFILEINFO{} {}
    version_info(const version_info& other) noexcept
        : VS_FIXEDFILEINFO(other), m_translations(other.m_translations), m_count(other.m_count), m_block(other.m_block),
          m_references(other.m_references)
    {
        if (m_references)
            m_references->fetch_add(1, std::memory_order_relaxed);
    }
    version_info& operator=(version_info other) noexcept
    {
        swap(other);
        return *this;
    }
    virtual ~version_info();

    // False, with nothing changed, when the file has no version that can be read.
    bool load(const wchar_t* path);

    // Each holds the language identifier in its low half and the code page in its high half.
    std::span<const uint32_t> translations() const { return {m_translations, m_count}; }

    bool is(int major, int minor) const { return HIWORD(dwFileVersionMS) == major && LOWORD(dwFileVersionMS) == minor; }

private:
    void swap(version_info& other) noexcept;
    bool take_fixed_part(std::size_t size);
    void take_translations(std::size_t size);

    uint32_t* m_translations = nullptr;
    uint32_t m_count = 0;
    std::byte* m_block = nullptr;
    std::atomic<long>* m_references = nullptr;
};

} // namespace vh
