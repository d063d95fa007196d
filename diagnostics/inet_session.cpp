#include "inet_session.h"

#include "inet_callbacks.h"

namespace vh {

namespace {

// Old versions read their proxy from these values when a session opens; the reading alone is what they need.
void TouchProxySettings()
{
    unique_key key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings", 0,
                      KEY_READ, key.put()) != ERROR_SUCCESS)
        return;
    BYTE enabled[4];
    BYTE address[2084];
    DWORD size = sizeof(enabled);
    RegQueryValueExW(key.get(), L"ProxyEnable", nullptr, nullptr, enabled, &size);
    size = sizeof(address);
    RegQueryValueExW(key.get(), L"AutoConfigURL", nullptr, nullptr, address, &size);
}

const wchar_t* TextOrNull(const stringx& text) { return text.empty() ? nullptr : text.c_str(); }

} // namespace

inet_version wininet_version()
{
    INTERNET_VERSION_INFO info{};
    DWORD size = sizeof(info);
    late::internet_query_option(nullptr, static_cast<DWORD>(INTERNET_OPTION_VERSION), &info, &size);
    return {info.dwMajorVersion, info.dwMinorVersion};
}

inet_session::inet_session(const inet_settings& settings)
{
    if (wininet_version().minor == 1)
        TouchProxySettings();
    unique_inet opened(late::internet_open(settings.agent.c_str(), settings.access_type, TextOrNull(settings.proxy),
                                           TextOrNull(settings.bypass), settings.flags | INTERNET_FLAG_ASYNC));
    if (opened)
        m_session = std::make_shared<unique_inet>(std::move(opened));
}

bool inet_session::watch() const
{
    return late::internet_set_status_callback(handle(), &inet_status_callback) != INTERNET_INVALID_STATUS_CALLBACK;
}

} // namespace vh
