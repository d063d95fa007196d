// Facts that the context keeps, engine objects for scripts, and modes of the data set.
#include "vhrt/state.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../runtime/interface_result.h"
#include "../scriptdata/facts.h"
#include "../scriptdata/results.h"

namespace {

template <class Interface>
int32_t Give(ObjectContext* context, vh::com_ptr<Interface> ObjectContext::*field, VARIANT* object)
{
    return vh::Framed(context, [&](ObjectContext& c) { return vh::InterfaceResult((c.*field).get(), object); });
}

template <class Service>
int32_t GiveService(ObjectContext& context, VARIANT* object)
{
    if (const HRESULT code = vh::ClearResult(object); FAILED(code))
        return code;
    vh::com_ptr<Service> service;
    const HRESULT code = context.Ask(service);
    return FAILED(code) ? code : vh::PutDispatch(service.get(), object);
}

int32_t CopyGuid(ObjectContext* context, stringx ObjectContext::*field, wchar_t* identifier)
{
    return vh::Framed(context, [&](ObjectContext& c) { return vh::CopyOutUnlimited(c.*field, identifier); });
}

// Runs `use` on an interface of the data set; without data set or interface the result is -1.
template <class Interface, class Use>
int32_t OnData(ObjectContext* context, Use&& use)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const auto data = c.Ask<ISetupData>();
        const auto found = data.query<Interface>();
        return found ? use(*found.get()) : -1;
    });
}

constexpr VARIANT_BOOL Truth(int32_t flag) { return flag ? VARIANT_TRUE : VARIANT_FALSE; }

} // namespace

int32_t __GetInfo(ObjectContext* context, VARIANT* object) { return Give(context, &ObjectContext::info, object); }
int32_t __GetLog(ObjectContext* context, VARIANT* object) { return Give(context, &ObjectContext::log, object); }
int32_t __GetLogEx(ObjectContext* context, VARIANT* object) { return Give(context, &ObjectContext::logEx, object); }
int32_t __GetReboot(ObjectContext* context, VARIANT* object) { return Give(context, &ObjectContext::reboot, object); }
int32_t __GetUser(ObjectContext* context, VARIANT* object) { return Give(context, &ObjectContext::user, object); }

int32_t __GetTextSub(ObjectContext* context, int32_t selector, VARIANT* object)
{
    return Give(context, selector == 0 ? &ObjectContext::textSubLocal : &ObjectContext::textSubGlobal, object);
}

int32_t __GetFileRegistrar(ObjectContext* context, VARIANT* object)
{
    return vh::Framed(context, [&](ObjectContext& c) { return GiveService<ISetupFileRegistrar>(c, object); });
}

int32_t __GetLogDB(ObjectContext* context, VARIANT* object)
{
    return vh::Framed(context, [&](ObjectContext& c) { return GiveService<ISetupLogDB>(c, object); });
}

int32_t __GetProgress(ObjectContext* context, VARIANT* object)
{
    return vh::Framed(context, [&](ObjectContext& c) { return GiveService<ISetupProgress>(c, object); });
}

int32_t __GetVHMSIStringTableObj(ObjectContext* context, VARIANT* object)
{
    return vh::Framed(context, [&](ObjectContext& c) { return GiveService<ISetupMsiStringTable>(c, object); });
}

int32_t __GetContextGUID(ObjectContext* context, wchar_t* identifier)
{
    return CopyGuid(context, &ObjectContext::contextGuid, identifier);
}

int32_t __GetProductGuid(ObjectContext* context, wchar_t* identifier)
{
    return CopyGuid(context, &ObjectContext::productGuid, identifier);
}

int32_t __GetInstallGuid(ObjectContext* context, wchar_t* identifier)
{
    return CopyGuid(context, &ObjectContext::installGuid, identifier);
}

int32_t _GetSupportDir(ObjectContext* context, wchar_t* buffer, int32_t size)
{
    return vh::Framed(context, [&](ObjectContext& c) { return vh::CopyOut(c.supportDir, buffer, size); });
}

int32_t __GetMaintenanceMode(ObjectContext* context, int32_t* maintenance)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        *maintenance = c.maintenance ? 1 : 0;
        return 0;
    });
}

int32_t __GetMaintOption(ObjectContext* context, int32_t* option)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        *option = c.maintOption;
        return 0;
    });
}

int32_t __GetEnabledIServices(ObjectContext* context, int32_t* services)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        *services = c.enabledServices;
        return 0;
    });
}

