// Objects and arrays that a script made, seen from the host.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "scriptdata/com_ptr.h"
#include "scriptdata/variant.h"

namespace host {

// A property of a script's object; nothing when the object has none of that name.
std::optional<vh::variant> Property(IDispatch* object, const std::wstring& name);

// The elements of a script's array, or of a safe array; nothing when the value is neither.
std::optional<std::vector<vh::variant>> ArrayOf(const VARIANT& value);

// One dimension of VARIANT, from 0.
vh::variant SafeArrayOf(const std::vector<vh::variant>& elements);

} // namespace host
