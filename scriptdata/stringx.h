// The library's text: a wide string that leaves the thread's last-error code alone and can show itself as
// narrow text or as a BSTR.
#pragma once

#include <algorithm>
#include <compare>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include <windows.h>
#include <wtypes.h>

#include "char_traits.h"

namespace vh::detail {

// The narrow and BSTR forms of one string, made on request; few strings ever need them.
struct text_views {
    char* narrow = nullptr;
    std::size_t narrow_capacity = 0;
    BSTR bstr = nullptr;
};

// Everything behind _stringx that does not depend on its traits.
class text_storage {
public:
    static constexpr std::size_t local_capacity = 7;
    static constexpr std::size_t max_length = 0x7FFFFFFFFFFFFFFE;

    text_storage() = default;
    text_storage(const wchar_t* text, std::size_t count)
    {
        if (count <= local_capacity) {
            std::copy_n(text, count, m_local);
            m_size = count;
        } else {
            start(text, count);
        }
    }
    text_storage(const text_storage&) = delete;
    text_storage& operator=(const text_storage&) = delete;
    ~text_storage()
    {
        if (is_heap() || m_views)
            release();
    }

    std::size_t size() const { return m_size; }
    std::size_t capacity() const { return is_heap() ? m_heap.capacity & ~heap_mark : local_capacity; }
    const wchar_t* data() const { return is_heap() ? m_heap.text : m_local; }
    wchar_t* data() { return is_heap() ? m_heap.text : m_local; }

    void assign(const wchar_t* text, std::size_t count);
    void append(const wchar_t* text, std::size_t count);
    void reserve(std::size_t wanted);
    // New units are NUL.
    void resize(std::size_t count);
    void swap(text_storage& other) noexcept
    {
        std::swap(m_local, other.m_local);
        std::swap(m_size, other.m_size);
        std::swap(m_views, other.m_views);
    }

    bool assign_narrow(const char* text, int length, UINT code_page);
    const char* narrow_view(UINT code_page) const;
    BSTR bstr_view() const;

private:
    static constexpr std::size_t heap_mark = std::size_t{1} << 63;

    // The last local unit is never anything but NUL; on the heap it overlays the mark in the capacity.
    bool is_heap() const { return m_local[local_capacity] != 0; }
    void set_size(std::size_t count)
    {
        m_size = count;
        data()[count] = L'\0';
    }
    void start(const wchar_t* text, std::size_t count);
    void grow(std::size_t needed);
    void release() noexcept;
    text_views& views() const;

    union {
        wchar_t m_local[local_capacity + 1] = {};
        struct {
            wchar_t* text;
            std::size_t capacity;
        } m_heap;
    };
    std::size_t m_size = 0;
    mutable text_views* m_views = nullptr;
};

} // namespace vh::detail

// Up to 7 units live inside the object; longer text takes one block of the BSTR allocator.
template <class Traits>
class _stringx {
public:
    using view_type = std::basic_string_view<wchar_t, Traits>;
    static constexpr std::size_t npos = view_type::npos;

    _stringx() = default;
    // Null counts as empty.
    _stringx(const wchar_t* text) : m_text(text, text ? std::wcslen(text) : 0) {}
    explicit _stringx(std::wstring_view text) : m_text(text.data(), text.size()) {}
    // From narrow text in the system's code page, or another; a length of -1 means up to the NUL.
    explicit _stringx(const char* text, int length = -1, UINT code_page = CP_ACP)
    {
        m_text.assign_narrow(text, length, code_page);
    }
    template <class Other>
    explicit _stringx(const _stringx<Other>& other) : _stringx(other.view())
    {
    }
    _stringx(const _stringx& other) : m_text(other.data(), other.size()) {}
    _stringx(_stringx&& other) noexcept { m_text.swap(other.m_text); }

    _stringx& operator=(const _stringx& other)
    {
        m_text.assign(other.data(), other.size());
        return *this;
    }
    _stringx& operator=(_stringx&& other) noexcept
    {
        m_text.swap(other.m_text);
        return *this;
    }
    _stringx& operator=(std::wstring_view text)
    {
        m_text.assign(text.data(), text.size());
        return *this;
    }
    _stringx& operator=(const wchar_t* text) { return *this = std::wstring_view(text ? text : L""); }

    std::size_t size() const { return m_text.size(); }
    bool empty() const { return m_text.size() == 0; }
    std::size_t capacity() const { return m_text.capacity(); }
    const wchar_t* c_str() const { return m_text.data(); }
    const wchar_t* data() const { return m_text.data(); }
    wchar_t* data() { return m_text.data(); }
    wchar_t operator[](std::size_t index) const { return m_text.data()[index]; }

    // The plain view compares by unit; `folded` compares by these traits.
    std::wstring_view view() const { return {m_text.data(), m_text.size()}; }
    operator std::wstring_view() const { return view(); }
    view_type folded() const { return {m_text.data(), m_text.size()}; }

    _stringx& operator+=(std::wstring_view text)
    {
        m_text.append(text.data(), text.size());
        return *this;
    }
    _stringx& operator+=(wchar_t unit)
    {
        m_text.append(&unit, 1);
        return *this;
    }
    void clear() { m_text.resize(0); }
    void resize(std::size_t count) { m_text.resize(count); }
    void reserve(std::size_t wanted) { m_text.reserve(wanted); }
    void swap(_stringx& other) noexcept { m_text.swap(other.m_text); }
    // A conversion that yields nothing leaves the text as it is, and answers false.
    bool assign_narrow(const char* text, int length, UINT code_page = CP_ACP)
    {
        return m_text.assign_narrow(text, length, code_page);
    }

    // Narrow text with its NUL, valid until the next request or the end of this string. The default code
    // page is the thread's, other than on the way in. Code pages 1200 and 1201 give the units as bytes.
    const char* AsNarrow(UINT code_page = CP_THREAD_ACP) const { return m_text.narrow_view(code_page); }
    // A BSTR with its length, owned by this string; valid until the next request or the end of this string.
    BSTR AsBstr() const { return m_text.bstr_view(); }

    friend bool operator==(const _stringx& a, const _stringx& b) { return a.folded() == b.folded(); }
    friend auto operator<=>(const _stringx& a, const _stringx& b) { return a.folded().compare(b.folded()) <=> 0; }
    friend bool operator==(const _stringx& a, const wchar_t* b) { return a.folded() == view_type(b); }

private:
    vh::detail::text_storage m_text;
};

using stringx = _stringx<std::char_traits<wchar_t>>;
using stringxi = _stringx<vh::char_traitsi>;

namespace vh {

// Order of map keys; look-ups by view make no string.
struct text_less {
    using is_transparent = void;
    bool operator()(std::wstring_view a, std::wstring_view b) const { return a < b; }
};

struct text_less_i {
    using is_transparent = void;
    bool operator()(std::wstring_view a, std::wstring_view b) const
    {
        using view = std::basic_string_view<wchar_t, char_traitsi>;
        return view(a.data(), a.size()) < view(b.data(), b.size());
    }
};

// Joins texts into one string with at most one allocation.
template <class... Pieces>
stringx Concat(const Pieces&... pieces)
{
    stringx joined;
    joined.reserve((std::wstring_view(pieces).size() + ...));
    ((joined += std::wstring_view(pieces)), ...);
    return joined;
}

} // namespace vh
