#include "trace_switch.h"

#include <cstring>

#include "../scriptdata/format.h"
#include "../scriptdata/unique.h"

namespace vh {

namespace {

DWORD ReadNumber(HKEY key, const wchar_t* name)
{
    DWORD type = 0;
    DWORD value = 0;
    DWORD size = sizeof(value);
    const LSTATUS status = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
    return status == ERROR_SUCCESS && type == REG_DWORD ? value : 0;
}

stringx ReadText(HKEY key, const wchar_t* name)
{
    DWORD type = 0;
    DWORD bytes = 0;
    if (RegQueryValueExW(key, name, nullptr, &type, nullptr, &bytes) != ERROR_SUCCESS || type != REG_SZ)
        return {};
    stringx text;
    text.resize(bytes / sizeof(wchar_t) + 1);
    if (RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &bytes) != ERROR_SUCCESS)
        return {};
    text.data()[text.size() - 1] = L'\0';
    return text.c_str();
}

// With a final backslash; empty when the shell does not tell.
stringx DesktopFolder()
{
    using SHGetFolderPath = HRESULT(STDAPICALLTYPE*)(HWND, int, HANDLE, DWORD, wchar_t*);
    constexpr int desktop_directory = 0x10;
    const unique_module shell(LoadLibraryExW(L"shell32.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32));
    wchar_t folder[MAX_PATH];
    if (!shell)
        return {};
    const auto get =
        reinterpret_cast<SHGetFolderPath>(reinterpret_cast<void*>(GetProcAddress(shell.get(), "SHGetFolderPathW")));
    if (!get || get(nullptr, desktop_directory, nullptr, 0, folder) != S_OK)
        return {};
    return Concat(folder, L"\\");
}

} // namespace

bool ReadTraceSwitch(trace_switch& found)
{
    unique_key key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"VHlogit", 0, KEY_READ, key.put()) != ERROR_SUCCESS)
        return false;
    found.trace_std = ReadNumber(key.get(), L"TraceStd") != 0;
    found.path = ReadText(key.get(), L"FileNamePath");
    if (found.path.empty()) {
        wchar_t name[MAX_PATH * 2];
        FormatText(name, std::size(name), L"%s%s%d.%s", DesktopFolder().c_str(), L"setuptrace",
                   static_cast<int>(GetCurrentProcessId()), L"bin");
        found.path = name;
    }
    return true;
}

executable_facts ReadExecutableFacts()
{
    executable_facts facts{};
    GetModuleFileNameW(nullptr, facts.path, MAX_PATH);
    facts.path[MAX_PATH - 1] = L'\0';

    // The fixed block stands behind three words and the name "VS_VERSION_INFO", on a 32-bit boundary.
    constexpr DWORD fixed_block = 40;
    const HRSRC found = FindResourceW(nullptr, MAKEINTRESOURCEW(1), MAKEINTRESOURCEW(16));
    const HGLOBAL loaded = found ? LoadResource(nullptr, found) : nullptr;
    const auto* bytes = static_cast<const char*>(loaded ? LockResource(loaded) : nullptr);
    if (!bytes || SizeofResource(nullptr, found) < fixed_block + sizeof(VS_FIXEDFILEINFO))
        return facts;
    VS_FIXEDFILEINFO block;
    std::memcpy(&block, bytes + fixed_block, sizeof(block));
    if (block.dwSignature != 0xFEEF04BD)
        return facts;
    facts.version[0] = HIWORD(block.dwFileVersionMS);
    facts.version[1] = LOWORD(block.dwFileVersionMS);
    facts.version[2] = HIWORD(block.dwFileVersionLS);
    facts.version[3] = LOWORD(block.dwFileVersionLS);
    return facts;
}

} // namespace vh
