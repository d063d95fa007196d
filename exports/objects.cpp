// Exported functions of object creation.
#include "vhrt/objects.h"

#include "../Src/inc/co_create.h"
#include "../diagnostics/clr_host.h"
#include "../diagnostics/trace.h"
#include "../scriptdata/late_windows.h"
#include "../scriptdata/variant.h"

using namespace vh;

namespace {

constexpr DWORD anywhere = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
static_assert(anywhere == 21);

const wchar_t* TextOf(const wchar_t* text) { return text ? text : L""; }

long Shown(const com_ptr<IDispatch>& object) { return static_cast<long>(reinterpret_cast<intptr_t>(object.get())); }

void Give(VARIANT* result, const com_ptr<IDispatch>& object)
{
    com_ptr<IDispatch> own = object;
    result->vt = VT_DISPATCH;
    result->pdispVal = own.detach();
}

} // namespace

int32_t _CreateObject(const wchar_t* progId, VARIANT* object)
{
    const TracedCall call(L"CoCreateObject", L"ProgId=%s", progId);
    if (!object)
        return E_INVALIDARG;
    if (const HRESULT code = VariantClear(object); FAILED(code))
        return code;
    CLSID id{};
    if (const HRESULT code = late::class_from_prog_id(TextOf(progId), &id); FAILED(code))
        return code;
    com_ptr<IDispatch> made;
    const HRESULT code =
        late::co_create_instance(id, static_cast<IUnknown*>(nullptr), anywhere, iid_of<IDispatch>, made.put_void());
    if (FAILED(code))
        return code;
    Give(object, made);
    return call.End(0, L"", L"Result=%s\tProgId=%s\tDispId=0x%08lx", progId, Shown(made));
}

int32_t _CoGetObject(const wchar_t* name, const wchar_t* progId, VARIANT* object)
{
    const TracedCall call(L"CoGetObject", L"File=%s\tProgId=%s", name, progId);
    if (!object)
        return E_INVALIDARG;
    if (const HRESULT code = VariantClear(object); FAILED(code))
        return code;
    com_ptr<IDispatch> found;
    const auto end = [&](HRESULT code) {
        if (SUCCEEDED(code))
            Give(object, found);
        return call.End(code, L"Result=%s\t\tError=0x%08lx\tFile=%s\tProgId=%s\tDispId=0x%08lx",
                        L"Result=%s\tFile=%s\tProgId=%s\tDispId=0x%08lx", name, progId, Shown(found));
    };
    if (*TextOf(name)) {
        const auto get = late::co_get_object.get();
        if (!get)
            return end(E_FAIL);
        const HRESULT code = get(name, nullptr, iid_of<IDispatch>, found.put_void());
        return FAILED(code) ? code : end(found ? S_OK : E_NOINTERFACE);
    }
    if (!*TextOf(progId))
        return end(E_FAIL);
    CLSID id{};
    if (const HRESULT code = late::class_from_prog_id(progId, &id); FAILED(code))
        return code;
    com_ptr<IUnknown> running;
    if (const HRESULT code = FindRunningObject(id, running.put()); FAILED(code))
        return code;
    found = running.query<IDispatch>();
    return end(found ? S_OK : E_NOINTERFACE);
}

int32_t _DotNetCoCreateObject(const wchar_t* assembly, const wchar_t* className, const wchar_t* domain, VARIANT* object)
{
    const TracedCall call(L"DotNetCoCreateObject", L"AssemblyPathFile=%s\tAssemblyNameAndClass=%s\tAppDomain=%s",
                          assembly, className, domain);
    const auto end = [&](const wchar_t* word, long shown) {
        call.EndAs(word, L"Result=%s\tAssemblyPathFile=%s\tAssemblyNameAndClass=%s\tAppDomain=%s\tDispId=0x%08lx",
                   assembly, className, domain, shown);
    };
    if (!object)
        return E_INVALIDARG;
    if (const HRESULT code = VariantClear(object); FAILED(code))
        return code;
    try {
        const CCLRHost<IDispatch> host(TextOf(assembly), TextOf(className), TextOf(domain));
        Give(object, host.object());
        end(L"Success", Shown(host.object()));
        return 0;
    } catch (const std::exception&) {
        end(L"Failure", 0);
        throw;
    }
}

int32_t _DotNetUnloadAppDomain(const wchar_t* domain)
{
    const TracedCall call(L"DotNetUnloadAppDomain", L"AppDomain=%s", domain);
    const auto end = [&](int32_t code) {
        return call.End(code, L"Result=%s\t\tError=0x%08lx\tAppDomain=%s", L"Result=%s\tAppDomain=%s", domain);
    };
    try {
        return end(CCLRHost<IDispatch>().UnloadDomains(TextOf(domain)) ? 0 : -1);
    } catch (const com_exception& raised) {
        end(raised.code());
        throw;
    } catch (const win32_exception& raised) {
        end(HRESULT_FROM_WIN32(raised.code()));
        throw;
    }
}
