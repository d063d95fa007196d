// A server that registers itself as a class, or fails as its name says.
#include <windows.h>

namespace {
constexpr const wchar_t* key = L"VHRTTestServer\\shell";
}

extern "C" __declspec(dllexport) HRESULT __stdcall DllRegisterServer()
{
    return HRESULT_FROM_WIN32(static_cast<DWORD>(RegSetKeyValueW(HKEY_CLASSES_ROOT, key, L"a", REG_SZ, L"b", 4)));
}

extern "C" __declspec(dllexport) HRESULT __stdcall DllUnregisterServer()
{
    return HRESULT_FROM_WIN32(static_cast<DWORD>(RegDeleteTreeW(HKEY_CLASSES_ROOT, L"VHRTTestServer")));
}
