// All engine interfaces. Text crosses as BSTR, truth as VARIANT_BOOL; results are HRESULTs.
#pragma once

#include "engine_data.h"
#include "engine_features.h"
#include "engine_host.h"
#include "engine_progress.h"
#include "engine_services.h"
#include "engine_window.h"
