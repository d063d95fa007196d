// The library and the DLL of bare twins. Both are called through GetProcAddress.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

#include "../exports/vhrt.h"

namespace bench {

class module {
public:
    // From the folder of this program unless the path is a full one; a missing file ends the program.
    explicit module(const wchar_t* path);
    module(const module&) = delete;
    module& operator=(const module&) = delete;
    ~module() { FreeLibrary(m_handle); }

    HMODULE handle() const { return m_handle; }
    template <class Signature>
    Signature* Get(const char* name) const
    {
        return reinterpret_cast<Signature*>(reinterpret_cast<void*>(Find(name)));
    }

private:
    FARPROC Find(const char* name) const;

    HMODULE m_handle;
};

// Takes an export under its own name and type.
#define BENCH_GET(module, name) (module).Get<decltype(name)>(#name)

// The two sides of most comparisons.
const module& Library();
const module& Floor();

// The folder of this program, with a final backslash.
std::wstring ProgramFolder();

// A context of one side, released at the end.
class context {
public:
    explicit context(const module& side, ISetupHost* host = nullptr, IServiceProvider* services = nullptr)
        : m_release(BENCH_GET(side, __ReleaseObjectContext)),
          m_context(BENCH_GET(side, __CreateObjectContext)(host, services))
    {
    }
    context(const context&) = delete;
    context& operator=(const context&) = delete;
    ~context() { m_release(m_context); }

    operator ObjectContext*() const { return m_context; }

private:
    decltype(&__ReleaseObjectContext) m_release;
    ObjectContext* m_context;
};

} // namespace bench
