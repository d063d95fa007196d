// Which density the windows of a run are for.
#include "../../host/system_density.h"
#include "../support/replaced.h"

namespace {

// What a window that is made now goes by.
DPI_AWARENESS MadeNow()
{
    const HWND window =
        CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    const DPI_AWARENESS of = GetAwarenessFromDpiAwarenessContext(GetWindowDpiAwarenessContext(window));
    DestroyWindow(window);
    return of;
}

TEST(SystemDensity, WindowsOfARunAreForTheSystemAndOthersForTheirDisplay)
{
    const DPI_AWARENESS_CONTEXT before = SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);
    {
        const host::SystemDensity density;
        EXPECT_EQ(MadeNow(), DPI_AWARENESS_SYSTEM_AWARE);
    }
    EXPECT_EQ(MadeNow(), DPI_AWARENESS_PER_MONITOR_AWARE);
    {
        const vh::test::Replaced lacking(host::late::set_thread_density);
        const host::SystemDensity density;
        EXPECT_EQ(MadeNow(), DPI_AWARENESS_PER_MONITOR_AWARE) << "an older system";
    }
    SetThreadDpiAwarenessContext(before);
}

} // namespace
