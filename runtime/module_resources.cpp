#include "module_resources.h"

HMODULE FindResourceInModules(const ObjectContext& context, const wchar_t* type, const wchar_t* name)
{
    for (const HMODULE module : {context.userModule, context.resourceModule})
        // Null would stand for the program itself.
        if (module && FindResourceW(module, name, type))
            return module;
    return nullptr;
}

HMODULE FindResourceInModules(const ObjectContext& context, std::span<const wchar_t* const> types, const wchar_t* name)
{
    for (const wchar_t* type : types)
        if (const HMODULE module = FindResourceInModules(context, type, name))
            return module;
    return nullptr;
}
