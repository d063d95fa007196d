#include "progress_object.h"

#include "../transfer/transfer_sink.h"
#include "screen.h"

namespace vh::engine {

const dispatch_entry<ProgressObject> ProgressObject::names[3] = {
    {L"Position", &GetProperty<&ProgressObject::ReadPosition, ProgressObject>, true},
    {L"Title",
     [](ProgressObject& object, const dispatch_call& call) {
         return call.put() ? object.SetTitle(call.text(0).get())
                           : call.give(variant(std::wstring_view(object.core().screen->status.title())));
     }},
    {L"Cancel",
     [](ProgressObject& object, const dispatch_call&) {
         object.core().cancelled = true;
         return S_OK;
     }},
};

HRESULT ProgressObject::ArmWindow(short value)
{
    return Call("ISetupProgress.ArmWindow", value)([&] {
        core().screen->status.SetVisible(value != 0);
        return S_OK;
    });
}

HRESULT ProgressObject::ReadPosition(short* position)
{
    return Call("ISetupProgress.ReadPosition")([&] { return Give(position, core().screen->status.position()); });
}

HRESULT ProgressObject::SetTitle(BSTR title)
{
    return Call("ISetupProgress.SetTitle", title)([&] {
        core().screen->status.SetTitle(TextOf(title));
        return S_OK;
    });
}

HRESULT ProgressObject::SetMainImage(BSTR image)
{
    return Call("ISetupProgress.SetMainImage", image)([&] {
        core().screen->status.SetMainImage(TextOf(image));
        return S_OK;
    });
}

HRESULT ProgressObject::GetWindow(long index, HWND* window)
{
    return Call("ISetupProgress.GetWindow", index)([&] { return Give(window, core().screen->status.handle()); });
}

HRESULT ProgressObject::GetBar(ISetupProgressBar** bar)
{
    return Call("ISetupProgress.GetBar")(
        [&] { return GiveObject(bar, com_ptr<ISetupProgressBar>(core().screen->status.bar())); });
}

HRESULT ProgressObject::SetBar(ISetupProgressBar* bar)
{
    return Call("ISetupProgress.SetBar")([&] {
        core().screen->status.SetBar(bar);
        return S_OK;
    });
}

HRESULT ProgressObject::BeginTransfer(unsigned long low, unsigned long high, short stopAt, IUnknown** progress)
{
    return Call("ISetupProgress.BeginTransfer", low, high, stopAt)([&] {
        core().screen->status.Begin(stopAt);
        return GiveObject(progress, make_object<TransferSink>(shared_core(), static_cast<uint64_t>(high) << 32 | low));
    });
}

HRESULT ProgressObject::Open(HWND parent, BSTR templateFile, long resource)
{
    return Call("ISetupProgress.Open", templateFile, resource)([&] {
        core().screen->status.Open(parent, TextOf(templateFile), resource, 0);
        return S_OK;
    });
}

HRESULT ProgressObject::Close()
{
    return Call("ISetupProgress.Close")([&] {
        core().screen->status.Close();
        return S_OK;
    });
}

HRESULT ProgressObject::SetOption(long option, short value)
{
    return Call("ISetupProgress.SetOption", option, value)([&] {
        core().screen->status.SetOption(option, value != 0);
        return S_OK;
    });
}

HRESULT ProgressObject::OpenEx(HWND parent, BSTR templateFile, long resource, long flags)
{
    return Call("ISetupProgressOpen.OpenEx", templateFile, resource, flags)([&] {
        core().screen->status.Open(parent, TextOf(templateFile), resource, flags);
        return S_OK;
    });
}

HRESULT ProgressObject::SetLink(VARIANT_BOOL on)
{
    return Call("ISetupProgressLink.SetLink", on)([&] {
        core().screen->status.Link(on != 0);
        return S_OK;
    });
}

HRESULT ProgressObject::SpendCost(long first, long second)
{
    return Call("ISetupProgressCost.SpendCost", first, second)([&] {
        constexpr uint64_t half = 0x7FFFFFFF;
        core().Advance((static_cast<uint64_t>(first) & half) << 31 | (static_cast<uint64_t>(second) & half),
                       core().progress.file);
        return S_OK;
    });
}

} // namespace vh::engine
