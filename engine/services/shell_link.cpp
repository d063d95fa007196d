#include "shell_link.h"

#include <array>

#include <commctrl.h>
#include <propsys.h>
#include <shlobj.h>
#include <shlwapi.h>

#include "../../scriptdata/variant.h"

namespace vh {

template <>
inline constexpr GUID iid_of<IShellLinkW> = Guid("{000214F9-0000-0000-C000-000000000046}");
template <>
inline constexpr GUID iid_of<IPersistFile> = Guid("{0000010B-0000-0000-C000-000000000046}");
template <>
inline constexpr GUID iid_of<IPropertyStore> = Guid("{886D8EEB-8CF2-4446-8D02-CDBA1DBDCF99}");

namespace engine {

namespace {

// COM for this thread while a shortcut is in hand; a thread that has it otherwise keeps what it has.
class ComApartment {
public:
    ComApartment() : m_begun(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~ComApartment()
    {
        if (m_begun)
            CoUninitialize();
    }
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;

private:
    bool m_begun;
};

constexpr std::size_t text_size = 32768;

struct KeyName {
    const wchar_t* name;
    BYTE code;
};
constexpr KeyName modifiers[] = {{L"Ctrl", HOTKEYF_CONTROL}, {L"Alt", HOTKEYF_ALT}, {L"Shift", HOTKEYF_SHIFT}};
constexpr KeyName named_keys[] = {
    {L"Ins", VK_INSERT},  {L"Del", VK_DELETE}, {L"Home", VK_HOME},   {L"End", VK_END},   {L"PgUp", VK_PRIOR},
    {L"PgDn", VK_NEXT},   {L"Left", VK_LEFT},  {L"Right", VK_RIGHT}, {L"Up", VK_UP},     {L"Down", VK_DOWN},
    {L"Space", VK_SPACE}, {L"Tab", VK_TAB},    {L"Esc", VK_ESCAPE},  {L"Back", VK_BACK}, {L"Enter", VK_RETURN},
};

[[noreturn]] void ThrowBadKey(std::wstring_view text)
{
    throw engine_error(E_INVALIDARG, std::wstring(text), L"no such shortcut key");
}

// One key without modifiers; 0 when there is none of that name.
BYTE KeyCode(std::wstring_view name)
{
    const std::wstring upper = Upper(name);
    if (upper.size() == 1 && ((upper[0] >= L'A' && upper[0] <= L'Z') || (upper[0] >= L'0' && upper[0] <= L'9')))
        return static_cast<BYTE>(upper[0]);
    for (BYTE i = 1; i <= 24; ++i)
        if (upper == L"F" + Number(i))
            return static_cast<BYTE>(VK_F1 + i - 1);
    for (const KeyName& key : named_keys)
        if (SameText(upper, key.name))
            return key.code;
    return 0;
}

com_ptr<IShellLinkW> NewLink()
{
    com_ptr<IShellLinkW> link;
    ThrowIfFailed(
        CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, iid_of<IShellLinkW>, link.put_void()));
    return link;
}

com_ptr<IShellLinkW> LoadLink(const std::wstring& file)
{
    auto link = NewLink();
    const HRESULT code = link.query<IPersistFile>()->Load(file.c_str(), STGM_READ);
    if (FAILED(code))
        throw engine_error(code, file, L"can't read the shortcut");
    return link;
}

PROPERTYKEY PropertyKey(const std::wstring& text)
{
    PROPERTYKEY key{};
    const std::size_t brace = text.find(L'}');
    const std::size_t comma = text.find(L',');
    if (brace == std::wstring::npos || comma == std::wstring::npos ||
        FAILED(CLSIDFromString(text.substr(0, brace + 1).c_str(), &key.fmtid)))
        throw engine_error(E_INVALIDARG, text, L"a property key is \"{format identifier}, number\"");
    key.pid = static_cast<DWORD>(std::wcstoul(text.c_str() + comma + 1, nullptr, 10));
    return key;
}

// Whole numbers are stored as numbers: flags and options are read as such.
class PropertyValue {
public:
    PropertyValue() { PropVariantInit(&m_value); }
    explicit PropertyValue(const std::wstring& text) : PropertyValue()
    {
        wchar_t* end = nullptr;
        const long number = std::wcstol(text.c_str(), &end, 10);
        if (!text.empty() && !*end) {
            m_value.vt = VT_I4;
            m_value.lVal = number;
        } else {
            ThrowIfFailed(SHStrDupW(text.c_str(), &m_value.pwszVal));
            m_value.vt = VT_LPWSTR;
        }
    }
    ~PropertyValue() { PropVariantClear(&m_value); }
    PropertyValue(const PropertyValue&) = delete;
    PropertyValue& operator=(const PropertyValue&) = delete;

