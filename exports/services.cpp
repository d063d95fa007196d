// Exported functions of services: none is stopped yet.
#include "vhrt/services.h"

int32_t _ServiceStopDependentServices(const wchar_t*) { return 0; }
