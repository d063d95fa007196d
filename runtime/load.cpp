// Load and unload of the library.
#include <new>

#include <windows.h>

#include "../diagnostics/trace.h"
#include "../scriptdata/exception.h"
#include "../views/component_view.h"

namespace {

void TraceLibrary(HMODULE library, const wchar_t* event)
{
    wchar_t path[MAX_PATH] = {};
    if (vh::trace_enabled) {
        GetModuleFileNameW(library, path, MAX_PATH);
        path[MAX_PATH - 1] = L'\0';
        vh::VHTracingInternal_TraceEx(L"VHSetupInit", event, L"Library=%s", path);
    }
}

} // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID process_ends)
{
    if (reason == DLL_PROCESS_ATTACH) {
        // Exhausted memory reaches the host under one type, whoever notices it.
        std::set_new_handler(vh::ThrowOutOfMemory);
        vh::KeepMemoryReserve();
        vh::TraceInitialize(library);
        TraceLibrary(library, L"DLLProcessAttach");
    } else if (reason == DLL_PROCESS_DETACH) {
        TraceLibrary(library, L"DLLProcessDetach");
        if (!process_ends)
            ComponentView::DropClass();
        vh::TraceShutdown();
    }
    return TRUE;
}
