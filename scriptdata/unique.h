// One owner of one system object; the traits say what it is and how it ends.
#pragma once

#include <utility>
#include <windows.h>

namespace vh {

template <class Traits>
class unique {
public:
    using value_type = typename Traits::value_type;

    unique() = default;
    explicit unique(value_type value) : m_value(value) {}
    unique(unique&& other) noexcept : m_value(other.release()) {}
    unique& operator=(unique&& other) noexcept
    {
        if (this != &other)
            reset(other.release());
        return *this;
    }
    ~unique() { reset(); }

    value_type get() const { return m_value; }
    explicit operator bool() const { return m_value != Traits::none(); }
    [[nodiscard]] value_type release() { return std::exchange(m_value, Traits::none()); }
    void reset(value_type value = Traits::none())
    {
        const value_type old = std::exchange(m_value, value);
        if (old != Traits::none())
            Traits::close(old);
    }
    // Ends the object now; one that refuses to end stays owned, and the answer is false.
    bool try_close()
    {
        if (!Traits::close(m_value))
            return false;
        m_value = Traits::none();
        return true;
    }
    value_type* put()
    {
        reset();
        return &m_value;
    }

private:
    value_type m_value = Traits::none();
};

struct file_traits {
    using value_type = HANDLE;
    static HANDLE none() { return INVALID_HANDLE_VALUE; }
    static bool close(HANDLE handle) { return CloseHandle(handle) != 0; }
};

struct find_traits {
    using value_type = HANDLE;
    static HANDLE none() { return INVALID_HANDLE_VALUE; }
    static void close(HANDLE handle) { FindClose(handle); }
};

struct handle_traits {
    using value_type = HANDLE;
    static HANDLE none() { return nullptr; }
    static void close(HANDLE handle) { CloseHandle(handle); }
};

struct module_traits {
    using value_type = HMODULE;
    static HMODULE none() { return nullptr; }
    static void close(HMODULE module) { FreeLibrary(module); }
};

struct key_traits {
    using value_type = HKEY;
    static HKEY none() { return nullptr; }
    static void close(HKEY key) { RegCloseKey(key); }
};

struct local_memory_traits {
    using value_type = void*;
    static void* none() { return nullptr; }
    static void close(void* memory) { LocalFree(memory); }
};

using unique_file = unique<file_traits>;
using unique_find = unique<find_traits>;
using unique_handle = unique<handle_traits>;
using unique_module = unique<module_traits>;
using unique_key = unique<key_traits>;
using unique_local = unique<local_memory_traits>;

} // namespace vh
