/* Windows services. */
#pragma once

#include "types.h"

/* Stops a service and first all that depend on it; each wait is limited to 30 s. Traced as
   "StopDependentServices". No context. Result: 1 stopped, also when it was before; 0 failed. */
VHRT_FUNCTION(int32_t) _ServiceStopDependentServices(const wchar_t* service);
