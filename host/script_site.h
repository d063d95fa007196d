// One run of setup scripts by the system's own script engine, in process.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <activscp.h>

#include "scriptdata/com_object.h"

namespace host {

// Where and why a script stopped; lines and columns count from 1, 0 when unknown.
struct ScriptFailure {
    std::wstring file;
    unsigned line = 0;
    unsigned column = 0;
    std::wstring text;
    // The source line itself; empty when unknown.
    std::wstring source;

    // "setup.js(12,5): text".
    std::wstring Text() const;
};

class ScriptSite : public vh::com_object<IActiveScriptSite> {
public:
    // `global` gives its members to the scripts as global names, and is itself the object VHRT. Scripts that are only
    // parsed need none.
    explicit ScriptSite(IDispatch* global = nullptr);

    // Runs the files one after the other in one global scope; true when none of them failed.
    // Throws std::runtime_error when there is no script engine or a file can't be read.
    bool Run(const std::vector<std::wstring>& files) { return Load(files, SCRIPTSTATE_CONNECTED); }
    // The same without running anything: true when none has a fault in its language.
    bool Parse(const std::vector<std::wstring>& files) { return Load(files, SCRIPTSTATE_INITIALIZED); }
    // Asks the engine to end what it runs, from any thread.
    void Interrupt();
    const ScriptFailure& Failure() const { return m_failure; }

    HRESULT STDMETHODCALLTYPE GetLCID(LCID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** item, ITypeInfo** type) override;
    HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override;
    HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }

private:
    HRESULT QueryMore(REFIID id, void** object) override;
    // Text that is parsed before the engine is connected waits there and is never run.
    bool Load(const std::vector<std::wstring>& files, SCRIPTSTATE state);
    void SetRunning(IActiveScript* script);

    vh::com_ptr<IDispatch> m_global;
    // The engine while it runs; guarded by the lock.
    std::mutex m_lock;
    IActiveScript* m_running = nullptr;
    std::vector<std::wstring> m_files;
    std::vector<std::wstring> m_sources;
    bool m_failed = false;
    ScriptFailure m_failure;
};

// A text file in UTF-8, with or without mark, or in UTF-16 with its mark. Throws std::runtime_error.
std::wstring ReadTextFile(const std::wstring& file);

} // namespace host
