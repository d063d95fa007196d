#include "registration.h"

#include <oleauto.h>

#include "../diagnostics/mapped_file.h"
#include "../scriptdata/com_ptr.h"
#include "../scriptdata/exception.h"
#include "../scriptdata/path_text.h"
#include "late_advapi32.h"
#include "late_shell.h"

namespace vh {

namespace {

constexpr const wchar_t* classes = L"Software\\Classes";
constexpr REGSAM key_access = 0x2001F;
constexpr DWORD longest_run_ms = 5000;

// Keeps the cause of a failure, 0 for none. Result: whether there was none.
bool Settle(long code)
{
    last_file_failure().code = static_cast<DWORD>(code);
    return code == 0;
}

// While it lives, what registers itself for everybody does so for the user.
class user_classes {
public:
    explicit user_classes(bool wanted)
    {
        if (!wanted)
            return;
        unique_key key;
        m_error = late::override_root ? RegCreateKeyExW(HKEY_CURRENT_USER, classes, 0, nullptr, 0, KEY_ALL_ACCESS,
                                                        nullptr, key.put(), nullptr)
                                      : ERROR_PROC_NOT_FOUND;
        if (!m_error)
            m_error = late::override_root(HKEY_CLASSES_ROOT, key.get());
        m_lasts = !m_error;
    }
    user_classes(const user_classes&) = delete;
    user_classes& operator=(const user_classes&) = delete;
    ~user_classes()
    {
        if (m_lasts)
            late::override_root(HKEY_CLASSES_ROOT, HKEY{nullptr});
    }
    LSTATUS error() const { return m_error; }

private:
    LSTATUS m_error = ERROR_SUCCESS;
    bool m_lasts = false;
};

long CallEntryPoint(const stringx& path, bool registers)
{
    const unique_module module(LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    if (!module)
        return static_cast<long>(GetLastError());
    const FARPROC entry = GetProcAddress(module.get(), registers ? "DllRegisterServer" : "DllUnregisterServer");
    if (!entry)
        return ERROR_PROC_NOT_FOUND;
    const HRESULT result = reinterpret_cast<HRESULT(__stdcall*)()>(reinterpret_cast<void*>(entry))();
    return FAILED(result) ? result : 0;
}

long UseTypeLibrary(const stringx& path, bool registers)
{
    com_ptr<ITypeLib> library;
    HRESULT result = LoadTypeLib(path.c_str(), library.put());
    if (FAILED(result))
        return result;
    if (registers) {
        result = RegisterTypeLib(library.get(), path.AsBstr(), nullptr);
        return FAILED(result) ? result : 0;
    }
    TLIBATTR* facts = nullptr;
    result = library->GetLibAttr(&facts);
    if (FAILED(result))
        return result;
    result = UnRegisterTypeLib(facts->guid, facts->wMajorVerNum, facts->wMinorVerNum, facts->lcid, facts->syskind);
    library->ReleaseTLibAttr(facts);
    return FAILED(result) ? result : 0;
}

// Result: how the program ended, or why it did not.
long Run(const stringx& path, bool registers)
{
    SHELLEXECUTEINFOW order{};
    order.cbSize = sizeof(order);
    order.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_NOASYNC;
    order.lpVerb = L"open";
    order.lpFile = path.c_str();
    order.lpParameters = registers ? L" /REGSERVER" : L" /UNREGSERVER";
    order.nShow = SW_SHOWNORMAL;
    if (!late::shell_execute_ex(&order))
        return static_cast<long>(GetLastError());
    const unique_handle process(order.hProcess);
    if (!process)
        return 0;
    if (WaitForSingleObject(process.get(), longest_run_ms) != WAIT_OBJECT_0)
        return WAIT_TIMEOUT;
    DWORD code = 0;
    return GetExitCodeProcess(process.get(), &code) ? static_cast<long>(code) : static_cast<long>(GetLastError());
}

long WriteKey(HKEY key, const script_key& record, const RegistrationScript& script)
{
    for (const auto& [name, data] : record.values) {
        const stringx wide_name(name.data(), static_cast<int>(name.size()));
        const std::string replaced = script.Replaced(data);
        const stringx text(replaced.data(), static_cast<int>(replaced.size()));
        const LSTATUS error =
            RegSetValueExW(key, wide_name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                           static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
        if (error && script.stop_on_error)
            return error;
    }
    for (const script_key& child : record.children) {
        const stringx name(child.name.data(), static_cast<int>(child.name.size()));
        unique_key made;
        LSTATUS error = RegCreateKeyExW(key, name.c_str(), 0, nullptr, 0, key_access, nullptr, made.put(), nullptr);
        if (!error)
            error = WriteKey(made.get(), child, script);
        if (error && script.stop_on_error)
            return error;
    }
    return 0;
}

void DeleteBelow(HKEY key, const script_key& record)
{
    for (const script_key& child : record.children) {
        const stringx name(child.name.data(), static_cast<int>(child.name.size()));
        unique_key opened;
        if (RegOpenKeyExW(key, name.c_str(), 0, key_access, opened.put()))
            continue;
        DeleteBelow(opened.get(), child);
        opened.reset();
        if (!child.no_remove)
            RegDeleteKeyW(key, name.c_str());
    }
}

bool ReadScript(const stringx& path, RegistrationScript& script, script_fault& fault)
{
    vhmapfilex file;
    uint32_t size = 0;
    if (!file.open(path, size, false))
        return false;
    const std::span<const std::byte> bytes = file.bytes();
    if (script.Parse({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, fault))
        return true;
    return Settle(ERROR_INVALID_DATA);
}

} // namespace

bool RegisterModule(const stringx& path, bool registers, bool per_user)
{
    struct route {
        const wchar_t* extension;
        long (*work)(const stringx&, bool);
        bool follows_user;
    };
    constexpr route routes[] = {{L"EXE", &Run, false},
                                {L"TLB", &UseTypeLibrary, true},
                                {L"DLL", &CallEntryPoint, true},
                                {L"OCX", &CallEntryPoint, true}};
    last_file_failure() = {};
    const stringxi extension(PathExtension(path.view()));
    for (const route& one : routes) {
        if (extension != one.extension)
            continue;
        if (per_user && !one.follows_user)
            break;
        const user_classes user(per_user);
        return Settle(user.error() ? user.error() : one.work(path, registers));
    }
    return Settle(ERROR_NOT_SUPPORTED);
}

bool RegisterFromScript(const stringx& script, const stringx& module, bool registers, bool per_user,
                        script_fault& fault)
{
    last_file_failure() = {};
    fault = {};
    if (script.empty())
        return Settle(ERROR_INVALID_PARAMETER);
    RegistrationScript parsed;
    if (!ReadScript(script, parsed, fault))
        return false;
    const std::wstring_view folder = module.view();
    const stringx plain(folder.ends_with(L'\\') ? folder.substr(0, folder.size() - 1) : folder);
    parsed.replacements["MODULEPATH"] = plain.AsNarrow();
    parsed.stop_on_error = true;
    const HKEY root = per_user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
    unique_key top;
    if (registers) {
        const LSTATUS error = RegCreateKeyExW(root, classes, 0, nullptr, 0, key_access, nullptr, top.put(), nullptr);
        return Settle(error ? error : WriteKey(top.get(), parsed.root, parsed));
    }
    const LSTATUS error = RegOpenKeyExW(root, classes, 0, key_access, top.put());
    if (!error)
        DeleteBelow(top.get(), parsed.root);
    return Settle(error == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : error);
}

} // namespace vh
