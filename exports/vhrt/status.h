/* The status window, which the engine's progress service owns. In a suite context all of these answer -1. */
#pragma once

#include "types.h"

/* Styles of the status window. */
enum { StatusStyle4 = 4, StatusStyle5 = 5, StatusStyle6 = 6, StatusStyle57 = 57, StatusStyle58 = 58 };

/* Opens the status window; a second call changes nothing, and in silent mode nothing opens. Result: 0 or the
   engine's failing code; -1 for another style. */
VHRT_FUNCTION(int32_t) _EnableStatus(ObjectContext* context, int32_t style);

/* Closes it. Result: 0 or the engine's failing code; -1 where the engine brings its own windows. */
VHRT_FUNCTION(int32_t) _DisableStatus(ObjectContext* context);

/* Links the bar to the file transfer, which moves it up to a position in percent. Result: the engine's; -1
   without a progress service; both values are kept all the same. */
VHRT_FUNCTION(int32_t) _StatusUpdate(ObjectContext* context, int32_t link, int16_t position);

/* Moves the bar by a cost: two halves of a number of bytes; for removal their product. Result: 0; -1 on failure, and
   before another of these asked for the progress service. */
VHRT_FUNCTION(int32_t) _FeatureSpendCost(ObjectContext* context, int32_t first, int32_t second);
VHRT_FUNCTION(int32_t) _FeatureSpendUninstallCost(ObjectContext* context, int32_t first, int32_t second);
