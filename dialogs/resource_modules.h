// Where a resource lies: a setup author's library goes before the product's, so that an author can override.
#pragma once

#include <span>
#include <windows.h>

namespace vh {

// The libraries of the variables VHUSER and VHRES; whoever loaded them gives them back.
struct ResourceModules {
    HMODULE user = nullptr;
    HMODULE product = nullptr;

    explicit operator bool() const { return user || product; }

    // Null when neither library has the resource.
    HMODULE Find(const wchar_t* type, const wchar_t* name) const;
    // The same for the first type, in their order, that one of the libraries has under the name.
    HMODULE Find(std::span<const wchar_t* const> types, const wchar_t* name) const;

    // A numbered text, cut to `size` units with its NUL; the result is its length, 0 when there is none.
    int LoadText(UINT id, wchar_t* buffer, int size) const;
};

} // namespace vh
