// The progress service: the status window, and how far a transfer has come.
#pragma once

#include "../object.h"

namespace vh::engine {

class ProgressObject final
    : public engine_object<ProgressObject, ISetupProgress, ISetupProgressOpen, ISetupProgressLink, ISetupProgressCost> {
public:
    using engine_object::engine_object;

    // Shows the window; 0 hides it.
    HRESULT STDMETHODCALLTYPE ArmWindow(short value) override;
    // Percent at which the bar stands.
    HRESULT STDMETHODCALLTYPE ReadPosition(short* position) override;
    HRESULT STDMETHODCALLTYPE SetTitle(BSTR title) override;
    HRESULT STDMETHODCALLTYPE SetMainImage(BSTR image) override;
    // Null while none is open; there is one only, whatever the index.
    HRESULT STDMETHODCALLTYPE GetWindow(long index, HWND* window) override;
    HRESULT STDMETHODCALLTYPE GetBar(ISetupProgressBar** bar) override;
    HRESULT STDMETHODCALLTYPE SetBar(ISetupProgressBar* bar) override;
    HRESULT STDMETHODCALLTYPE BeginTransfer(unsigned long low, unsigned long high, short stopAt,
                                            IUnknown** progress) override;
    HRESULT STDMETHODCALLTYPE Open(HWND parent, BSTR templateFile, long resource) override;
    HRESULT STDMETHODCALLTYPE Close() override;
    // 7 switches the brand text; others are kept.
    HRESULT STDMETHODCALLTYPE SetOption(long option, short value) override;
    // Flag 1: the window does not cancel the run.
    HRESULT STDMETHODCALLTYPE OpenEx(HWND parent, BSTR templateFile, long resource, long flags) override;
    HRESULT STDMETHODCALLTYPE SetLink(VARIANT_BOOL on) override;
    // Bytes that a script has dealt with, in halves of 31 bits; they count towards those that were announced.
    HRESULT STDMETHODCALLTYPE SpendCost(long first, long second) override;

    static const dispatch_entry<ProgressObject> names[3];
};

} // namespace vh::engine