int32_t __PutEnabledIServices(ObjectContext* context, int32_t services)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        c.enabledServices = services;
        return 0;
    });
}

int32_t _GetGlobalFlags(ObjectContext* context)
{
    return vh::Framed(context, [](ObjectContext& c) { return c.globalFlags; });
}

int32_t _SetGlobalFlags(ObjectContext* context, int32_t flags)
{
    return vh::Framed(context, [&](ObjectContext& c) { return std::exchange(c.globalFlags, flags); });
}

int32_t __GetUpdateMode(ObjectContext* context, int32_t* on)
{
    return OnData<ISetupDataEx>(context, [&](ISetupDataEx& data) {
        VARIANT_BOOL mode = VARIANT_FALSE;
        data.GetUpdateMode(&mode);
        *on = mode == VARIANT_TRUE;
        return 0;
    });
}

int32_t __SetUpdateMode(ObjectContext* context, int32_t on)
{
    return OnData<ISetupDataEx>(context, [&](ISetupDataEx& data) {
        data.SetUpdateMode(Truth(on));
        return 0;
    });
}

int32_t __GetRemoveAllMode(ObjectContext* context, int32_t* on)
{
    return OnData<ISetupDataEx>(context, [&](ISetupDataEx& data) {
        VARIANT_BOOL mode = VARIANT_FALSE;
        data.GetRemoveAllMode(&mode);
        *on = mode == VARIANT_TRUE;
        return 0;
    });
}

int32_t __GetReinstallMode(ObjectContext* context, int32_t* on)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const auto data = c.Ask<ISetupData>();
        if (!data)
            return -1;
        const auto modes = data.query<ISetupDataModes>();
        if (!modes)
            return E_FAIL;
        VARIANT_BOOL mode = VARIANT_FALSE;
        const HRESULT code = modes->GetReinstallMode(&mode);
        *on = mode == VARIANT_TRUE;
        return code;
    });
}

namespace {

// Reads the facts one after the other into the outputs that were asked for; the first that can't be read ends it.
class CommandLineReader {
public:
    explicit CommandLineReader(ISetupInfo* info) : m_info(info) {}

    bool ok() const { return m_ok; }

    void Flag(vh::setup_fact number, int32_t* flag)
    {
        if (!m_ok || !flag)
            return;
        const vh::fact read(m_info, number);
        m_ok = read.known;
        if (m_ok)
            *flag = read.truth();
    }
    // Read in any case, for the context; the output is optional.
    void Silent(vh::setup_fact number, bool& kept, int32_t* flag)
    {
        if (!m_ok)
            return;
        const vh::fact read(m_info, number);
        if (read.known)
            kept = read.truth();
        if (!flag)
            return;
        m_ok = read.known;
        if (m_ok)
            *flag = kept;
    }
    void Text(vh::setup_fact number, wchar_t* text)
    {
        if (!m_ok || !text)
            return;
        const vh::fact read(m_info, number);
        m_ok = read.known && vh::CopyOutUnlimited(read.text(), text) == 0;
    }

private:
    ISetupInfo* m_info;
    bool m_ok = true;
};

} // namespace

int32_t __GetCmdLineOptions(ObjectContext* context, int32_t* flag1, int32_t* silent, int32_t* silentEx, int32_t* flag4,
                            int32_t* flag5, wchar_t* text1, wchar_t* text2, wchar_t* text3, wchar_t* text4,
                            wchar_t* text5, wchar_t* commandLine, int32_t size)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const auto info = c.Ask<ISetupInfo>();
        if (!info)
            return -1;
        if (commandLine) {
            const vh::fact read(info.get(), vh::fact_command_line);
            if (!read.known)
                return -1;
            if (const int32_t result = vh::CopyOut(read.text(), commandLine, size))
                return result;
        }
        CommandLineReader reader(info.get());
        reader.Flag(vh::fact_flag1, flag1);
        reader.Silent(vh::fact_silent, c.silent, silent);
        reader.Silent(vh::fact_silent_ex, c.silentEx, silentEx);
        reader.Flag(vh::fact_flag4, flag4);
        reader.Flag(vh::fact_flag5, flag5);
        reader.Text(vh::fact_text1, text1);
        reader.Text(vh::fact_text2, text2);
        reader.Text(vh::fact_text3, text3);
        reader.Text(vh::fact_text4, text4);
        reader.Text(vh::fact_text5, text5);
        return reader.ok() ? 0 : -1;
    });
}
