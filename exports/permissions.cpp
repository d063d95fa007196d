// Exported functions of permissions.
#include "vhrt/permissions.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../system/secure_object.h"

namespace {

// Its lines go to the engine's log for scripts, and the helper is the engine's.
class CVHRTSecureObject final : public vh::CVHSecureObject {
public:
    explicit CVHRTSecureObject(const ObjectContext& context) : m_context(context), m_log(context.Ask<ISetupScriptLog>())
    {
    }

    void Log(const wchar_t* line) override
    {
        if (m_log)
            m_log->WriteLine(vh::bstr(line).get());
    }
    HRESULT GetHelper(vh::com_ptr<ISetupPermissionHelper>& helper) override { return m_context.Ask(helper); }

private:
    const ObjectContext& m_context;
    vh::com_ptr<ISetupScriptLog> m_log;
};

} // namespace

int32_t _SetObjectPermissions(ObjectContext* context, const wchar_t* object, int32_t kind, const wchar_t* domain,
                              const wchar_t* account, int32_t access, int32_t flags)
{
    return vh::Framed(context, [&](const ObjectContext& found) {
        return CVHRTSecureObject(found).SetPermissions(
            {object, kind, domain, account, static_cast<uint32_t>(access), flags});
    });
}
