#include "stringx.h"

#include <algorithm>
#include <stdexcept>

#include <oleauto.h>

#include "ascii.h"
#include "exception.h"
#include "last_error.h"

namespace vh::detail {

namespace {

wchar_t* AllocateUnits(std::size_t capacity)
{
    // The allocator counts bytes in 32 bits; what it can't count can't be had.
    if (capacity > 0x7FFFFFF0 / sizeof(wchar_t))
        ThrowOutOfMemory();
    wchar_t* units = SysAllocStringLen(nullptr, static_cast<UINT>(capacity + 1));
    if (!units)
        ThrowOutOfMemory();
    return units;
}

void CopySwapped(char* target, const char* source, std::size_t bytes)
{
    for (std::size_t i = 0; i + 1 < bytes; i += 2) {
        target[i] = source[i + 1];
        target[i + 1] = source[i];
    }
}

constexpr std::size_t first_capacity(std::size_t units)
{
    return std::max<std::size_t>(units | text_storage::local_capacity, 10);
}

constexpr UINT utf16_little = 1200;
constexpr UINT utf16_big = 1201;

} // namespace

// The long form of construction: one block, and one copy into it.
void text_storage::start(const wchar_t* text, std::size_t count)
{
    if (count > max_length)
        throw std::length_error("text too long");
    keep_last_error keep;
    const std::size_t room = first_capacity(count);
    wchar_t* units = AllocateUnits(room);
    std::memcpy(units, text, count * sizeof(wchar_t));
    units[count] = L'\0';
    m_heap.text = units;
    m_heap.capacity = room | heap_mark;
    m_size = count;
}

void text_storage::grow(std::size_t needed)
{
    if (needed > max_length)
        throw std::length_error("text too long");
    const std::size_t old = capacity();
    const std::size_t wanted = is_heap() ? std::max(needed | local_capacity, old + old / 2) : first_capacity(needed);

    keep_last_error keep;
    wchar_t* units = AllocateUnits(wanted);
    std::memcpy(units, data(), (m_size + 1) * sizeof(wchar_t));
    if (is_heap())
        SysFreeString(m_heap.text);
    m_heap.text = units;
    m_heap.capacity = wanted | heap_mark;
}

void text_storage::release() noexcept
{
    keep_last_error keep;
    if (is_heap())
        SysFreeString(m_heap.text);
    if (m_views) {
        delete[] m_views->narrow;
        SysFreeString(m_views->bstr);
        delete m_views;
    }
}

void text_storage::assign(const wchar_t* text, std::size_t count)
{
    if (count > capacity()) {
        // What stands here isn't needed any more, and `text` can't lie in it: it is longer.
        m_size = 0;
        data()[0] = L'\0';
        grow(count);
    }
    if (count)
        std::memmove(data(), text, count * sizeof(wchar_t));
    set_size(count);
}

void text_storage::append(const wchar_t* text, std::size_t count)
{
    if (count > max_length - m_size)
        throw std::length_error("text too long");
    const std::size_t total = m_size + count;
    if (total > capacity()) {
        const bool own = text >= data() && text <= data() + m_size;
        const std::size_t offset = own ? static_cast<std::size_t>(text - data()) : 0;
        grow(total);
        if (own)
            text = data() + offset;
    }
    if (count)
        std::memmove(data() + m_size, text, count * sizeof(wchar_t));
    set_size(total);
}

void text_storage::reserve(std::size_t wanted)
{
    if (wanted > capacity())
        grow(wanted);
}

void text_storage::resize(std::size_t count)
{
    reserve(count);
    if (count > m_size)
        std::fill(data() + m_size, data() + count, L'\0');
    set_size(count);
    if (!is_heap())
        std::fill(m_local + count, m_local + local_capacity + 1, L'\0');
}

bool text_storage::assign_narrow(const char* text, int length, UINT code_page)
{
    if (!text)
        return false;
    if (code_page == utf16_little || code_page == utf16_big) {
        const auto* wide = reinterpret_cast<const wchar_t*>(text);
        const std::size_t bytes = length < 0 ? std::wcslen(wide) * sizeof(wchar_t) : static_cast<std::size_t>(length);
        if (bytes < sizeof(wchar_t))
            return false;
        resize(bytes / sizeof(wchar_t));
        if (code_page == utf16_big)
            CopySwapped(reinterpret_cast<char*>(data()), text, bytes);
        else
            std::memcpy(data(), text, m_size * sizeof(wchar_t));
        return true;
    }

    const std::size_t bytes = length < 0 ? std::strlen(text) : static_cast<std::size_t>(length);
    if (bytes == 0)
        return false;
    if (IsAscii({text, bytes})) {
        if (bytes > capacity()) {
            set_size(0);
            grow(bytes);
        }
        WidenAscii({text, bytes}, data());
        set_size(bytes);
        return true;
    }

    keep_last_error keep;
    const int units = MultiByteToWideChar(code_page, 0, text, static_cast<int>(bytes), nullptr, 0);
    if (units <= 0)
        return false;
    resize(static_cast<std::size_t>(units));
    MultiByteToWideChar(code_page, 0, text, static_cast<int>(bytes), data(), units);
    return true;
}

text_views& text_storage::views() const
{
    if (!m_views)
        m_views = new text_views;
    return *m_views;
}

const char* text_storage::narrow_view(UINT code_page) const
{
    keep_last_error keep;
    text_views& made = views();
    const auto room = [&](std::size_t bytes) {
        if (bytes < made.narrow_capacity)
            return;
        const std::size_t capacity = (bytes & ~std::size_t{63}) + 64;
        delete[] std::exchange(made.narrow, nullptr);
        made.narrow_capacity = 0;
        made.narrow = new char[capacity];
        made.narrow_capacity = capacity;
    };
    const std::size_t bytes = 2 * m_size + 2;
    room(bytes);
    if (code_page == utf16_little || code_page == utf16_big) {
        const char* units = reinterpret_cast<const char*>(data());
        if (code_page == utf16_big)
            CopySwapped(made.narrow, units, bytes);
        else
            std::memcpy(made.narrow, units, bytes);
        return made.narrow;
    }

    const auto convert = [&](char* target, std::size_t size) {
        return WideCharToMultiByte(code_page, 0, data(), static_cast<int>(m_size + 1), target, static_cast<int>(size),
                                   nullptr, nullptr);
    };
    made.narrow[0] = '\0';
    if (convert(made.narrow, made.narrow_capacity) == 0) {
        // A code page of three and more bytes a unit.
        const int needed = convert(nullptr, 0);
        if (needed > 0) {
            room(static_cast<std::size_t>(needed));
            made.narrow[0] = '\0';
            convert(made.narrow, made.narrow_capacity);
        }
    }
    return made.narrow;
}

BSTR text_storage::bstr_view() const
{
    keep_last_error keep;
    BSTR& view = views().bstr;
    if (m_size > UINT_MAX)
        ThrowOutOfMemory();
    const UINT length = static_cast<UINT>(m_size);
    if (!view) {
        view = SysAllocStringLen(data(), length);
        if (!view)
            ThrowOutOfMemory();
    } else if (SysStringLen(view) != length) {
        if (!SysReAllocStringLen(&view, data(), length))
            ThrowOutOfMemory();
    } else {
        std::memcpy(view, data(), m_size * sizeof(wchar_t));
        view[m_size] = L'\0';
    }
    return view;
}

} // namespace vh::detail
