// The smallest host: a context without a product, for callers that only need lists, files and paths.
#include <cstdio>
#include <string>

#include <Src/inc/engine_host.h>
#include <scriptdata/com_object.h>
#include <vhrt.h>

// A service provider with nothing to offer; the library takes every service as missing.
class NoServices : public vh::com_object<IServiceProvider> {
public:
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID, void** service) override
    {
        *service = nullptr;
        return E_NOINTERFACE;
    }

private:
    HRESULT QueryMore(REFIID id, void** object) override
    {
        if (id != vh::iid_of<IServiceProvider>)
            return E_NOINTERFACE;
        *object = static_cast<IServiceProvider*>(this);
        return S_OK;
    }
};

int main()
{
    const auto services = vh::make_object<NoServices>();
    ObjectContext* context = __CreateObjectContextSuiteExt(services.get(), L"C:\\Temp");
    if (!context)
        return 1;

    ListHandle list = _ListCreate(context, ListTypeString);
    for (const wchar_t* path : {L"c:\\setup\\product.json", L"c:\\setup\\setup.js"}) {
        wchar_t name[64];
        if (PathGetFile(path, name, 64) == VHRT_OK)
            _ListAddString(context, list, name, ListAddAfter);
    }
    wchar_t text[64];
    for (int64_t at = _ListGetFirstString(context, list, text, 64); at == VHRT_OK;
         at = _ListGetNextString(context, list, text, 64))
        std::printf("%ls\n", text);
    std::printf("%lld names\n", static_cast<long long>(_ListCount(context, list)));

    _ListDestroy(context, &list);
    __ReleaseObjectContextSuiteExt(context);
    return 0;
}
