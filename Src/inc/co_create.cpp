#include "co_create.h"

#include "../../scriptdata/com_ptr.h"
#include "../../scriptdata/late_windows.h"
#include "../../scriptdata/stringx.h"
#include "../../scriptdata/unique.h"

namespace vh {

namespace {

using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

stringx DirectoryOf(HMODULE module)
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(module, path, MAX_PATH - 1);
    const std::wstring_view whole(path);
    return stringx(whole.substr(0, whole.rfind(L'\\') + 1));
}

// In braces and upper case.
stringx Text(REFGUID id)
{
    wchar_t text[39] = {};
    late::string_from_guid(id, text, static_cast<int>(std::size(text)));
    return text;
}

bool StartAndWait(const wchar_t* program, const stringx& object_class, const stringx& instance)
{
    constexpr DWORD longest_start = 20000;
    stringx command = Concat(program, L" ", object_class, L":", instance);
    STARTUPINFOW start{};
    start.cb = sizeof(start);
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started))
        return false;
    const unique_handle process(started.hProcess);
    const unique_handle thread(started.hThread);
    late::wait_for_input_idle(process.get(), longest_start);
    return true;
}

} // namespace

HRESULT FindRunningObject(REFGUID id, IUnknown** object)
{
    com_ptr<IMoniker> name;
    HRESULT code = late::create_item_moniker(L"!", Text(id).c_str(), name.put());
    if (FAILED(code))
        return code;
    com_ptr<IRunningObjectTable> table;
    code = late::get_running_object_table(0, table.put());
    return FAILED(code) ? code : table->GetObject(name.get(), object);
}

HRESULT CoCreate(HMODULE beside, const wchar_t* library, REFCLSID object_class, REFIID id, void** object)
{
    const std::wstring_view given(library);
    const bool has_directory = given.find_first_of(L"\\/:") != given.npos;
    stringx path = has_directory ? stringx(given) : Concat(DirectoryOf(beside), given);
    HMODULE module = GetModuleHandleW(path.c_str());
    if (!module)
        module = late::co_load_library(path.data(), TRUE);
    if (!module) {
        const DWORD error = GetLastError();
        OutputDebugStringW(Concat(L"CoCreate: can't load ", path, L"\n").c_str());
        return HRESULT_FROM_WIN32(error ? error : ERROR_MOD_NOT_FOUND);
    }
    const auto get =
        reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(module, "DllGetClassObject")));
    return get ? get(object_class, id, object) : HRESULT_FROM_WIN32(ERROR_PROC_NOT_FOUND);
}

HRESULT CoCreateByProgram(const wchar_t* program, REFCLSID object_class, const GUID* instance, REFIID id, void** object)
{
    constexpr int most_attempts = 100;
    constexpr DWORD pause = 300;
    GUID made{};
    if (!instance) {
        if (const HRESULT code = late::co_create_guid(&made); FAILED(code))
            return code;
        instance = &made;
    }
    if (!StartAndWait(program, Text(object_class), Text(*instance)))
        return HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
    com_ptr<IUnknown> running;
    HRESULT code = E_FAIL;
    for (int attempt = 0; attempt < most_attempts; ++attempt) {
        code = FindRunningObject(*instance, running.put());
        if (SUCCEEDED(code))
            return running->QueryInterface(id, object);
        Sleep(pause);
    }
    return code;
}

} // namespace vh
