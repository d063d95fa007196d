// The progress service: no windows, a callback of the host instead.
#pragma once

#include "../object.h"
#include "transfer.h"

namespace vh::engine {

// What a transfer reports to; the bytes to come were announced.
class TransferSink final : public engine_object<TransferSink, IEngineProgress> {
public:
    TransferSink(std::shared_ptr<Core> core, uint64_t total) : engine_object(std::move(core)), m_total(total) {}

    void Advance(uint64_t bytes, const std::wstring& file) override;

private:
    uint64_t m_total;
    uint64_t m_done = 0;
};

class ProgressObject final
    : public engine_object<ProgressObject, ISetupProgress, ISetupProgressOpen, ISetupProgressLink, ISetupProgressCost> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE ArmWindow(short value) override;
    // Percent of the transfer that runs or ran last.
    HRESULT STDMETHODCALLTYPE ReadPosition(short* position) override;
    HRESULT STDMETHODCALLTYPE SetTitle(BSTR title) override;
    HRESULT STDMETHODCALLTYPE SetMainImage(BSTR image) override;
    // There is no window: null.
    HRESULT STDMETHODCALLTYPE GetWindow(long index, HWND* window) override;
    HRESULT STDMETHODCALLTYPE GetBar(ISetupProgressBar** bar) override;
    HRESULT STDMETHODCALLTYPE SetBar(ISetupProgressBar* bar) override;
    HRESULT STDMETHODCALLTYPE BeginTransfer(unsigned long low, unsigned long high, short stopAt,
                                            IUnknown** progress) override;
    HRESULT STDMETHODCALLTYPE Open(HWND parent, BSTR templateFile, long resource) override;
    HRESULT STDMETHODCALLTYPE Close() override;
    HRESULT STDMETHODCALLTYPE SetOption(long option, short value) override;
    HRESULT STDMETHODCALLTYPE OpenEx(HWND parent, BSTR templateFile, long resource, long flags) override;
    HRESULT STDMETHODCALLTYPE SetLink(VARIANT_BOOL on) override;
    HRESULT STDMETHODCALLTYPE SpendCost(long first, long second) override;

    static const dispatch_entry<ProgressObject> names[3];
};

} // namespace vh::engine
