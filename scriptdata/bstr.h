// One owned BSTR.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

#include <windows.h>

#include <oaidl.h>
#include <oleauto.h>

#include "exception.h"

namespace vh {

class bstr {
public:
    bstr() = default;
    // Null stays null; exhausted memory is raised.
    explicit bstr(const wchar_t* text) : m_text(SysAllocString(text))
    {
        if (text && !m_text)
            ThrowOutOfMemory();
    }
    explicit bstr(std::wstring_view text) : m_text(SysAllocStringLen(text.data(), static_cast<UINT>(text.size())))
    {
        if (!m_text)
            ThrowOutOfMemory();
    }
    // Bytes, by their number and not by units.
    explicit bstr(std::span<const std::byte> bytes)
        : m_text(SysAllocStringByteLen(reinterpret_cast<const char*>(bytes.data()), static_cast<UINT>(bytes.size())))
    {
        if (!m_text)
            ThrowOutOfMemory();
    }
    bstr(bstr&& other) noexcept : m_text(other.detach()) {}
    bstr& operator=(bstr&& other) noexcept
    {
        if (this != &other)
            attach(other.detach());
        return *this;
    }
    ~bstr() { SysFreeString(m_text); }

    void attach(BSTR owned) { SysFreeString(std::exchange(m_text, owned)); }
    [[nodiscard]] BSTR detach() { return std::exchange(m_text, nullptr); }
    BSTR get() const { return m_text; }
    explicit operator bool() const { return m_text != nullptr; }

    // The address for an out argument; what was held is freed first.
    BSTR* put()
    {
        attach(nullptr);
        return &m_text;
    }

    std::size_t size() const { return SysStringLen(m_text); }
    bool empty() const { return size() == 0; }
    // Null counts as empty.
    std::wstring_view view() const { return {m_text ? m_text : L"", size()}; }
    const wchar_t* c_str() const { return m_text ? m_text : L""; }

private:
    BSTR m_text = nullptr;
};

// A script's text argument for the engine: null counts as empty.
inline bstr TextOrEmpty(const wchar_t* text) { return bstr(text ? text : L""); }

} // namespace vh
