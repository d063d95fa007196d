#include "silent_retry.h"

#include "../scriptdata/facts.h"
#include "context.h"

DWORD SilentRetry::on_error(vh::inet_file& file)
{
    if (!m_context.silent && !vh::fact(m_context.Ask<ISetupInfo>().get(), vh::fact_silent).truth())
        return 0;
    return file.has_answered_failure() ? ERROR_CANCELLED : ERROR_INTERNET_FORCE_RETRY;
}
