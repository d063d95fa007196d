// In a silent run nobody can answer a dialog about a failed download.
#pragma once

#include "../diagnostics/retry_handlers.h"

struct ObjectContext;

// Tries again what a network did, and gives up what a server answered. Leaves runs that are not silent alone.
class SilentRetry final : public vh::thread_retry_handler {
public:
    explicit SilentRetry(const ObjectContext& context) : m_context(context) {}
    DWORD on_error(vh::inet_file& file) override;

private:
    const ObjectContext& m_context;
};
