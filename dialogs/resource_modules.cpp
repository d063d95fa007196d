#include "resource_modules.h"

#include <initializer_list>

#include "../scriptdata/late_windows.h"

namespace vh {

HMODULE ResourceModules::Find(const wchar_t* type, const wchar_t* name) const
{
    for (const HMODULE module : {user, product})
        // Null would stand for the program itself.
        if (module && FindResourceW(module, name, type))
            return module;
    return nullptr;
}

HMODULE ResourceModules::Find(std::span<const wchar_t* const> types, const wchar_t* name) const
{
    for (const wchar_t* type : types)
        if (const HMODULE module = Find(type, name))
            return module;
    return nullptr;
}

int ResourceModules::LoadText(UINT id, wchar_t* buffer, int size) const
{
    // For a size of 0 the platform would store an address.
    if (!buffer || size <= 0)
        return 0;
    for (const HMODULE module : {user, product})
        if (const int length = module ? late::load_string(module, id, buffer, size) : 0)
            return length;
    return 0;
}

} // namespace vh
