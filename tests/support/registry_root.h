// A root of the registry that leads to a key of the test's own.
#pragma once

#include "test.h"

namespace vh::test {

class RegistryRoot : Pinned {
public:
    explicit RegistryRoot(HKEY root) : m_root(root)
    {
        static int count = 0;
        m_path.append(std::to_wstring(GetCurrentProcessId())).append(L".").append(std::to_wstring(++count));
        RegCreateKeyW(HKEY_CURRENT_USER, m_path.c_str(), &m_key);
        EXPECT_EQ(RegOverridePredefKey(root, m_key), ERROR_SUCCESS);
    }
    // Two of them end in reverse, so the real root is there again when its key goes.
    ~RegistryRoot()
    {
        RegOverridePredefKey(m_root, nullptr);
        RegDeleteTreeW(m_key, nullptr);
        RegCloseKey(m_key);
        RegDeleteKeyW(HKEY_CURRENT_USER, m_path.c_str());
    }

    HKEY key() const { return m_key; }

    // Each key and value below it, one a line, as "key", "key>name=text" or "key>name:type".
    std::string Shown() const
    {
        std::string shown;
        Show(m_key, "", shown);
        return shown;
    }

private:
    static std::string Narrow(std::wstring_view text) { return std::filesystem::path(text).string(); }

    static void Show(HKEY key, const std::string& path, std::string& shown)
    {
        std::vector<wchar_t> name(16384);
        std::set<std::string> lines;
        DWORD type = 0, length = static_cast<DWORD>(name.size()), size = 0;
        for (DWORD i = 0; RegEnumValueW(key, i, name.data(), &length, nullptr, &type, nullptr, &size) == 0; ++i) {
            std::wstring data(size / sizeof(wchar_t), L'\0');
            RegQueryValueExW(key, name.data(), nullptr, nullptr, reinterpret_cast<BYTE*>(data.data()), &size);
            // A text ends in its zero, and holds no other.
            const bool text = type == REG_SZ && !data.empty() && data.find(L'\0') == data.size() - 1;
            if (text)
                data.pop_back();
            std::string line = path;
            line.append(">").append(Narrow({name.data(), length}));
            lines.insert(line.append(text ? "=" : ":").append(text ? Narrow(data) : std::to_string(type)).append("\n"));
            length = static_cast<DWORD>(name.size());
            size = 0;
        }
        for (const std::string& line : lines)
            shown += line;
        std::set<std::wstring> keys;
        for (DWORD i = 0; RegEnumKeyW(key, i, name.data(), 256) == 0; ++i)
            keys.insert(name.data());
        for (const std::wstring& one : keys) {
            const std::string below = path.empty() ? Narrow(one) : path + "\\" + Narrow(one);
            shown += below + "\n";
            HKEY opened = nullptr;
            if (RegOpenKeyExW(key, one.c_str(), 0, KEY_READ, &opened) == ERROR_SUCCESS)
                Show(opened, below, shown);
            RegCloseKey(opened);
        }
    }

    HKEY m_root;
    HKEY m_key = nullptr;
    std::wstring m_path = L"Software\\vhrt test ";
};

} // namespace vh::test
