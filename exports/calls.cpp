// Exported functions by which a script reaches beyond the library: foreign functions and processes.
#include "vhrt/calls.h"

#include <malloc.h>

#include "../diagnostics/trace.h"
#include "../scriptdata/late_library.h"
#include "../scriptdata/results.h"
#include "../scriptdata/stringx.h"
#include "../scriptdata/unique.h"
#include "../system/process_snapshot.h"

namespace {

constinit vh::late_library kernel32(L"kernel32.dll");
constinit vh::late_function<decltype(SetDllDirectoryW)> set_dll_directory(kernel32, "SetDllDirectoryW");

using ScriptFunction = int32_t(__stdcall*)(int32_t, void*, int32_t);

// Calls a function that may come back with the stack in another place. The allocation makes the compiler keep the
// frame in a register of its own, which the callee has to preserve: leaving this function puts the stack back.
__declspec(noinline) int32_t CallGuarded(ScriptFunction function, int32_t value, void* pointer, int32_t third)
{
    volatile char* const frame = static_cast<char*>(_alloca(16 + (static_cast<uint32_t>(value) & 1)));
    *frame = 0;
    return function(value, pointer, third);
}

// Handles up to this value are error codes of old systems.
constexpr uintptr_t last_error_handle = 32;

vh::unique_module LoadForCall(const wchar_t* path)
{
    const HMODULE module = vh::IsEmpty(path) ? nullptr : LoadLibraryW(path);
    return vh::unique_module(reinterpret_cast<uintptr_t>(module) > last_error_handle ? module : nullptr);
}

std::vector<stringxi> SplitNames(std::wstring_view text)
{
    std::vector<stringxi> names;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L';'), text.size());
        if (end)
            names.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return names;
}

// What a process ends with that is ended from outside: the code of a service that ended unexpectedly.
constexpr UINT ended_from_outside = ERROR_PROCESS_ABORTED;

} // namespace

int32_t CallDLLFn(const wchar_t* library, const char* function, int32_t value, void* pointer, int32_t third)
{
    const stringx name(function);
    const auto* text = static_cast<const wchar_t*>(pointer);
    const auto number = static_cast<unsigned long>(value);
    const vh::TracedCall call(L"CallDllFx", L"Dll=%s\tFunction=%s\tParam00=0x%08lx\tParam01=%s", library, name.c_str(),
                              number, text);
    const auto end = [&](int32_t code) {
        return call.End(code, L"Result=%s\t\tError=0x%08lx\tDll=%s\tFunction=%s\tParam00=0x%08lx\tParam01=%s",
                        L"Result=%s\tDll=%s\tFunction=%s\tParam00=0x%08lx\tParam01=%s", library, name.c_str(), number,
                        text);
    };
    vh::unique_module module = LoadForCall(library);
    const FARPROC found = module && function ? GetProcAddress(module.get(), function) : nullptr;
    if (!found) {
        module.reset();
        return end(-1);
    }
    const int32_t result =
        CallGuarded(reinterpret_cast<ScriptFunction>(reinterpret_cast<void*>(found)), value, pointer, third);
    module.reset();
    end(0);
    return result;
}

int32_t _GetRunningChildProcess(int32_t process) { return _GetRunningChildProcessEx(process, nullptr); }

int32_t _GetRunningChildProcessEx(int32_t process, HANDLE parent)
{
    return static_cast<int32_t>(vh::FindRunningChild(static_cast<uint32_t>(process), parent, false));
}

HANDLE _GetRunningChildProcessEx2(int32_t process, HANDLE parent, int32_t descendants)
{
    // All rights that a process had before the system knew the later ones.
    constexpr DWORD all_rights = 0x1F0FFF;
    const uint32_t child = vh::FindRunningChild(static_cast<uint32_t>(process), parent, descendants != 0);
    return child ? OpenProcess(all_rights, FALSE, child) : nullptr;
}

int32_t _KillProcesses(const wchar_t* names)
{
    const std::vector<stringxi> wanted = SplitNames(vh::View(names));
    if (wanted.empty())
        return 0;
    const auto processes = vh::TakeProcessSnapshot();
    if (!processes)
        return static_cast<int32_t>(GetLastError());
    std::vector<uint32_t> matching;
    for (const vh::ProcessEntry& process : *processes)
        if (std::find(wanted.begin(), wanted.end(), stringxi(process.name)) != wanted.end())
            matching.push_back(process.id);
    for (const uint32_t id : matching) {
        const vh::unique_handle process(OpenProcess(PROCESS_TERMINATE, FALSE, id));
        if (process)
            TerminateProcess(process.get(), ended_from_outside);
    }
    return 0;
}

int32_t _SetDllDirectory(const wchar_t* path)
{
    constexpr int32_t no_such_function = 1;
    return set_dll_directory ? set_dll_directory(path ? path : L"") : no_such_function;
}
