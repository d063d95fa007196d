// Exported functions that define, run and end dialogs.
#include "vhrt/dialogs.h"

#include "../dialogs/status_window.h"
#include "../runtime/context.h"
#include "../runtime/own_windows.h"
#include "../scriptdata/results.h"
#include "pending.h"

using namespace vh::pending;

int32_t _DefineDialog(ObjectContext* context, const wchar_t* name, HMODULE module, const wchar_t* library,
                      int32_t resource, const wchar_t* resourceName, int32_t, HWND parent, int32_t style)
{
    return vh::WithOwnWindows(context, [&](ObjectContext& c) {
        const auto main_window = reinterpret_cast<HWND>(intptr_t{-2});
        const DialogDefinition definition{
            module, library, resource, resourceName, parent == main_window ? c.MainWindow() : parent, style};
        return c.dialogs.Define(name, definition) == CDialogManager::done ? 0 : -1;
    });
}

int32_t _WaitOnDialog(ObjectContext* context, const wchar_t* name)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const auto dialog = c.dialogs.Find(name);
        return dialog ? dialog->Wait() : CScriptDialog::wait_failed;
    });
}

int32_t _EndDialog(ObjectContext* context, const wchar_t* name)
{
    return vh::WithOwnWindows(context, [&](ObjectContext& c) -> int32_t {
        const stringx ended(name);
        if (ended == progress_dialog)
            return vh::StatusWindow(c.dialogs).Close();
        const auto dialog = c.dialogs.Find(ended);
        if (!dialog)
            return -1;
        dialog->End();
        return 0;
    });
}

int32_t _ReleaseDialog(ObjectContext* context, const wchar_t* name)
{
    return vh::WithOwnWindows(context, [&](ObjectContext& c) { return c.dialogs.Release(name); });
}

int32_t _EnablePrevDialog(ObjectContext* context, int32_t enable, const wchar_t* name)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        if (enable)
            c.dialogs.Pop();
        else
            c.dialogs.Push(name);
        return 0;
    });
}

int32_t _EnableDialogCache(ObjectContext* context, int32_t enable)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        if (!c.windowEx1)
            return 0;
        // The truth takes the low 16 bits, the upper ones stay as given.
        constexpr long low_bits = 0xFFFF;
        c.windowEx1->SetCache((enable & ~low_bits) | (enable ? low_bits : 0));
        if (!enable)
            c.windowEx1->DropPicture();
        return 0;
    });
}

int32_t _GetCurrentDialogName(ObjectContext* context, wchar_t* buffer, int32_t size)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        const stringx* name = c.dialogs.CurrentName();
        return name ? vh::CopyOut(name->view(), buffer, size) : -1;
    });
}

int32_t _DialogSetFont(ObjectContext* context, const wchar_t* face, int32_t size)
{
    return vh::WithOwnWindows(context, [&](ObjectContext& c) {
        c.dialogs.SetFont(face, static_cast<uint16_t>(size));
        return 0;
    });
}

int32_t _EnableSkins(ObjectContext* context, int32_t) { return Missing(context, 0); }
int32_t _IsSkinLoaded(ObjectContext* context) { return Missing(context, 0); }
