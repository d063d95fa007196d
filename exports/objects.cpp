// Exported functions of object creation: no class can be made yet.
#include "vhrt/objects.h"

#include "pending.h"

using namespace vh::pending;

int32_t _CreateObject(const wchar_t*, VARIANT*) { return general_failure; }
int32_t _CoGetObject(const wchar_t*, const wchar_t*, VARIANT* object)
{
    return object ? general_failure : E_INVALIDARG;
}
int32_t _DotNetCoCreateObject(const wchar_t*, const wchar_t*, const wchar_t*, VARIANT*) { return general_failure; }
int32_t _DotNetUnloadAppDomain(const wchar_t*) { return -1; }
