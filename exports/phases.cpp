// Install phases that go on to the host, and the host's objects.
#include "vhrt/phases.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../runtime/interface_result.h"
#include "../scriptdata/results.h"
#include "../scriptdata/variant.h"

namespace {

int32_t OnHost(ObjectContext* context, HRESULT (STDMETHODCALLTYPE ISetupHost::*phase)())
{
    return vh::Framed(context,
                      [&](ObjectContext& c) -> int32_t { return c.host ? (c.host.get()->*phase)() : E_POINTER; });
}

// A phase behind an interface that the host may lack; lacking it is success.
template <class Phases, class Use>
int32_t OnPhases(ObjectContext* context, Use&& use)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (!c.host)
            return E_POINTER;
        const auto phases = c.host.query<Phases>();
        return phases ? use(*phases.get()) : 0;
    });
}

// The value of "back": the walk over the objects turns around.
constexpr int32_t back_value = 12;

// One of the objects, or the host for a null index.
int32_t GiveObject(ObjectContext* context, const vh::variant* index, VARIANT* object)
{
    return vh::Mapped(context, [&](ObjectContext& c) -> int32_t {
        if (!index)
            return vh::InterfaceResult(c.host.get(), object, -1);
        if (const HRESULT code = vh::ClearResult(object); FAILED(code))
            return code;
        if (!c.objects)
            return -1;
        vh::com_ptr<IUnknown> found;
        const HRESULT code = c.objects->Item(index->get(), found.put());
        if (FAILED(code))
            return code;
        return found ? vh::PutDispatch(found.get(), object) : E_FAIL;
    });
}

} // namespace

int32_t _InitInstall(ObjectContext* context) { return OnHost(context, &ISetupHost::InitInstall); }
int32_t _ExitInstall(ObjectContext* context) { return OnHost(context, &ISetupHost::ExitInstall); }
int32_t _CCPSearch(ObjectContext* context) { return OnHost(context, &ISetupHost::CCPSearch); }
int32_t _AppSearch(ObjectContext* context) { return OnHost(context, &ISetupHost::AppSearch); }

int32_t _Preprogram(ObjectContext* context)
{
    return OnPhases<ISetupProgramPhases>(context, [](ISetupProgramPhases& phases) { return phases.Preprogram(); });
}

int32_t _Postprogram(ObjectContext* context)
{
    return OnPhases<ISetupProgramPhases>(context, [](ISetupProgramPhases& phases) { return phases.Postprogram(); });
}

int32_t _OnUninstPriv(ObjectContext* context)
{
    return OnPhases<ISetupUninstallPhases>(context, [](ISetupUninstallPhases& phases) { return phases.OnUninstall(); });
}

int32_t _Rebooted(ObjectContext* context)
{
    return OnPhases<ISetupRebootPhase>(context,
                                       [](ISetupRebootPhase& phase) { return vh::FailureOnly(phase.Rebooted()); });
}

int32_t _ShowWizardPages(ObjectContext* context, int32_t value)
{
    return OnPhases<ISetupWizard>(context, [&](ISetupWizard& wizard) {
        long result = value;
        return vh::FailureOnly(wizard.ShowPages(value, &result));
    });
}

int32_t _ShowObjWizardPages(ObjectContext* context, int32_t value)
{
    if (!context || !context->objects)
        return value;
    ISetupObjects* objects = context->objects.get();
    long count = 0;
    if (const HRESULT code = objects->Count(&count); FAILED(code))
        return code;
    long shown = value;
    long position = value == back_value ? count : 1;
    while (position >= 1 && position <= count) {
        const vh::variant index(position);
        vh::com_ptr<IUnknown> object;
        const HRESULT found = objects->Item(index.get(), object.put());
        if (const HRESULT code = vh::Given(found, object); FAILED(code))
            return code;
        // An object without pages is passed over.
        if (const auto wizard = object.query<ISetupWizard>())
            if (const HRESULT code = wizard->ShowPages(shown, &shown); FAILED(code))
                return code;
        position += shown == back_value ? -1 : 1;
    }
    return shown;
}

int32_t _RebootPutString(ObjectContext* context, const wchar_t* text1, const wchar_t* text2, const wchar_t* text3)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const vh::bstr first(text1);
        const vh::bstr second(text2);
        const vh::bstr third(text3);
        return c.reboot ? c.reboot->PutString(first.get(), second.get(), third.get()) : E_FAIL;
    });
}

int32_t _GetObject(ObjectContext* context, const wchar_t* name, VARIANT* object)
{
    if (vh::IsEmpty(name))
        return GiveObject(context, nullptr, object);
    const vh::variant wanted(name);
    return GiveObject(context, &wanted, object);
}

int32_t _GetObjectByIndex(ObjectContext* context, int32_t index, VARIANT* object)
{
    if (index == 0)
        return GiveObject(context, nullptr, object);
    const vh::variant wanted(static_cast<long>(index));
    return GiveObject(context, &wanted, object);
}

int32_t _GetObjectCount(ObjectContext* context, int32_t* count)
{
    static_assert(sizeof(long) == sizeof(int32_t));
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (!c.objects)
            return -1;
        return vh::FailureOnly(c.objects->Count(reinterpret_cast<long*>(count)));
    });
}

int32_t __GetObjects(ObjectContext* context, VARIANT* object)
{
    return vh::Framed(context, [&](ObjectContext& c) { return vh::InterfaceResult(c.objects.get(), object, -1); });
}
