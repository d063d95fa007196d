#include "small_engine.h"

#include <cstdio>
#include <exception>
#include <utility>

#include <Src/inc/engine_progress.h>
#include <scriptdata/bstr.h>

namespace small {

namespace {

// Engine interfaces are automation interfaces too, which the library never makes use of.
template <class Interface>
class Object : public vh::com_object<Interface> {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override
    {
        return E_NOTIMPL;
    }
};

std::wstring TextOf(BSTR text) { return text ? std::wstring(text, SysStringLen(text)) : std::wstring(); }

// Nothing but codes crosses an interface.
template <class Body>
HRESULT Guarded(Body&& body)
{
    try {
        return body();
    } catch (const std::exception&) {
        return E_OUTOFMEMORY;
    }
}

class Variables final : public Object<ISetupTextSub> {
public:
    explicit Variables(Session& session) : m_session(session) {}

    // S_FALSE with an empty text for a name that is not there.
    HRESULT STDMETHODCALLTYPE GetValue(BSTR name, BSTR* value) override
    {
        return Guarded([&] {
            const auto found = m_session.variables.find(TextOf(name));
            *value = vh::bstr(std::wstring_view(found == m_session.variables.end() ? L"" : found->second)).detach();
            return found == m_session.variables.end() ? S_FALSE : S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE SetValue(BSTR name, BSTR value) override
    {
        return Guarded([&] {
            m_session.variables[TextOf(name)] = TextOf(value);
            return S_OK;
        });
    }
    // The text is exchanged in place.
    HRESULT STDMETHODCALLTYPE Substitute(BSTR* text) override
    {
        return Guarded([&] {
            vh::bstr replaced(std::wstring_view(m_session.Substituted(TextOf(*text))));
            vh::bstr before;
            before.attach(std::exchange(*text, replaced.detach()));
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Load(BSTR, IUnknown*) override { return S_FALSE; }
    HRESULT STDMETHODCALLTYPE Save(BSTR, IUnknown*) override { return E_NOTIMPL; }

private:
    Session& m_session;
};

// Bytes that the job will copy, for the status window.
class Totals final : public vh::com_object<ISetupCopyTotals> {
public:
    explicit Totals(uint64_t bytes) : m_bytes(bytes) {}

    HRESULT STDMETHODCALLTYPE GetLow(unsigned long* low) override
    {
        *low = static_cast<unsigned long>(m_bytes);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetHigh(unsigned long* high) override
    {
        *high = static_cast<unsigned long>(m_bytes >> 32);
        return S_OK;
    }

private:
    uint64_t m_bytes;
};

HRESULT MakeFolders(Session& session, const std::wstring& folder)
{
    if (folder.size() < 3 || folder.ends_with(L':') || GetFileAttributesW(folder.c_str()) != INVALID_FILE_ATTRIBUTES)
        return S_OK;
    const std::size_t cut = folder.find_last_of(L'\\');
    if (const HRESULT code = cut == std::wstring::npos ? S_OK : MakeFolders(session, folder.substr(0, cut));
        FAILED(code))
        return code;
    if (!CreateDirectoryW(folder.c_str(), nullptr))
        return HRESULT_FROM_WIN32(GetLastError());
    session.made.push_back(folder);
    return S_OK;
}

// No window: the bytes to come are told on the console.
class Progress final : public Object<ISetupProgress> {
public:
    HRESULT STDMETHODCALLTYPE ArmWindow(short) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ReadPosition(short* position) override
    {
        *position = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetTitle(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetMainImage(BSTR) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE GetWindow(long, HWND* window) override
    {
        *window = nullptr;
        return S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE GetBar(ISetupProgressBar** bar) override
    {
        *bar = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetBar(ISetupProgressBar*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE BeginTransfer(unsigned long low, unsigned long high, short, IUnknown** progress) override
    {
        *progress = nullptr;
        std::printf("copying %llu bytes\n", (static_cast<unsigned long long>(high) << 32) | low);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Open(HWND, BSTR, long) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Close() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE SetOption(long, short) override { return S_OK; }
};

// One file to a folder. A larger engine takes wildcards and addresses here, and keeps what it replaces.
class CopyJob final : public Object<ISetupCopyJob> {
public:
    CopyJob(Session& session, std::wstring source, std::wstring folder)
        : m_session(session), m_source(std::move(source)), m_folder(std::move(folder))
    {
    }

    HRESULT STDMETHODCALLTYPE GetTotals(ISetupCopyTotals** totals) override
    {
        WIN32_FILE_ATTRIBUTE_DATA facts{};
        *totals = nullptr;
        if (!GetFileAttributesExW(m_source.c_str(), GetFileExInfoStandard, &facts))
            return HRESULT_FROM_WIN32(GetLastError());
        return Guarded([&] {
            *totals = vh::make_object<Totals>((uint64_t{facts.nFileSizeHigh} << 32) | facts.nFileSizeLow).detach();
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE Run(ISetupLog*, IUnknown*) override
    {
        return Guarded([&]() -> HRESULT {
            if (const HRESULT code = MakeFolders(m_session, m_folder); FAILED(code))
                return code;
            const std::wstring target = m_folder + m_source.substr(m_source.find_last_of(L'\\'));
            // What is there is the user's.
            if (!CopyFileW(m_source.c_str(), target.c_str(), TRUE))
                return HRESULT_FROM_WIN32(GetLastError());
            m_session.made.push_back(target);
            return S_OK;
        });
    }

private:
    Session& m_session;
    std::wstring m_source;
    std::wstring m_folder;
};

class FileOperations final : public Object<ISetupFileOps> {
public:
    explicit FileOperations(Session& session) : m_session(session) {}

    HRESULT STDMETHODCALLTYPE CreateCopyJob(BSTR source, BSTR target, unsigned long, ISetupCopyJob** job) override
    {
        *job = nullptr;
        return Guarded([&]() -> HRESULT {
            const std::wstring from = m_session.Substituted(TextOf(source));
            if (from.find_first_of(L"*?") != std::wstring::npos || from.find(L'\\') == std::wstring::npos)
                return E_NOTIMPL;
            *job = vh::make_object<CopyJob>(m_session, from, m_session.Substituted(TextOf(target))).detach();
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE MakeDirectory(BSTR path, ISetupLog*) override
    {
        return Guarded([&] { return MakeFolders(m_session, m_session.Substituted(TextOf(path))); });
    }

private:
    Session& m_session;
};

// The library takes a service that is not here as missing, and its functions say so by their results.
class Services final : public vh::com_object<IServiceProvider> {
public:
    explicit Services(Session& session) : m_session(session) {}

    HRESULT STDMETHODCALLTYPE QueryService(REFGUID service, REFIID id, void** object) override
    {
        *object = nullptr;
        return Guarded([&]() -> HRESULT {
            if (id == ISetupTextSub::iid && (service == vh::global_text_service || service == vh::local_text_service))
                *object = static_cast<ISetupTextSub*>(vh::make_object<Variables>(m_session).detach());
            else if (id == ISetupFileOps::iid)
                *object = static_cast<ISetupFileOps*>(vh::make_object<FileOperations>(m_session).detach());
            else if (id == ISetupProgress::iid)
                *object = static_cast<ISetupProgress*>(vh::make_object<Progress>().detach());
            return *object ? S_OK : E_NOINTERFACE;
        });
    }

private:
    HRESULT QueryMore(REFIID id, void** object) override
    {
        if (id != vh::iid_of<IServiceProvider>)
            return E_NOINTERFACE;
        *object = static_cast<IServiceProvider*>(this);
        AddRef();
        return S_OK;
    }

    Session& m_session;
};

// The phases of a setup; this engine has nothing to do in them.
class Host final : public vh::com_object<ISetupHost> {
public:
    HRESULT STDMETHODCALLTYPE GetObjects(ISetupObjects** objects) override
    {
        *objects = nullptr;
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE InitInstall() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE ExitInstall() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE BeginData(intptr_t, ObjectContext*) override { return S_OK; }
    HRESULT STDMETHODCALLTYPE EndData() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE CCPSearch() override { return S_OK; }
    HRESULT STDMETHODCALLTYPE AppSearch() override { return S_OK; }
};

} // namespace

std::wstring Session::Substituted(std::wstring text) const
{
    for (const auto& [name, value] : variables) {
        const std::wstring pattern = L"<" + name + L">";
        for (std::size_t at = text.find(pattern); at != std::wstring::npos; at = text.find(pattern, at + value.size()))
            text.replace(at, pattern.size(), value);
    }
    return text;
}

std::size_t Session::TakeBack()
{
    std::size_t done = 0;
    for (; !made.empty(); made.pop_back())
        done += DeleteFileW(made.back().c_str()) || RemoveDirectoryW(made.back().c_str());
    return done;
}

vh::com_ptr<ISetupHost> MakeHost() { return vh::com_ptr<ISetupHost>(vh::make_object<Host>().get()); }
vh::com_ptr<IServiceProvider> MakeServices(Session& session)
{
    return vh::com_ptr<IServiceProvider>(vh::make_object<Services>(session).get());
}

} // namespace small
