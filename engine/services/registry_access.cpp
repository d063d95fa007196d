#include "registry_access.h"

#include <algorithm>
#include <array>

namespace vh::engine {

namespace {

struct RootName {
    const wchar_t* name;
    HKEY root;
};
const RootName root_names[] = {
    {L"HKCR", HKEY_CLASSES_ROOT}, {L"HKCU", HKEY_CURRENT_USER},   {L"HKLM", HKEY_LOCAL_MACHINE},
    {L"HKU", HKEY_USERS},         {L"HKCC", HKEY_CURRENT_CONFIG},
};
constexpr std::wstring_view view32_mark = L"/32";

[[noreturn]] void ThrowKeyError(const RegistryPlace& place, LSTATUS code)
{
    throw engine_error(FromWin32(static_cast<DWORD>(code)), place.Name(), SystemText(static_cast<DWORD>(code)));
}

bool IsAbsent(LSTATUS code) { return code == ERROR_FILE_NOT_FOUND || code == ERROR_PATH_NOT_FOUND; }

// A name for the system, which takes no backslash at the end of one.
std::wstring KeyName(std::wstring_view name) { return std::wstring(name.substr(0, name.find_last_not_of(L'\\') + 1)); }

// Keys are divided by backslashes alone: a slash is a letter of a name.
std::wstring KeyBelow(const std::wstring& above, const std::wstring& name)
{
    return above.empty() || name.empty() ? above + name : above + L'\\' + name;
}

} // namespace

RegistryPlace PlaceOf(std::wstring_view name)
{
    const std::size_t slash = name.find(L'\\');
    RegistryPlace place;
    place.rootName = name.substr(0, slash);
    place.key = slash == std::wstring_view::npos ? L"" : KeyName(name.substr(slash + 1));
    std::wstring_view root = place.rootName;
    if (root.ends_with(view32_mark)) {
        place.view = KEY_WOW64_32KEY;
        root.remove_suffix(view32_mark.size());
    }
    const auto* known = std::find_if(std::begin(root_names), std::end(root_names),
                                     [&](const RootName& entry) { return root == entry.name; });
    if (known == std::end(root_names))
        throw engine_error(E_INVALIDARG, std::wstring(name), L"there is no such registry root");
    place.root = known->root;
    return place;
}

bool IsPlaceName(std::wstring_view name)
{
    const std::size_t slash = name.find(L'\\');
    std::wstring_view root = name.substr(0, slash);
    if (root.ends_with(view32_mark))
        root.remove_suffix(view32_mark.size());
    return slash != name.npos && std::any_of(std::begin(root_names), std::end(root_names),
                                             [&](const RootName& entry) { return root == entry.name; });
}

RegistryPlace PlaceOf(LONG64 root, std::wstring_view key, bool view32)
{
    RegistryPlace place;
    // Predefined roots may arrive without their sign.
    const LONG64 widened =
        (root & ~0xFFFFFFFFLL) == 0 && (root & 0x80000000) ? static_cast<LONG64>(static_cast<int32_t>(root)) : root;
    place.root = reinterpret_cast<HKEY>(widened);
    place.key = KeyName(key);
    place.view = view32 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
    for (const RootName& entry : root_names)
        if (entry.root == place.root)
            place.rootName = entry.name + std::wstring(view32 ? view32_mark : L"");
    return place;
}

RegistryPlace Redirected(const Core& core, RegistryPlace place)
{
    if (core.options.registryRoot.empty() || place.rootName.empty())
        return place;
    std::wstring name = place.rootName;
    if (name.ends_with(view32_mark))
        name.erase(name.size() - view32_mark.size(), 1);
    RegistryPlace below = PlaceOf(core.options.registryRoot);
    below.key = KeyBelow(KeyBelow(below.key, name), place.key);
    return below;
}

LSTATUS OpenKey(const RegistryPlace& place, REGSAM access, unique_key& key)
{
    return RegOpenKeyExW(place.root, place.key.c_str(), 0, access | place.view, key.put());
}

unique_key OpenKey(const RegistryPlace& place, REGSAM access)
{
    unique_key key;
    OpenKey(place, access, key);
    return key;
}

bool KeyThere(const RegistryPlace& place, bool passing)
{
    unique_key key;
    const LSTATUS code = OpenKey(place, KEY_QUERY_VALUE, key);
    if (passing && code == ERROR_ACCESS_DENIED)
        return true;
    if (code != ERROR_SUCCESS && !IsAbsent(code))
        ThrowKeyError(place, code);
    return code == ERROR_SUCCESS;
}

std::optional<RawValue> ReadValue(const RegistryPlace& place, const std::wstring& name)
{
    RawValue value;
    DWORD size = 0;
    unique_key key;
    LSTATUS code = OpenKey(place, KEY_QUERY_VALUE, key);
    if (code == ERROR_SUCCESS)
        code = RegQueryValueExW(key.get(), name.c_str(), nullptr, &value.type, nullptr, &size);
    while (code == ERROR_SUCCESS || code == ERROR_MORE_DATA) {
        value.bytes.resize(size);
        code = RegQueryValueExW(key.get(), name.c_str(), nullptr, &value.type,
                                reinterpret_cast<BYTE*>(value.bytes.data()), &size);
        if (code == ERROR_SUCCESS) {
            value.bytes.resize(size);
            return value;
        }
    }
    if (!IsAbsent(code))
        ThrowKeyError(place, code);
    return std::nullopt;
}

LSTATUS NamesIn(const RegistryPlace& place, KeyNames kind, std::vector<std::wstring>& names)
{
    unique_key key;
    LSTATUS code = OpenKey(place, KEY_READ, key);
    // The longest name of a value, with its terminator.
    std::array<wchar_t, 16384> name{};
    for (DWORD i = 0; code == ERROR_SUCCESS; ++i) {
        DWORD length = static_cast<DWORD>(name.size());
        code = kind == KeyNames::values
                   ? RegEnumValueW(key.get(), i, name.data(), &length, nullptr, nullptr, nullptr, nullptr)
                   : RegEnumKeyExW(key.get(), i, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (code == ERROR_SUCCESS)
            names.emplace_back(name.data(), length);
    }
    return code == ERROR_NO_MORE_ITEMS ? ERROR_SUCCESS : code;
}

void CreateOneKey(const RegistryPlace& place, std::wstring keyClass)
{
    unique_key made;
    const LSTATUS code = RegCreateKeyExW(place.root, place.key.c_str(), 0, keyClass.empty() ? nullptr : keyClass.data(),
                                         REG_OPTION_NON_VOLATILE, KEY_WRITE | place.view, nullptr, made.put(), nullptr);
    if (code != ERROR_SUCCESS)
        ThrowKeyError(place, code);
}

void PutValue(const RegistryPlace& place, const std::wstring& name, const RawValue& value)
{
    unique_key key;
    LSTATUS code = OpenKey(place, KEY_SET_VALUE, key);
    if (code == ERROR_SUCCESS)
        code = RegSetValueExW(key.get(), name.c_str(), 0, value.type, reinterpret_cast<const BYTE*>(value.bytes.data()),
                              static_cast<DWORD>(value.bytes.size()));
    if (code != ERROR_SUCCESS)
        ThrowKeyError(place, code);
}

namespace {

LSTATUS DeleteBareValue(const RegistryPlace& place, const std::wstring& name)
{
    unique_key key;
    const LSTATUS code = OpenKey(place, KEY_SET_VALUE, key);
    return code == ERROR_SUCCESS ? RegDeleteValueW(key.get(), name.c_str()) : code;
}

} // namespace

void DropValue(const RegistryPlace& place, const std::wstring& name)
{
    if (const LSTATUS code = DeleteBareValue(place, name); code != ERROR_SUCCESS && !IsAbsent(code))
        ThrowKeyError(place, code);
}

namespace {

// The key and those above it.
std::vector<RegistryPlace> PartsOf(const RegistryPlace& place)
{
    std::vector<RegistryPlace> parts;
    for (std::size_t end = 0; end != std::wstring::npos;) {
        end = place.key.find(L'\\', end ? end + 1 : 0);
        parts.push_back(place);
        parts.back().key.resize(std::min(end, place.key.size()));
    }
    return parts;
}

void Want(const Recording& to, const RegistryPlace& place, const std::wstring& name = {})
{
    if (to.loose || place.rootName.empty())
        return;
    to.log->Want(place.Name(), name);
    for (const RegistryPlace& part : PartsOf(place))
        to.log->Want(part.Name());
}

} // namespace

void MakeKey(const Recording& to, const RegistryPlace& place, const std::wstring& keyClass, const std::wstring& feature)
{
    Want(to, place);
    for (const RegistryPlace& part : PartsOf(place)) {
        if (part.key.empty() || to.log->Makes(part.Name()))
            continue;
        LogRecord record;
        record.kind = LogKind::key;
        record.what = part.Name();
        record.feature = feature;
        record.loose = to.loose;
        const bool there = KeyThere(part, part.key.size() != place.key.size());
        // A key that another product made goes with the last of them.
        const bool shared =
            there && !to.loose && to.log->OthersHave(record) && !to.log->Newest(record.kind, record.what);
        if (!part.rootName.empty() && (!there || shared))
            to.log->Append(std::move(record));
        if (there)
            continue;
        if (!to.log->IsDraft())
            CreateOneKey(part, keyClass);
        to.log->Tell({Act::add, Why::fresh, L"key", part.Name(), feature});
    }
}

namespace {

// From one value to another; nothing stands for no value.
LogRecord ChangeRecord(const RegistryPlace& place, const std::wstring& name, const std::optional<RawValue>& from,
                       const std::optional<RawValue>& to)
{
    LogRecord record;
    record.kind = LogKind::value;
    record.what = place.Name();
    record.name = name;
    if (to) {
        record.type = static_cast<long>(to->type);
        record.data = ToHex(to->bytes);
    }
    if (from) {
        record.oldType = static_cast<long>(from->type);
        record.oldData = ToHex(from->bytes);
    }
    return record;
}

// What stands there is another product's. Its record is needed also when nothing is written, unless the product's own
// newest says the same.
bool IsShared(const Recording& to, const LogRecord& record)
{
    if (to.loose || !to.log->Others().Wrote(record, record.oldType, record.oldData))
        return false;
    const auto& records = to.log->Records();
    const auto own = std::find_if(records.rbegin(), records.rend(), [&](const LogRecord& before) {
        return before.kind == record.kind && IsForRemoval(before) && SameText(before.what, record.what) &&
               SameText(before.name, record.name) && !to.log->Undone(before);
    });
    return own == records.rend() || own->type != record.oldType || own->data != record.oldData;
}

LogRecord DeletionRecord(const RegistryPlace& place, const std::wstring& name)
{
    LogRecord record = ChangeRecord(place, name, ReadValue(place, name), std::nullopt);
    record.loose = true;
    return record;
}

// All that is in a key and below it, each thing before what holds it: undone from the end, they come back in order.
std::vector<LogRecord> TreeRecords(const RegistryPlace& top)
{
    std::vector<LogRecord> records;
    std::vector<RegistryPlace> open{top};
    while (!open.empty()) {
        const RegistryPlace place = open.back();
        open.pop_back();
        LogRecord key;
        key.kind = LogKind::unkey;
        key.what = place.Name();
        key.loose = true;
        records.push_back(std::move(key));
        std::vector<std::wstring> names;
        LSTATUS code = NamesIn(place, KeyNames::values, names);
        for (const std::wstring& name : names)
            records.push_back(DeletionRecord(place, name));
        names.clear();
        if (code == ERROR_SUCCESS)
            code = NamesIn(place, KeyNames::keys, names);
        if (code != ERROR_SUCCESS)
            ThrowKeyError(place, code);
        for (const std::wstring& name : names) {
            open.push_back(place);
            open.back().key += L'\\' + name;
        }
    }
    std::reverse(records.begin(), records.end());
    return records;
}

} // namespace

void WriteValue(const Recording& to, const RegistryPlace& place, const std::wstring& name, const RawValue& value,
                const std::wstring& feature)
{
    Want(to, place, name);
    const auto old = ReadValue(place, name);
    const auto tell = [&](Act act, Why why) {
        to.log->Tell({act, why, L"value", place.Name() + L'\\' + name, feature});
    };
    LogRecord record = ChangeRecord(place, name, old, value);
    record.feature = feature;
    record.loose = to.loose;
    if (!place.rootName.empty() && old && IsShared(to, record))
        to.log->Others().Share(record);
    if (old == value && !record.shared)
        return tell(Act::keep, Why::same);
    MakeKey(to, place, {}, feature);
    if (!place.rootName.empty())
        to.log->Append(std::move(record));
    if (old == value)
        return tell(Act::keep, Why::same);
    if (!to.log->IsDraft())
        PutValue(place, name, value);
    tell(old ? Act::replace : Act::add, old ? Why::differs : Why::fresh);
}

LSTATUS DeleteTree(InstallLog& log, const RegistryPlace& place)
{
    if (place.key.empty())
        return ERROR_INVALID_PARAMETER;
    unique_key key;
    LSTATUS code = OpenKey(place, DELETE | KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | KEY_SET_VALUE, key);
    if (code == ERROR_SUCCESS && !place.rootName.empty()) {
        log.Append(TreeRecords(place));
        log.Flush();
    }
    if (code == ERROR_SUCCESS && !log.IsDraft())
        code = RegDeleteTreeW(key.get(), nullptr);
    key.reset();
    // By name and view: a handle's own view does not hold for a root's direct sub-keys.
    if (code == ERROR_SUCCESS && !log.IsDraft())
        code = RegDeleteKeyExW(place.root, place.key.c_str(), place.view, 0);
    if (code == ERROR_SUCCESS)
        log.Tell({Act::remove, Why::asked, L"key", place.Name()});
    return code;
}

LSTATUS DeleteValue(InstallLog& log, const RegistryPlace& place, const std::wstring& name)
{
    if (!place.rootName.empty() && ReadValue(place, name)) {
        log.Append(DeletionRecord(place, name));
        log.Flush();
    }
    const LSTATUS code =
        log.IsDraft() ? (ReadValue(place, name) ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND) : DeleteBareValue(place, name);
    if (code == ERROR_SUCCESS)
        log.Tell({Act::remove, Why::asked, L"value", place.Name() + L'\\' + name});
    return code;
}

RawValue TextValue(DWORD type, std::wstring_view text)
{
    RawValue value{type, std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t))};
    value.bytes.append(sizeof(wchar_t), '\0');
    return value;
}

RawValue NumberValue(DWORD number)
{
    return {REG_DWORD, std::string(reinterpret_cast<const char*>(&number), sizeof number)};
}

} // namespace vh::engine
