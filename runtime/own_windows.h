// The frame of exports that have nothing to do where the engine brings its own windows.
#pragma once

#include "context.h"
#include "frame.h"

namespace vh {

// Framed; with an engine's own windows the answer is that of no context.
template <class Body>
auto WithOwnWindows(ObjectContext* context, Body&& body)
{
    return Framed(context && !context->externalUi ? context : nullptr, body);
}

} // namespace vh
