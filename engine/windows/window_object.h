// The main window, as the library reaches it.
#pragma once

#include "../object.h"

namespace vh::engine {

class WindowObject final
    : public engine_object<WindowObject, ISetupWindow, ISetupWindowEx1, ISetupWindowEx2, ISetupWindowEffect> {
public:
    using engine_object::engine_object;

    HRESULT STDMETHODCALLTYPE GetHandle(HWND* window) override;
    HRESULT STDMETHODCALLTYPE SetCaption(BSTR text) override;
    HRESULT STDMETHODCALLTYPE SetColor(long color, VARIANT_BOOL gradient) override;
    HRESULT STDMETHODCALLTYPE SetWaitCursor(VARIANT_BOOL on) override;
    HRESULT STDMETHODCALLTYPE CreateTitle(ISetupTitle** title) override;
    HRESULT STDMETHODCALLTYPE CreateBitmap(BSTR file, long placement, long transparent, ISetupBitmap** bitmap) override;
    HRESULT STDMETHODCALLTYPE CreateMessage(BSTR library, long dialog, long control, ISetupMessage** message) override;
    HRESULT STDMETHODCALLTYPE CreateMessageFor(HWND parent, BSTR library, long dialog, long control,
                                               ISetupMessage** message) override;
    HRESULT STDMETHODCALLTYPE CreateBar(BSTR supportDirectory, ISetupProgressBar** bar) override;

    HRESULT STDMETHODCALLTYPE SetCache(long on) override;
    HRESULT STDMETHODCALLTYPE DialogClosing(HWND dialog) override;
    HRESULT STDMETHODCALLTYPE DropPicture() override;
    HRESULT STDMETHODCALLTYPE SetEffect(long effect) override;

private:
    HRESULT GiveMessage(HWND parent, BSTR library, long dialog, long control, ISetupMessage** message);
};

} // namespace vh::engine
