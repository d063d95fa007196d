// The large actions: moving data, removal, updates, registry sets, further data sets, saved targets.
#include "vhrt/transfer.h"

#include "../diagnostics/trace.h"
#include "../media/concrete_media.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/results.h"

namespace {

constexpr std::wstring_view product_media = L"DATA";

// An action of the product's media that leaves reinstall mode on, also when it fails.
template <class Action>
int32_t WithReinstallMode(ObjectContext* context, Action&& action)
{
    return vh::Mapped(context, [&](ObjectContext& c) -> int32_t {
        const int32_t acted = action(c.media.Find(product_media));
        const auto modes = c.Ask<ISetupData>().query<ISetupDataModes>();
        const HRESULT mode = modes ? modes->SetReinstallMode(VARIANT_TRUE) : E_FAIL;
        return acted < 0 || SUCCEEDED(mode) ? acted : mode;
    });
}

constexpr const wchar_t* data_failure = L"Result=%s\t\tError=0x%08lx\t\tMedia=%s";
constexpr const wchar_t* data_success = L"Result=%s\t\tMedia=%s";

} // namespace

int32_t _ComponentMoveData(ObjectContext* context, const wchar_t* media, int32_t value)
{
    const vh::TracedCall call(L"FeatureMoveData", L"Media=%s", media);
    return vh::Mapped(context, [&](ObjectContext& c) {
        return call.End(c.media.Find(vh::View(media)).MoveData(value, context), data_failure, data_success, media);
    });
}

int32_t _ComponentTransferData(ObjectContext* context, const wchar_t* media)
{
    const vh::TracedCall call(L"FeatureTransferData", L"Media=%s", media);
    return vh::Mapped(context, [&](ObjectContext& c) {
        return call.End(c.media.Find(vh::View(media)).TransferData(context), data_failure, data_success, media);
    });
}

int32_t _CreateRegistrySet(ObjectContext* context, const wchar_t* media, const wchar_t* set)
{
    const vh::TracedCall call(L"CreateRegistrySet", L"%s", set);
    return vh::Mapped(context, [&](ObjectContext& c) {
        return call.End(c.media.Find(vh::View(media)).CreateRegistrySet(vh::View(set), c.log.get()),
                        L"Result=%s\t\tError=0x%08lx\tRegistrySet=%s", L"Result=%s\tRegistrySet=%s", set);
    });
}

int32_t _CreateShellObjects(ObjectContext* context, const wchar_t* media)
{
    const vh::TracedCall call(L"CreateShellObjects", L"");
    return vh::Mapped(context, [&](ObjectContext& c) {
        return call.End(c.media.Find(vh::View(media)).CreateShellObjects(c.log.get()), L"Result=%s\t\tError=0x%08lx\t",
                        L"Result=%s\t");
    });
}

int32_t _ComponentReinstall(ObjectContext* context)
{
    return WithReinstallMode(context, [](CVHRTMedia& m) { return m.Reinstall(); });
}

int32_t _ComponentUpdate(ObjectContext* context)
{
    return WithReinstallMode(context, [](CVHRTMedia& m) { return m.Update(); });
}

int32_t _ComponentPatch(ObjectContext* context)
{
    return WithReinstallMode(context, [](CVHRTMedia& m) { return m.Patch(true); });
}

int32_t _ComponentRemoveAll(ObjectContext* context)
{
    return vh::Mapped(context, [&](ObjectContext& c) {
        const int32_t removed = c.media.Find(product_media).RemoveAll();
        if (const auto data = c.Ask<ISetupData>().query<ISetupDataEx>())
            data->SetRemoveAllMode(VARIANT_TRUE);
        return removed;
    });
}

int32_t _ComponentRemoveAllInLogOnly(ObjectContext* context)
{
    return vh::Mapped(context, [](ObjectContext& c) { return c.media.Find(product_media).RemoveAllInLogOnly(); });
}

// Installing is the data actions' business; this name stays for scripts that still call it.
int32_t _DoInstall(ObjectContext*) { return E_NOTIMPL; }

int32_t _FeatureInitialize(ObjectContext* context, const wchar_t* media, const wchar_t* target, const wchar_t* header)
{
    constexpr int32_t media_exists = -127;
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const std::wstring path = vh::PathWithExtension(vh::View(header), L".hdr");
        if (c.media.Find(vh::View(media)).IsReal())
            return media_exists;
        vh::com_ptr<ISetupDataFactory> factory;
        if (const HRESULT code = c.Ask(factory); FAILED(code))
            return code;
        vh::com_ptr<ISetupData> data;
        if (const HRESULT code = factory->Open(vh::bstr(path).get(), vh::bstr(L"").get(), data.put()); FAILED(code))
            return code;
        if (!data)
            return E_FAIL;
        if (const HRESULT code = data->SetLog(c.log.get()); FAILED(code))
            return code;
        try {
            c.media.Add(vh::View(media), std::make_unique<CVHSecondaryFileMedia>(vh::View(target), std::move(data)));
        } catch (const std::exception&) {
            // The data set is open; what the script then finds is a media that is not there.
        }
        return 0;
    });
}

int32_t _ComponentInitialize(ObjectContext* context, const wchar_t* target, const wchar_t* header)
{
    return _FeatureInitialize(context, L"<Data>", target, header);
}

namespace {

// Reads or writes both text stores under the name: the global one in the log database, if there is one, the
// local one in the context's log. Failures come back as they are and leave no end record.
int32_t ExchangeTargets(ObjectContext& context, std::wstring_view name,
                        HRESULT (STDMETHODCALLTYPE ISetupTextSub::*exchange)(BSTR, IUnknown*))
{
    const auto run = [&](const vh::com_ptr<ISetupTextSub>& variables, std::wstring_view suffix, IUnknown* store) {
        if (!variables)
            return E_POINTER;
        return (variables.get()->*exchange)(vh::bstr(vh::Concat(name, suffix).view()).get(), store);
    };
    vh::com_ptr<IUnknown> store;
    const auto database = context.Ask<ISetupLogDB>();
    if (database && SUCCEEDED(database->GetStore(store.put())) && store)
        if (const HRESULT code = run(context.textSubGlobal, L"Global", store.get()); FAILED(code))
            return code;
    return run(context.textSubLocal, L"Local", context.log.get());
}

constexpr const wchar_t* target_success = L"Result=%s\t\tName=%s";

} // namespace

int32_t _ComponentLoadTarget(ObjectContext* context, const wchar_t* name)
{
    const vh::TracedCall call(L"FeatureLoadTarget", L"Name=%s", name);
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const int32_t code = ExchangeTargets(c, vh::View(name), &ISetupTextSub::Load);
        return FAILED(code) ? code : call.End(0, L"", target_success, name);
    });
}

int32_t _ComponentSaveTarget(ObjectContext* context, const wchar_t* name)
{
    const vh::TracedCall call(L"FeatureSaveTarget", L"Name=%s", name);
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        vh::com_ptr<ISetupData> data;
        if (const HRESULT code = c.Ask(data); FAILED(code))
            return code;
        vh::com_ptr<ISetupDataEx> extended;
        if (const HRESULT code = data.query(extended); FAILED(code))
            return code;
        long state = 0;
        if (const HRESULT code = extended->GetTargetState(&state); FAILED(code))
            return code;
        const bool saved = (state & 1) && (state & (2 | 4));
        const int32_t code = saved ? 0 : ExchangeTargets(c, vh::View(name), &ISetupTextSub::Save);
        return FAILED(code) ? code : call.End(0, L"", target_success, name);
    });
}
