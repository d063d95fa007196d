// Exported functions of services.
#include "vhrt/services.h"

#include "../system/service_stop.h"

int32_t _ServiceStopDependentServices(const wchar_t* service) { return vh::StopServiceWithDependents(service) ? 1 : 0; }
