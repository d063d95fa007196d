#include "modules.h"

namespace bench {

std::wstring ProgramFolder()
{
    wchar_t path[MAX_PATH];
    const std::wstring full(path, GetModuleFileNameW(nullptr, path, MAX_PATH));
    return full.substr(0, full.rfind(L'\\') + 1);
}

module::module(const wchar_t* path) :m_handle(
    LoadLibraryW((std::wstring(path).find(L':') == std::wstring::npos ? ProgramFolder() + path : path).c_str()))
{
    if (!m_handle) {
        std::fprintf(stderr, "vhrt_bench: can't load %ls\n", path);
        std::exit(3);
    }
}

FARPROC module::Find(const char* name) const
{
    const FARPROC found = GetProcAddress(m_handle, name);
    if (!found) {
        std::fprintf(stderr, "vhrt_bench: no export %s\n", name);
        std::exit(3);
    }
    return found;
}

const module& Library()
{
    static const module library(L"VHRT.dll");
    return library;
}

const module& Floor()
{
    static const module floor(L"vhfloor.dll");
    return floor;
}

} // namespace bench
