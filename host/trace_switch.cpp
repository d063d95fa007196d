#include "trace_switch.h"

#include <stdexcept>

#include "scriptdata/unique.h"
#include "text.h"

namespace host {

namespace {

constexpr const wchar_t* switch_key = L"VHlogit";
constexpr const wchar_t* file_value = L"FileNamePath";

DWORD SetFile(HKEY key, const std::wstring& file)
{
    const auto bytes = static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t));
    return static_cast<DWORD>(
        RegSetValueExW(key, file_value, 0, REG_SZ, reinterpret_cast<const BYTE*>(file.c_str()), bytes));
}

std::optional<std::wstring> ReadFile(HKEY key)
{
    DWORD bytes = 0;
    if (RegGetValueW(key, nullptr, file_value, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) != ERROR_SUCCESS)
        return std::nullopt;
    std::wstring text(bytes / sizeof(wchar_t), L'\0');
    if (RegGetValueW(key, nullptr, file_value, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) != ERROR_SUCCESS)
        return std::nullopt;
    text.resize(bytes / sizeof(wchar_t));
    while (!text.empty() && text.back() == L'\0')
        text.pop_back();
    return text;
}

} // namespace

TraceSwitch::TraceSwitch(const std::wstring& file)
{
    vh::unique_key key;
    DWORD disposition = 0;
    auto code = static_cast<DWORD>(RegCreateKeyExW(HKEY_CURRENT_USER, switch_key, 0, nullptr, 0, KEY_READ | KEY_WRITE,
                                                   nullptr, key.put(), &disposition));
    if (code == ERROR_SUCCESS) {
        m_had_key = disposition == REG_OPENED_EXISTING_KEY;
        m_former_file = ReadFile(key.get());
        code = SetFile(key.get(), file);
    }
    if (code != ERROR_SUCCESS)
        throw std::runtime_error("the trace can't be turned on: " + Utf8(SystemText(code)));
}

TraceSwitch::~TraceSwitch()
{
    if (!m_had_key) {
        RegDeleteKeyW(HKEY_CURRENT_USER, switch_key);
        return;
    }
    vh::unique_key key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, switch_key, 0, KEY_WRITE, key.put()) != ERROR_SUCCESS)
        return;
    if (m_former_file)
        SetFile(key.get(), *m_former_file);
    else
        RegDeleteValueW(key.get(), file_value);
}

} // namespace host
