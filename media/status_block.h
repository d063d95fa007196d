// What transfers need of the engine's progress service; the status window stands on it.
#pragma once

#include "../Src/inc/engine_progress.h"
#include "../Src/inc/engine_services.h"
#include "../Src/inc/script_values.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/stringx.h"

namespace vh {

struct StatusBlock {
    // Fetched on first need, null until then.
    com_ptr<ISetupProgress> progress;
    // The bar follows the file transfer; otherwise the engine tells the position itself.
    bool linked = false;
    short stop_at = 0;
    com_ptr<IServiceProvider> services;
    stringx font_name;
    int32_t font_size = 0;
    int32_t height = 0;
    int32_t width = 0;

    HRESULT FetchProgress();
    // Announces a transfer of so many bytes and gives its progress object. Never above 0.
    HRESULT BeginTransfer(uint64_t bytes, com_ptr<IUnknown>& sink);
};

// The block of a context.
StatusBlock& StatusOf(ObjectContext& context);
bool IsSuite(const ObjectContext& context);

// The same for a context's transfer; a suite shows no status, and its progress object is null.
HRESULT BeginTransfer(ObjectContext& context, uint64_t bytes, com_ptr<IUnknown>& sink);

} // namespace vh
