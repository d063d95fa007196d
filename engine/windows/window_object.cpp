#include "window_object.h"

namespace vh::engine {

HRESULT WindowObject::GetHandle(HWND* window)
{
    return Call("ISetupWindow.GetHandle")([&] { return Give(window, core().options.window); });
}

HRESULT WindowObject::SetCaption(BSTR text)
{
    return Call("ISetupWindow.SetCaption", text)([] { return S_OK; });
}

HRESULT WindowObject::SetColor(long color, VARIANT_BOOL gradient)
{
    return Call("ISetupWindow.SetColor", color, gradient)([] { return S_OK; });
}

HRESULT WindowObject::SetWaitCursor(VARIANT_BOOL on)
{
    return Call("ISetupWindow.SetWaitCursor", on)([] { return S_OK; });
}

HRESULT WindowObject::CreateTitle(ISetupTitle**)
{
    return Call("ISetupWindow.CreateTitle")([] { return E_NOTIMPL; });
}

HRESULT WindowObject::CreateBitmap(BSTR file, long placement, long transparent, ISetupBitmap**)
{
    return Call("ISetupWindow.CreateBitmap", file, placement, transparent)([] { return E_NOTIMPL; });
}

HRESULT WindowObject::CreateMessage(BSTR library, long dialog, long control, ISetupMessage**)
{
    return Call("ISetupWindow.CreateMessage", library, dialog, control)([] { return E_NOTIMPL; });
}

HRESULT WindowObject::CreateMessageFor(HWND, BSTR library, long dialog, long control, ISetupMessage**)
{
    return Call("ISetupWindow.CreateMessageFor", library, dialog, control)([] { return E_NOTIMPL; });
}

HRESULT WindowObject::CreateBar(BSTR supportDirectory, ISetupProgressBar**)
{
    return Call("ISetupWindow.CreateBar", supportDirectory)([] { return E_NOTIMPL; });
}

HRESULT WindowObject::SetCache(long on)
{
    return Call("ISetupWindowEx1.SetCache", on)([] { return S_OK; });
}

HRESULT WindowObject::DialogClosing(HWND)
{
    return Call("ISetupWindowEx1.DialogClosing")([] { return S_OK; });
}

HRESULT WindowObject::DropPicture()
{
    return Call("ISetupWindowEx1.DropPicture")([] { return S_OK; });
}

HRESULT WindowObject::SetEffect(long effect)
{
    return Call("ISetupWindowEffect.SetEffect", effect)([] { return S_OK; });
}

} // namespace vh::engine
