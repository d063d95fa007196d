// System functions that few calls need: bound by name on first use, so that loading this library does not load theirs.
#pragma once

#include <atomic>
#include <windows.h>

#include "exception.h"

namespace vh {

// A library of the system folder. It stays loaded, like one that is imported.
class late_library {
public:
    // `name` must outlive the object.
    constexpr explicit late_library(const wchar_t* name) : m_name(name) {}

    // Null, with the thread's last error set, when the library is missing.
    HMODULE load()
    {
        HMODULE module = m_module.load(std::memory_order_acquire);
        if (!module) {
            module = LoadLibraryExW(m_name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
            // A second thread that comes here at the same time gets the same module.
            m_module.store(module, std::memory_order_release);
        }
        return module;
    }
    // The same for one of its functions.
    FARPROC find(const char* function)
    {
        const HMODULE module = load();
        return module ? GetProcAddress(module, function) : nullptr;
    }

private:
    const wchar_t* m_name;
    std::atomic<HMODULE> m_module{nullptr};
};

// One function of such a library, without its type: what a table of functions can hold.
class late_binding {
public:
    constexpr late_binding(late_library& library, const char* name) : m_library(&library), m_name(name) {}

    // For tests: the system seems to lack the function, until it is shown again.
    void hide()
    {
        put(nullptr);
        m_hidden = true;
    }
    void show() { put(nullptr); }

protected:
    // In a library that is held for one call only, so that nothing is remembered of it.
    void* find_in(HMODULE module) const
    {
        if (void* replacement = m_found.load(std::memory_order_relaxed))
            return replacement;
        return m_hidden || !module ? nullptr : reinterpret_cast<void*>(GetProcAddress(module, m_name));
    }
    // Null, with the thread's last error set, when the system lacks the function.
    void* find() const
    {
        void* found = m_found.load(std::memory_order_relaxed);
        if (!found) {
            if (m_hidden) {
                SetLastError(ERROR_PROC_NOT_FOUND);
                return nullptr;
            }
            found = reinterpret_cast<void*>(m_library->find(m_name));
            m_found.store(found, std::memory_order_relaxed);
        }
        return found;
    }
    void put(void* replacement)
    {
        m_hidden = false;
        m_found.store(replacement, std::memory_order_relaxed);
    }

private:
    late_library* m_library;
    const char* m_name;
    mutable std::atomic<void*> m_found{nullptr};
    bool m_hidden = false;
};

// The same with its type, called like the function itself:
//     inline constinit late_library user32(L"user32.dll");
//     inline constinit late_function<decltype(GetDC)> get_dc(user32, "GetDC");
template <class Signature>
class late_function : public late_binding {
public:
    using pointer = Signature*;
    using late_binding::late_binding;

    // Null when the system lacks it.
    pointer get() const { return reinterpret_cast<pointer>(find()); }
    // The same for a function that is never called by its name: `module`, which may be null, is the caller's.
    pointer get_in(HMODULE module) const { return reinterpret_cast<pointer>(find_in(module)); }
    explicit operator bool() const { return find() != nullptr; }

    // A function that the system lacks raises the error of the look-up.
    template <class... Arguments>
    auto operator()(Arguments... arguments) const
    {
        const pointer function = get();
        if (!function)
            throw win32_exception(GetLastError());
        return function(arguments...);
    }

    // For tests: calls go to `replacement`; null leads back to the system.
    void replace(pointer replacement) { put(reinterpret_cast<void*>(replacement)); }
};

} // namespace vh
