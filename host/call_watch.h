// Somebody who looks at the calls of a script, and may answer in their place.
#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "scriptdata/variant.h"

namespace host {

class CallWatch {
public:
    virtual ~CallWatch() = default;
    // What the script gets instead of the call; nothing lets the call be made. May throw script_error.
    virtual std::optional<vh::variant> Instead(std::wstring_view call, std::span<const VARIANT> arguments) = 0;
    // Hears what a call gave that was made.
    virtual void After([[maybe_unused]] std::wstring_view call, [[maybe_unused]] const VARIANT& result) {}
};

// Calls that bring the selected features to the target.
inline bool MovesData(std::wstring_view call)
{
    return call == L"ComponentMoveData" || call == L"ComponentTransferData";
}

} // namespace host
