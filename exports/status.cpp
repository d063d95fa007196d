// Exported functions of the status window: the progress service does not answer yet.
#include "vhrt/status.h"

#include "pending.h"

using namespace vh::pending;

int32_t _EnableStatus(ObjectContext* context, int32_t) { return Missing(context, general_failure); }
int32_t _DisableStatus(ObjectContext* context) { return Missing(context, general_failure); }
int32_t _StatusUpdate(ObjectContext*, int32_t, int16_t) { return -1; }
int32_t _FeatureSpendCost(ObjectContext*, int32_t, int32_t) { return -1; }
int32_t _FeatureSpendUninstallCost(ObjectContext*, int32_t, int32_t) { return -1; }
