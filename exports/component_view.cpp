// Exported functions of the component view: none can be made yet.
#include "vhrt/component_view.h"

#include "pending.h"

using namespace vh::pending;

ComponentView* _ComponentViewCreate(ObjectContext*, HWND, int32_t) { return nullptr; }
int32_t ComponentViewCreateWindow(ComponentView*) { return -1; }
int32_t ComponentViewSetInfo(ComponentView*, int32_t, int64_t, const wchar_t*) { return 0; }
int32_t ComponentViewSetInfoEx(ObjectContext* context, int32_t, int32_t) { return Missing(context, 0); }
int32_t _ComponentViewQueryInfo(ComponentView*, int32_t, int64_t*, wchar_t*, int32_t) { return -1; }
int32_t ComponentViewRefresh(ComponentView*) { return -1; }
int32_t ComponentViewSelectAll(ComponentView*, int32_t) { return -1; }
int32_t ComponentViewDestroy(ComponentView*) { return -1; }
