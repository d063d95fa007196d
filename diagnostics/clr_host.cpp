#include "clr_host.h"

#include "../scriptdata/exception.h"
#include "../scriptdata/variant.h"
#include "clr_version.h"
#include "current_folder.h"
#include "late_clr.h"

namespace vh {

namespace {

constexpr DWORD version_units = 260;
constexpr DWORD multi_domain = 4;

HMODULE LoadRuntimeLibrary() { return LoadLibraryExW(L"mscoree.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32); }

std::wstring_view Terminated(const wchar_t* text) { return {text, wcsnlen(text, version_units)}; }

// The one that is wanted or newer, as soon as the walk meets it; else the newest.
com_ptr<ICLRRuntimeInfo> ChooseRuntime(ICLRMetaHost& meta, std::wstring_view wanted)
{
    com_ptr<ICLRRuntimeInfo> best;
    stringx best_version;
    com_ptr<IEnumUnknown> walk;
    if (FAILED(meta.EnumerateInstalledRuntimes(walk.put())) || !walk)
        return best;
    com_ptr<IUnknown> found;
    while (walk->Next(1, found.put(), nullptr) == S_OK) {
        auto runtime = found.query<ICLRRuntimeInfo>();
        wchar_t version[version_units] = L"";
        DWORD size = version_units;
        if (!runtime || FAILED(runtime->GetVersionString(version, &size)))
            continue;
        const std::wstring_view text = Terminated(version);
        if (!wanted.empty() && (wanted == text || CompareRuntimeVersions(wanted, text) > 0))
            return runtime;
        if (!best || CompareRuntimeVersions(best_version.view(), text) > 0) {
            best = std::move(runtime);
            best_version = text;
        }
    }
    return best;
}

bool IsFile(const wchar_t* path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}

stringx ProgramFolder()
{
    wchar_t path[MAX_PATH] = L"";
    const DWORD units = GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring_view text(path, units);
    const std::size_t end = text.rfind(L'\\');
    // "C:" alone is not the top of the drive.
    return stringx(text.substr(0, end == text.npos ? 0 : end == 2 ? 3 : end));
}

const wchar_t* TextOf(const bstr& text) { return text.get() ? text.get() : L""; }

} // namespace

void clr_host::BindNewest(HMODULE library)
{
    const auto create = late::clr_create_instance.get_in(library);
    com_ptr<ICLRMetaHost> meta;
    if (!create || FAILED(create(ICLRMetaHost::clsid, ICLRMetaHost::iid, meta.put_void())) || !meta)
        return;
    wchar_t wanted[version_units] = L"";
    DWORD size = version_units;
    if (FAILED(meta->GetVersionFromFile(TextOf(m_assembly_path), wanted, &size)))
        wanted[0] = L'\0';
    const auto runtime = ChooseRuntime(*meta.get(), Terminated(wanted));
    if (!runtime || FAILED(runtime->GetInterface(ICorRuntimeHost::clsid, ICorRuntimeHost::iid, m_host.put_void())) ||
        !m_host)
        return;
    if (!wanted[0])
        runtime->BindAsLegacyV2Runtime();
    if (FAILED(m_host->Start()))
        m_host.reset();
}

void clr_host::BindOld()
{
    m_runtime_module.reset(LoadRuntimeLibrary());
    if (!m_runtime_module)
        throw win32_exception(ERROR_FILE_NOT_FOUND);
    const auto bind = late::cor_bind_to_runtime.get_in(m_runtime_module.get());
    if (!bind)
        throw win32_exception(ERROR_INVALID_FUNCTION);
    const stringx version = GetRequiredVersion();
    ThrowIfFailed(bind(version.empty() ? nullptr : version.c_str(), L"wks", multi_domain, ICorRuntimeHost::clsid,
                       ICorRuntimeHost::iid, m_host.put_void()));
    if (!m_host)
        throw com_exception(E_NOINTERFACE);
    ThrowIfFailed(m_host->Start());
}

void clr_host::Bind()
{
    if (m_host)
        return;
    m_runtime_module.reset(LoadRuntimeLibrary());
    if (m_runtime_module)
        BindNewest(m_runtime_module.get());
    OnRuntimeBound();
    if (!m_host)
        BindOld();
}

void clr_host::Create(const GUID& wanted, void** object)
{
    Bind();
    CCurrentFolderHelper folder;
    // An assembly's name, or a relative path: looked for beside the program.
    if (!IsFile(TextOf(m_assembly_path)))
        folder.MoveTo(ProgramFolder());
    com_ptr<IUnknown> made;
    ThrowIfFailed(m_domain_name.view().empty() ? m_host->GetDefaultDomain(made.put())
                                               : m_host->CreateDomain(m_domain_name.get(), nullptr, made.put()));
    com_ptr<IAppDomain> domain;
    ThrowIfFailed(made ? made->QueryInterface(IAppDomain::iid, domain.put_void()) : E_NOINTERFACE);
    com_ptr<IUnknown> handle;
    ThrowIfFailed(domain->CreateInstanceFrom(m_assembly_path.get(), m_class_name.get(), handle.put()));
    const auto wrapped = handle.query<IObjectHandle>();
    if (!wrapped)
        throw com_exception(E_NOINTERFACE);
    variant instance;
    ThrowIfFailed(wrapped->Unwrap(instance.put()));
    const VARIANT& value = instance.get();
    const bool holds = (value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) && value.punkVal;
    ThrowIfFailed(holds ? value.punkVal->QueryInterface(wanted, object) : E_NOINTERFACE);
}

namespace {

// A walk over the runtime's domains, closed however it ends.
class domain_walk {
public:
    explicit domain_walk(ICorRuntimeHost& host) : m_host(host) { ThrowIfFailed(host.EnumDomains(&m_walk)); }
    domain_walk(const domain_walk&) = delete;
    domain_walk& operator=(const domain_walk&) = delete;
    ~domain_walk() { m_host.CloseEnum(m_walk); }

    bool Next(com_ptr<IUnknown>& domain) { return m_host.NextDomain(m_walk, domain.put()) == S_OK && domain; }

private:
    ICorRuntimeHost& m_host;
    void* m_walk = nullptr;
};

} // namespace

bool clr_host::UnloadDomains(std::wstring_view name)
{
    m_domain_name = bstr(name);
    Bind();
    const stringxi wanted(name);
    bool unloaded = false;
    domain_walk walk(*m_host.get());
    com_ptr<IUnknown> found;
    while (walk.Next(found)) {
        const auto domain = found.query<IAppDomain>();
        bstr friendly;
        if (!domain || FAILED(domain->GetFriendlyName(friendly.put())) || stringxi(friendly.view()) != wanted)
            continue;
        ThrowIfFailed(m_host->UnloadDomain(found.get()));
        unloaded = true;
    }
    return unloaded;
}

} // namespace vh
