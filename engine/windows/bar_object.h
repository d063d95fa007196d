// The progress bar: a control of its own in the place that a status window's template gives it.
#pragma once

#include "../object.h"

namespace vh::engine {

// How a status window reaches its bar.
struct IEngineBar : IUnknown {
    static constexpr GUID iid = Guid("{76683031-5A41-4C0B-9B1E-6E2F7D3C8B02}");
    // Makes the control in the window, over the placeholder; null windows take it away.
    virtual void Attach(HWND window, HWND placeholder) = 0;
    // 0 to 100.
    virtual void Move(int position) = 0;
};

class BarObject final : public engine_object<BarObject, ISetupProgressBar, IEngineBar> {
public:
    using engine_object::engine_object;
    ~BarObject() override { Attach(nullptr, nullptr); }

    // Pixels; 0 takes the placeholder's.
    HRESULT STDMETHODCALLTYPE SetWidth(long width) override;
    HRESULT STDMETHODCALLTYPE SetHeight(long height) override;
    void Attach(HWND window, HWND placeholder) override;
    void Move(int position) override;

private:
    HRESULT Resize(long& side, long value);

    HWND m_bar = nullptr;
    SIZE m_own{};
    long m_width = 0;
    long m_height = 0;
};

} // namespace vh::engine