    PROPVARIANT& get() { return m_value; }

private:
    PROPVARIANT m_value;
};

void WriteProperties(const com_ptr<IShellLinkW>& link, const LinkData& given)
{
    if (given.properties.empty())
        return;
    com_ptr<IPropertyStore> store;
    ThrowIfFailed(link.query(store));
    for (const auto& [key, text] : given.properties) {
        PropertyValue value(text);
        ThrowIfFailed(store->SetValue(PropertyKey(key), value.get()));
    }
    ThrowIfFailed(store->Commit());
}

} // namespace

WORD HotKeyOf(std::wstring_view text)
{
    if (text.empty() || SameText(text, L"None"))
        return 0;
    unsigned key = 0;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(L'+', start), text.size());
        const std::wstring_view part = text.substr(start, end - start);
        start = end + 1;
        bool modifies = false;
        for (const KeyName& modifier : modifiers)
            if (SameText(part, modifier.name)) {
                key |= static_cast<unsigned>(modifier.code) << 8;
                modifies = true;
            }
        if (modifies)
            continue;
        const BYTE code = KeyCode(part);
        // The one key comes last.
        if (!code || end != text.size())
            ThrowBadKey(text);
        key |= code;
    }
    if (!(key & 0xFF))
        ThrowBadKey(text);
    return static_cast<WORD>(key);
}

std::wstring HotKeyText(WORD key)
{
    const auto code = static_cast<BYTE>(key & 0xFF);
    if (!code)
        return L"None";
    std::wstring text;
    for (const KeyName& modifier : modifiers)
        if ((key >> 8) & modifier.code)
            text += std::wstring(modifier.name) + L'+';
    if (code >= VK_F1 && code <= VK_F24)
        return text + L"F" + Number(code - VK_F1 + 1);
    for (const KeyName& named : named_keys)
        if (named.code == code)
            return text + named.name;
    return text + static_cast<wchar_t>(code);
}

LinkData ReadShellLink(const std::wstring& file)
{
    const ComApartment com;
    const auto link = LoadLink(file);
    std::wstring buffer(text_size, L'\0');
    const auto size = static_cast<int>(buffer.size());
    const auto text = [&](HRESULT code) {
        return SUCCEEDED(code) ? buffer.substr(0, buffer.find(L'\0')) : std::wstring();
    };
    LinkData read;
    read.origin = file;
    read.target = text(link->GetPath(buffer.data(), size, nullptr, SLGP_RAWPATH));
    read.arguments = text(link->GetArguments(buffer.data(), size));
    read.workingDir = text(link->GetWorkingDirectory(buffer.data(), size));
    int index = 0;
    read.iconFile = text(link->GetIconLocation(buffer.data(), size, &index));
    read.iconIndex = index;
    WORD key = 0;
    link->GetHotkey(&key);
    read.hotKey = HotKeyText(key);
    int show = SW_SHOWNORMAL;
    link->GetShowCmd(&show);
    read.showCommand = show;
    return read;
}

void WriteShellLink(const LinkData& given, const std::wstring& file)
{
    const ComApartment com;
    // What the record does not know of an existing shortcut stays.
    const auto link = FactsOf(file).file() ? LoadLink(file) : NewLink();
    ThrowIfFailed(link->SetPath(given.target.c_str()));
    ThrowIfFailed(link->SetArguments(given.arguments.c_str()));
    ThrowIfFailed(link->SetWorkingDirectory(given.workingDir.c_str()));
    ThrowIfFailed(link->SetIconLocation(given.iconFile.c_str(), static_cast<int>(given.iconIndex)));
    ThrowIfFailed(link->SetHotkey(HotKeyOf(given.hotKey)));
    ThrowIfFailed(link->SetShowCmd(static_cast<int>(given.showCommand)));
    WriteProperties(link, given);
    const HRESULT code = link.query<IPersistFile>()->Save(file.c_str(), FALSE);
    if (FAILED(code))
        throw engine_error(code, file, L"can't write the shortcut");
}

} // namespace engine
} // namespace vh
