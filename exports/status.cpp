// Exported functions of the status window.
#include "vhrt/status.h"

#include "../dialogs/status_window.h"
#include "../runtime/context.h"
#include "../runtime/own_windows.h"

namespace {

// A suite shows no status: -1, as for no context.
template <class Body>
int32_t OnStatus(ObjectContext* context, Body&& body)
{
    return vh::Framed(context && !context->suite ? context : nullptr,
                      [&](ObjectContext& c) { return body(vh::StatusWindow(c.dialogs)); });
}

} // namespace

int32_t _EnableStatus(ObjectContext* context, int32_t style)
{
    return OnStatus(context, [&](vh::StatusWindow status) { return status.Open(style); });
}

int32_t _DisableStatus(ObjectContext* context)
{
    return vh::WithOwnWindows(context, [](ObjectContext& c) { return vh::StatusWindow(c.dialogs).Close(); });
}

int32_t _StatusUpdate(ObjectContext* context, int32_t link, int16_t position)
{
    return OnStatus(context, [&](vh::StatusWindow status) { return status.Link(link != 0, position); });
}

int32_t _FeatureSpendCost(ObjectContext* context, int32_t first, int32_t second)
{
    return OnStatus(context, [&](vh::StatusWindow status) { return status.SpendCost(first, second); });
}

int32_t _FeatureSpendUninstallCost(ObjectContext* context, int32_t first, int32_t second)
{
    // The upper half keeps bit 31 of the product too: not the plain two halves of 64 bits.
    const auto product = static_cast<int32_t>(static_cast<uint32_t>(first) * static_cast<uint32_t>(second));
    const auto upper = static_cast<uint32_t>(static_cast<uint64_t>(int64_t{product}) >> 31);
    return OnStatus(context,
                    [&](vh::StatusWindow status) { return status.SpendCost(static_cast<long>(upper), product); });
}
