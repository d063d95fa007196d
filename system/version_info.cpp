#include "version_info.h"

#include <algorithm>
#include <cstring>

#include "../scriptdata/late_version.h"

namespace vh {

namespace {

// Lengths in the block are words of 16 bits; one that lies leads the system's reader at most this far behind it.
constexpr std::size_t slack = 0x10000 + 0x100;

// The part of a value that lies in the block. Empty when the block does not have it.
std::span<const std::byte> ValueOf(const std::byte* block, std::size_t size, const wchar_t* name)
{
    void* value = nullptr;
    UINT length = 0;
    if (!late::query_version(block, name, &value, &length))
        return {};
    const auto* bytes = static_cast<const std::byte*>(value);
    if (bytes < block || bytes >= block + size)
        return {};
    return {bytes, std::min<std::size_t>(length, static_cast<std::size_t>(block + size - bytes))};
}

} // namespace

version_info::~version_info()
{
    if (!m_references || m_references->fetch_sub(1, std::memory_order_acq_rel) != 1)
        return;
    delete[] m_translations;
    delete[] m_block;
    delete m_references;
}

bool version_info::load(const wchar_t* path)
{
    // A system without the library reads no version.
    if (!path || !late::query_version)
        return false;
    DWORD ignored = 0;
    const DWORD size = late::get_version_size(path, &ignored);
    if (size == 0)
        return false;
    version_info loaded;
    loaded.m_references = new std::atomic<long>(1);
    loaded.m_block = new std::byte[size + slack]();
    if (!late::get_version(path, DWORD{0}, size, loaded.m_block) || !loaded.take_fixed_part(size))
        return false;
    loaded.take_translations(size);
    swap(loaded);
    return true;
}

void version_info::swap(version_info& other) noexcept
{
    std::swap(static_cast<VS_FIXEDFILEINFO&>(*this), static_cast<VS_FIXEDFILEINFO&>(other));
    std::swap(m_translations, other.m_translations);
    std::swap(m_count, other.m_count);
    std::swap(m_block, other.m_block);
    std::swap(m_references, other.m_references);
}

bool version_info::take_fixed_part(std::size_t size)
{
    const auto value = ValueOf(m_block, size, L"\\");
    if (value.size() < sizeof(VS_FIXEDFILEINFO))
        return false;
    VS_FIXEDFILEINFO fixed;
    std::memcpy(&fixed, value.data(), sizeof(fixed));
    static_cast<VS_FIXEDFILEINFO&>(*this) = fixed;
    return true;
}

void version_info::take_translations(std::size_t size)
{
    const auto value = ValueOf(m_block, size, L"\\VarFileInfo\\Translation");
    const std::size_t count = value.size() / sizeof(uint32_t);
    if (count == 0)
        return;
    m_translations = new uint32_t[count];
    m_count = static_cast<uint32_t>(count);
    std::memcpy(m_translations, value.data(), count * sizeof(uint32_t));
}

} // namespace vh
