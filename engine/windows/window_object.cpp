#include "window_object.h"

#include "bar_object.h"
#include "bitmap_object.h"
#include "message_object.h"
#include "picture.h"
#include "screen.h"
#include "title_object.h"

namespace vh::engine {

HRESULT WindowObject::GetHandle(HWND* window)
{
    return Call("ISetupWindow.GetHandle")([&] { return Give(window, core().screen->Handle()); });
}

HRESULT WindowObject::SetCaption(BSTR text)
{
    return Call("ISetupWindow.SetCaption", text)([&] {
        if (const HWND window = core().screen->Shows() ? core().screen->Handle() : nullptr)
            SetWindowTextW(window, core().DisplayText(engine::TextOf(text)).c_str());
        return S_OK;
    });
}

HRESULT WindowObject::SetColor(long color, VARIANT_BOOL gradient)
{
    return Call("ISetupWindow.SetColor", color, gradient)([&] {
        if (MainWindow* main = core().screen->Main())
            main->SetBackground(static_cast<COLORREF>(color), gradient != 0);
        return S_OK;
    });
}

HRESULT WindowObject::SetWaitCursor(VARIANT_BOOL on)
{
    return Call("ISetupWindow.SetWaitCursor", on)([&] {
        if (MainWindow* main = core().screen->Main())
            main->SetWaitCursor(on != 0);
        return S_OK;
    });
}

HRESULT WindowObject::CreateTitle(ISetupTitle** title)
{
    return Call("ISetupWindow.CreateTitle")([&] { return GiveObject(title, make_object<TitleObject>(shared_core())); });
}

HRESULT WindowObject::CreateBitmap(BSTR file, long placement, long transparent, ISetupBitmap** bitmap)
{
    return Call("ISetupWindow.CreateBitmap", file, placement, transparent)([&] {
        return GiveObject(bitmap, make_object<BitmapObject>(shared_core(), LoadPicture(core(), engine::TextOf(file)),
                                                            placement, transparent));
    });
}

HRESULT WindowObject::GiveMessage(HWND parent, BSTR library, long dialog, long control, ISetupMessage** message)
{
    auto shown = core().screen->MakeDialog(parent, engine::TextOf(library), dialog);
    return GiveObject(message, make_object<MessageObject>(shared_core(), std::move(shown), control));
}

HRESULT WindowObject::CreateMessage(BSTR library, long dialog, long control, ISetupMessage** message)
{
    return Call("ISetupWindow.CreateMessage", library, dialog,
                control)([&] { return GiveMessage(core().screen->Handle(), library, dialog, control, message); });
}

HRESULT WindowObject::CreateMessageFor(HWND parent, BSTR library, long dialog, long control, ISetupMessage** message)
{
    return Call("ISetupWindow.CreateMessageFor", library, dialog,
                control)([&] { return GiveMessage(parent, library, dialog, control, message); });
}

HRESULT WindowObject::CreateBar(BSTR supportDirectory, ISetupProgressBar** bar)
{
    return Call("ISetupWindow.CreateBar",
                supportDirectory)([&] { return GiveObject(bar, make_object<BarObject>(shared_core())); });
}

HRESULT WindowObject::SetCache(long on)
{
    return Call("ISetupWindowEx1.SetCache", on)([&] {
        core().screen->cache.Switch(LOWORD(on) != 0);
        return S_OK;
    });
}

HRESULT WindowObject::DialogClosing(HWND dialog)
{
    return Call("ISetupWindowEx1.DialogClosing")([&] {
        core().screen->cache.Keep(dialog);
        return S_OK;
    });
}

HRESULT WindowObject::DropPicture()
{
    return Call("ISetupWindowEx1.DropPicture")([&] {
        core().screen->cache.Drop();
        return S_OK;
    });
}

HRESULT WindowObject::SetEffect(long effect)
{
    return Call("ISetupWindowEffect.SetEffect", effect)([&] {
        core().screen->effect = effect;
        return S_OK;
    });
}

} // namespace vh::engine
