// Birth and end of contexts, the component log, and the handles that hosts ask for.
#include "vhrt/context.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/late_windows.h"

namespace {

void RestoreMainLog(ObjectContext& context) { context.log = std::move(context.savedLog); }

} // namespace

ObjectContext* __CreateObjectContext(ISetupHost* host, IServiceProvider* services)
{
    vh::KeepMemoryReserve();
    auto context = std::make_unique<ObjectContext>();
    context->Fill(host, services);
    return context.release();
}

ObjectContext* __CreateObjectContextSuiteExt(IServiceProvider* services, const wchar_t* directory)
{
    if (!services)
        return nullptr;
    auto context = std::make_unique<ObjectContext>();
    context->FillSuite(services, directory ? directory : L"");
    return context.release();
}

void __ReleaseObjectContext(ObjectContext* context)
{
    if (!context->waitHandles.empty()) {
        if (const HWND main = context->MainWindow())
            vh::late::show_window(main, SW_HIDE);
        context->waitHandles.WaitForAll();
    }
    context->dialogs.skin.End();
    context->dialogs.EndMainImage();
    context->mainMarker = false;
    delete context;
}

void __ReleaseObjectContextSuiteExt(ObjectContext* context) { delete context; }

void __SetComponentLog(ObjectContext* context, IStream** stream)
{
    if (!context || !stream)
        return;
    vh::com_ptr<ISetupLog> component;
    const HRESULT code = vh::late::get_interface_and_release_stream(std::exchange(*stream, nullptr), ISetupLog::iid,
                                                                    component.put_void());
    if (FAILED(code))
        return;
    context->savedLog = context->log;
    context->log = component;
    context->logEx = std::move(component);
}

void __RestoreMainLog(ObjectContext* context)
{
    if (context)
        RestoreMainLog(*context);
}

void __RestoreMainLogEx(ObjectContext* context, int32_t flag)
{
    if (!context)
        return;
    RestoreMainLog(*context);
    if (flag)
        context->logEx.reset();
}

int64_t GetHandle(ObjectContext* context, int32_t selector)
{
    const auto handle_of = [&](const ObjectContext& c) {
        switch (selector) {
        case HandleMainWindow:
            return reinterpret_cast<int64_t>(c.MainWindow());
        case HandleResourceModule:
            return reinterpret_cast<int64_t>(c.modules.product);
        case HandleUserModule:
            return reinterpret_cast<int64_t>(c.modules.user);
        default:
            return int64_t{0};
        }
    };
    return vh::Framed(context, handle_of, 0);
}
