// Exported functions of the component view.
#include "vhrt/component_view.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../views/component_view.h"

namespace {

// The same frame around a view: one that does not live answers -1.
template <class Body>
int32_t OnView(const ComponentView* view, Body&& body)
{
    const auto live = ComponentView::Live(view);
    return live ? body(*live) : -1;
}

} // namespace

ComponentView* _ComponentViewCreate(ObjectContext* context, HWND dialog, int32_t control)
{
    if (!context)
        return nullptr;
    return ComponentView::Create({context->media, context->modules, context->supportDir, context}, dialog, control);
}

int32_t ComponentViewCreateWindow(ComponentView* view)
{
    return OnView(view, [](ComponentView& live) { return live.MakeWindow(); });
}

int32_t ComponentViewSetInfo(ComponentView* view, int32_t info, int64_t number, const wchar_t* text)
{
    return OnView(view, [&](ComponentView& live) { return live.SetInfo(info, number, text); });
}

int32_t ComponentViewSetInfoEx(ObjectContext* context, int32_t info, int32_t number)
{
    return vh::Framed(context, [&](const ObjectContext& c) -> int32_t {
        return ComponentView::SetSharedInfo(c.modules, info, number) ? 1 : 0;
    });
}

int32_t _ComponentViewQueryInfo(ComponentView* view, int32_t info, int64_t* number, wchar_t* text, int32_t size)
{
    return OnView(view, [&](const ComponentView& live) { return live.QueryInfo(info, number, text, size); });
}

int32_t ComponentViewRefresh(ComponentView* view)
{
    return OnView(view, [](ComponentView& live) { return live.Refresh(); });
}

int32_t ComponentViewSelectAll(ComponentView* view, int32_t select)
{
    return OnView(view, [&](ComponentView& live) { return live.SelectAll(select != 0); });
}

int32_t ComponentViewDestroy(ComponentView* view)
{
    return OnView(view, [](ComponentView& live) {
        live.Destroy();
        return 0;
    });
}
