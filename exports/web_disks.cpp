// Exported functions on setup disks from the web.
#include "vhrt/web_disks.h"

#include <utility>

#include "../Src/inc/engine_progress.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/results.h"

namespace {

bool ProgressWindow(ObjectContext& context, HWND& window)
{
    const auto progress = context.Ask<ISetupProgress>();
    return progress && SUCCEEDED(progress->GetWindow(-1, &window));
}

} // namespace

int32_t _SetupInet(ObjectContext* context)
{
    return vh::Framed(
        context,
        [](ObjectContext& c) -> int32_t {
            try {
                if (!c.webDisks)
                    c.webDisks = std::make_shared<FODHandler>(c, &ProgressWindow);
            } catch (fod_error) {
                return 0;
            }
            return 1;
        },
        0);
}

int32_t _CleanupInet(ObjectContext* context)
{
    return vh::Framed(
        context,
        [](ObjectContext& c) -> int32_t {
            if (const auto handler = std::exchange(c.webDisks, nullptr))
                handler->Close();
            return 1;
        },
        0);
}

int32_t _InetGetNextDisk(ObjectContext* context, const wchar_t* file)
{
    return vh::Framed(
        context,
        [&](ObjectContext& c) -> int32_t {
            constexpr int32_t not_there = 3;
            // A window that gets its messages meanwhile may end the link, and the context.
            const auto handler = c.webDisks;
            return handler ? handler->RequestDisk(DiskIndex(vh::View(file))) : not_there;
        },
        3);
}

void _InetEndofTransfer(ObjectContext* context)
{
    if (context && context->webDisks)
        context->webDisks->EndTransfer();
}

int32_t _InetGetLastError(ObjectContext* context)
{
    return vh::Framed(
        context, [](ObjectContext& c) -> int32_t { return c.webDisks ? c.webDisks->result() : 0; }, 0);
}
