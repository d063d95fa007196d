// The exceptions that name a system code; their text is looked up on first use and shared by copies.
#pragma once

#include <atomic>
#include <cstdlib>
#include <exception>

#include <windows.h>

namespace vh {

namespace detail {

// The system's text for a code in narrow form, counted among copies. Lives on the local heap, so that
// a copy made in one module can be released by another.
class system_message {
public:
    system_message() = default;
    system_message(const system_message& other) noexcept : m_block(other.m_block)
    {
        if (m_block)
            InterlockedIncrement(&m_block->references);
    }
    system_message& operator=(const system_message& other) noexcept
    {
        system_message copy(other);
        block* mine = m_block;
        m_block = copy.m_block;
        copy.m_block = mine;
        return *this;
    }
    ~system_message()
    {
        if (m_block && InterlockedDecrement(&m_block->references) == 0)
            LocalFree(m_block);
    }

    const char* text(DWORD code) const noexcept
    {
        if (!m_block)
            m_block = lookup(code);
        return m_block ? m_block->text : "";
    }

private:
    struct block {
        LONG references;
        char text[1];
    };

    static block* lookup(DWORD code) noexcept
    {
        wchar_t* wide = nullptr;
        const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
        const DWORD length = FormatMessageW(flags, nullptr, code, 0, reinterpret_cast<wchar_t*>(&wide), 0, nullptr);
        const int narrow =
            length ? WideCharToMultiByte(CP_ACP, 0, wide, static_cast<int>(length), nullptr, 0, nullptr, nullptr) : 0;
        auto* made = static_cast<block*>(LocalAlloc(LMEM_ZEROINIT, sizeof(block) + static_cast<std::size_t>(narrow)));
        if (made) {
            made->references = 1;
            if (narrow)
                WideCharToMultiByte(CP_ACP, 0, wide, static_cast<int>(length), made->text, narrow, nullptr, nullptr);
        }
        LocalFree(wide);
        return made;
    }

    mutable block* m_block = nullptr;
};

} // namespace detail

// A Win32 error code.
class win32_exception : public std::exception {
public:
    explicit win32_exception(DWORD code) noexcept : m_code(code) {}

    DWORD code() const noexcept { return m_code; }
    // Empty for code 0.
    const char* what() const noexcept override { return m_code ? m_message.text(m_code) : ""; }

private:
    DWORD m_code;
    detail::system_message m_message;
};

// A failing HRESULT.
class com_exception : public std::exception {
public:
    explicit com_exception(HRESULT code) noexcept : m_code(code) {}

    HRESULT code() const noexcept { return m_code; }
    // Empty for a code that is no failure.
    const char* what() const noexcept override { return m_code < 0 ? m_message.text(static_cast<DWORD>(m_code)) : ""; }

private:
    HRESULT m_code;
    detail::system_message m_message;
};

// A failing call on a SAFEARRAY.
class safe_array_exception : public com_exception {
public:
    using com_exception::com_exception;
};

// A block that is given back right before exhausted memory is raised. Without it the run-time would take the
// exception's own memory from its emergency pool, which another module's run-time can't free when the host
// catches it there.
inline std::atomic<void*> memory_reserve{nullptr};

inline void KeepMemoryReserve()
{
    constexpr std::size_t enough_for_an_exception = 4096;
    if (!memory_reserve.load(std::memory_order_relaxed))
        std::free(memory_reserve.exchange(std::malloc(enough_for_an_exception)));
}

[[noreturn]] inline void ThrowOutOfMemory()
{
    std::free(memory_reserve.exchange(nullptr));
    throw com_exception(E_OUTOFMEMORY);
}

inline void ThrowIfFailed(HRESULT code)
{
    if (code == E_OUTOFMEMORY)
        ThrowOutOfMemory();
    if (FAILED(code))
        throw com_exception(code);
}

} // namespace vh
