#include "progress.h"

#include <algorithm>

namespace vh::engine {

void TransferSink::Advance(uint64_t bytes, const std::wstring& file)
{
    m_done = std::min(m_done + bytes, m_total);
    core().progress = {m_done, m_total, m_total ? static_cast<int>(m_done * 100 / m_total) : 100, file};
    core().Advance(core().progress);
}

const dispatch_entry<ProgressObject> ProgressObject::names[3] = {
    {L"Position", &GetProperty<&ProgressObject::ReadPosition, ProgressObject>, true},
    {L"Title",
     [](ProgressObject& object, const dispatch_call& call) {
         return call.put() ? object.SetTitle(call.text(0).get())
                           : call.give(variant(std::wstring_view(object.core().progressTitle)));
     }},
    {L"Cancel",
     [](ProgressObject& object, const dispatch_call&) {
         object.core().cancelled = true;
         return S_OK;
     }},
};

HRESULT ProgressObject::ArmWindow(short value)
{
    return Call("ISetupProgress.ArmWindow", value)([] { return S_OK; });
}

HRESULT ProgressObject::ReadPosition(short* position)
{
    return Call("ISetupProgress.ReadPosition")([&] { return Give(position, core().progress.percent); });
}

HRESULT ProgressObject::SetTitle(BSTR title)
{
    return Call("ISetupProgress.SetTitle", title)([&] {
        core().progressTitle = TextOf(title);
        return S_OK;
    });
}

HRESULT ProgressObject::SetMainImage(BSTR image)
{
    return Call("ISetupProgress.SetMainImage", image)([] { return S_OK; });
}

HRESULT ProgressObject::GetWindow(long index, HWND* window)
{
    return Call("ISetupProgress.GetWindow", index)([&] { return Give(window, static_cast<HWND>(nullptr)); });
}

HRESULT ProgressObject::GetBar(ISetupProgressBar** bar)
{
    return Call("ISetupProgress.GetBar")(
        [&] { return GiveObject(bar, com_ptr<ISetupProgressBar>(core().progressBar)); });
}

HRESULT ProgressObject::SetBar(ISetupProgressBar* bar)
{
    return Call("ISetupProgress.SetBar")([&] {
        core().progressBar.reset(bar);
        return S_OK;
    });
}

HRESULT ProgressObject::BeginTransfer(unsigned long low, unsigned long high, short stopAt, IUnknown** progress)
{
    return Call("ISetupProgress.BeginTransfer", low, high, stopAt)([&] {
        const uint64_t total = static_cast<uint64_t>(high) << 32 | low;
        core().progress = {0, total, 0, {}};
        return GiveObject(progress, make_object<TransferSink>(shared_core(), total));
    });
}

HRESULT ProgressObject::Open(HWND, BSTR templateFile, long resource)
{
    return Call("ISetupProgress.Open", templateFile, resource)([] { return S_OK; });
}

HRESULT ProgressObject::Close()
{
    return Call("ISetupProgress.Close")([] { return S_OK; });
}

HRESULT ProgressObject::SetOption(long option, short value)
{
    return Call("ISetupProgress.SetOption", option, value)([] { return S_OK; });
}

HRESULT ProgressObject::OpenEx(HWND, BSTR templateFile, long resource, long flags)
{
    return Call("ISetupProgressOpen.OpenEx", templateFile, resource, flags)([] { return S_OK; });
}

HRESULT ProgressObject::SetLink(VARIANT_BOOL on)
{
    return Call("ISetupProgressLink.SetLink", on)([] { return S_OK; });
}

HRESULT ProgressObject::SpendCost(long first, long second)
{
    return Call("ISetupProgressCost.SpendCost", first, second)([] { return S_OK; });
}

} // namespace vh::engine
