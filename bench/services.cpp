// The registry service's exports in front of an engine that does nothing, and the search for a child process.
#include <memory>

#include <windows.h>

#include <tlhelp32.h>

#include "../scriptdata/unique.h"
#include "../scriptdata/variant.h"
#include "areas.h"
#include "counting.h"
#include "modules.h"
#include "null_engine.h"

namespace bench {

namespace {

constexpr wchar_t key[] = L"SOFTWARE\\Maker\\Product";
constexpr wchar_t name[] = L"InstallLocation";
constexpr wchar_t value[] = L"C:\\Program Files\\Product";
constexpr int64_t root = 0x80000002;

class null_registry final : public null_object<ISetupRegistry> {
public:
    HRESULT STDMETHODCALLTYPE CreateKey(LONG64, BSTR, BSTR, VARIANT_BOOL, ISetupLog*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetValue(LONG64, BSTR, BSTR, long, VARIANT*, ISetupLog*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE QueryValue(LONG64, BSTR, BSTR, long* type, VARIANT* out) override
    {
        *type = REG_SZ;
        out->vt = VT_BSTR;
        out->bstrVal = vh::bstr(value).detach();
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE DeleteKey(LONG64, BSTR, long) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE DeleteValue(LONG64, BSTR, BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE Connect(LONG64, BSTR, LONG64*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Disconnect(LONG64) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EnumKeys(LONG64, BSTR, SAFEARRAY**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumValues(LONG64, BSTR, SAFEARRAY**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE KeyExists(LONG64, BSTR, VARIANT_BOOL* exists) override
    {
        *exists = VARIANT_TRUE;
        return S_OK;
    }
};

class registry_services final : public vh::com_object<IServiceProvider> {
public:
    HRESULT STDMETHODCALLTYPE QueryService(REFGUID, REFIID id, void** object) override
    {
        *object = nullptr;
        if (id != ISetupRegistry::iid)
            return E_NOINTERFACE;
        *object = vh::make_object<null_registry>().detach();
        return S_OK;
    }
};

// The texts that the engine needs, and its call.
work BareSet(std::shared_ptr<vh::com_ptr<ISetupRegistry>> service)
{
    return {[service](long count) {
        for (; count > 0; --count) {
            const vh::bstr key_text{key};
            const vh::bstr name_text{name};
            vh::variant text{std::wstring_view(value)};
            Keep((*service)->SetValue(root, key_text.get(), name_text.get(), REG_SZ, &text.get(), nullptr));
        }
    }};
}

work BareQuery(std::shared_ptr<vh::com_ptr<ISetupRegistry>> service)
{
    return {[service](long count) {
        wchar_t buffer[64];
        for (; count > 0; --count) {
            const vh::bstr key_text{key};
            const vh::bstr name_text{name};
            vh::variant text;
            long type = 0;
            (*service)->QueryValue(root, key_text.get(), name_text.get(), &type, &text.get());
            Keep(text.text().copy(buffer, std::size(buffer)));
        }
    }};
}

// A process that waits, as a child of this one.
class waiting_child {
public:
    waiting_child()
    {
        wchar_t command[] = L"cmd.exe /c pause";
        SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
        HANDLE read = nullptr;
        HANDLE write = nullptr;
        CreatePipe(&read, &write, &inherited, 0);
        m_input.reset(write);
        const vh::unique_handle input(read);
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = read;
        PROCESS_INFORMATION made{};
        CreateProcessW(nullptr, command, nullptr, nullptr, TRUE, DETACHED_PROCESS, nullptr, nullptr, &startup, &made);
        m_process.reset(made.hProcess);
        const vh::unique_handle thread(made.hThread);
        m_id = static_cast<int32_t>(made.dwProcessId);
    }
    waiting_child(const waiting_child&) = delete;
    waiting_child& operator=(const waiting_child&) = delete;
    ~waiting_child()
    {
        TerminateProcess(m_process.get(), 0);
        WaitForSingleObject(m_process.get(), 10000);
    }

    int32_t id() const { return m_id; }

private:
    vh::unique_handle m_process;
    vh::unique_handle m_input;
    int32_t m_id = 0;
};

uint32_t OpenAndTime(DWORD id)
{
    const vh::unique_handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    FILETIME created{}, exited, kernel, user;
    GetProcessTimes(process.get(), &created, &exited, &kernel, &user);
    return created.dwLowDateTime;
}

// One snapshot, walked to its end, and the times of the parent and one child.
work BareChildSearch(int32_t child)
{
    return {[child](long count) {
        for (; count > 0; --count) {
            Keep(OpenAndTime(GetCurrentProcessId()));
            const vh::unique_file snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
            PROCESSENTRY32W entry{};
            entry.dwSize = sizeof(entry);
            for (BOOL more = Process32FirstW(snapshot.get(), &entry); more;
                 more = Process32NextW(snapshot.get(), &entry))
                Keep(entry.th32ProcessID);
            Keep(OpenAndTime(static_cast<DWORD>(child)));
        }
    }};
}

} // namespace

void Registry(suite& s)
{
    const auto services = vh::make_object<registry_services>();
    const auto service = std::make_shared<vh::com_ptr<ISetupRegistry>>(vh::make_object<null_registry>().get());
    const auto library = std::make_shared<context>(Library(), nullptr, services.get());
    const auto set = BENCH_GET(Library(), _RegSetKeyValue);
    const auto query = BENCH_GET(Library(), _RegQueryKeyValue);
    s.Count("results of a set that reaches the engine", 0,
            static_cast<long>(set(*library, root, key, name, REG_SZ, value, 0)));
    s.Compare("_RegSetKeyValue, to 3 BSTRs and the call", 2.0, {[=](long count) {
                  for (; count > 0; --count)
                      Keep(set(*library, root, key, name, REG_SZ, value, 0));
              }},
              BareSet(service));
    s.Compare("_RegQueryKeyValue, to 3 BSTRs and the call", 2.0, {[=](long count) {
                  wchar_t buffer[64];
                  for (; count > 0; --count) {
                      int32_t type = 0;
                      int32_t size = std::size(buffer);
                      Keep(query(*library, root, key, name, &type, buffer, &size));
                  }
              }},
              BareQuery(service));
}

void ChildSearch(suite& s)
{
    const auto search = BENCH_GET(Library(), _GetRunningChildProcess);
    const waiting_child child;
    const auto own = static_cast<int32_t>(GetCurrentProcessId());
    s.Count("the child that is found is ours", 1, search(own) == child.id());
    s.Compare("child search, to a snapshot and 2 opens", 1.15, {[=](long count) {
                  for (; count > 0; --count)
                      Keep(search(own));
              }},
              BareChildSearch(child.id()));
    const call_counter snapshots(Library().handle(), "CreateToolhelp32Snapshot");
    const call_counter opens(Library().handle(), "OpenProcess");
    // The child has none itself: its own time is asked for, and parents that the snapshot lacks.
    search(child.id());
    const long asked = opens.calls() - 1;
    search(own);
    s.Count("snapshots of a search", 1, snapshots.calls() - 1);
    s.Count("processes opened, parent and child", 2, opens.calls() - 1 - 2 * asked);
}

} // namespace bench
