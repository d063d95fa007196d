// What a script sees: every exported function of the library by name, and a few services of the host.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "call_frame.h"
#include "call_watch.h"
#include "library.h"
#include "scriptdata/com_object.h"

namespace host {

// Facts and services beside the library's functions.
struct HostServices {
    std::wstring setup_folder;
    std::wstring target_folder;
    bool silent = false;
    bool maintenance = false;
    // By --var; Arguments(name) in scripts.
    std::map<std::wstring, std::wstring> arguments;
    std::function<void(const std::wstring&)> print;
    // Stops the run as Ctrl+C does.
    std::function<void()> cancel;
    // Asked before each call, in this order.
    std::vector<CallWatch*> watches;
};

// What stands beside the library's functions: a function or a value.
struct Service {
    const wchar_t* name;
    vh::variant (*call)(const HostServices& services, std::span<const VARIANT> arguments);
    // As TypeScript declares it, and what it is for.
    const char* declaration;
    const char* meaning;
};
std::span<const Service> ServiceTable();

class HostObject : public vh::com_object<IDispatch> {
public:
    // The references have to outlive the object; `cancelled` makes every call fail.
    HostObject(const Library& library, const CallSite& site, const HostServices& services,
               const std::atomic<bool>& cancelled);

    // Result of the latest transfer that the script asked for; 0 when there was none.
    int32_t LastTransfer() const { return m_last_transfer; }
    // Whether the script waits for a call; any thread may ask.
    bool Busy() const { return m_inside > 0; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                     EXCEPINFO* exception, UINT*) override;

private:
    struct Function {
        Call call;
        FARPROC entry = nullptr;
        bool moves_data = false;
    };

    bool IsFunction(DISPID id) const;
    vh::variant Watched(DISPID id, std::span<const VARIANT> arguments);
    vh::variant Called(DISPID id, std::span<const VARIANT> arguments);
    vh::variant CallFunction(Function& function, std::span<const VARIANT> arguments);
    std::wstring NameOf(DISPID id) const;
    vh::variant CallService(DISPID id, std::span<const VARIANT> arguments) const;

    const Library& m_library;
    CallSite m_site;
    const HostServices& m_services;
    const std::atomic<bool>& m_cancelled;
    std::vector<Function> m_functions;
    std::map<std::wstring, DISPID, std::less<>> m_names;
    int32_t m_last_transfer = 0;
    std::atomic<int> m_inside{0};
};

} // namespace host
