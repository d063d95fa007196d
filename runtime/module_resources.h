// Where a resource lies: a setup author's module goes before the product's, so that an author can override.
#pragma once

#include <span>

#include "context.h"

// Null when neither module of the context has the resource.
HMODULE FindResourceInModules(const ObjectContext& context, const wchar_t* type, const wchar_t* name);

// The same for the first type, in their order, that one of the modules has under the name.
HMODULE FindResourceInModules(const ObjectContext& context, std::span<const wchar_t* const> types, const wchar_t* name);
