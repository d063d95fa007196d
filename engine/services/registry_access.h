// The registry under the names that the install log uses, "HKCU\Software\...", with and without a record.
#pragma once

#include <optional>

#include "../core.h"

namespace vh::engine {

struct RawValue {
    DWORD type = REG_NONE;
    std::string bytes;
    bool operator==(const RawValue&) const = default;
};

// A root and a key below it. The 32-bit view of a root is named "HKLM/32" and so on; below a run's own root that is
// a key of its own, without the slash.
struct RegistryPlace {
    HKEY root = nullptr;
    REGSAM view = KEY_WOW64_64KEY;
    std::wstring key;
    std::wstring rootName; // empty for a remote root: that one is not logged

    std::wstring Name() const { return rootName + L'\\' + key; }
};

// Throws for a root that does not exist. Backslashes at the end of a key do not count.
RegistryPlace PlaceOf(std::wstring_view name);
// Whether it begins with a root that there is; the key behind the backslash may be empty.
bool IsPlaceName(std::wstring_view name);
RegistryPlace PlaceOf(LONG64 root, std::wstring_view key, bool view32);
// The same place below the run's own root, where it has one. A remote key is no place of this machine and stays.
RegistryPlace Redirected(const Core& core, RegistryPlace place);

// A system code: 0 when the key is open.
LSTATUS OpenKey(const RegistryPlace& place, REGSAM access, unique_key& key);
unique_key OpenKey(const RegistryPlace& place, REGSAM access);
// What can't be seen, for lack of rights or another reason, is no absence: these throw the system's code. `passing`
// asks for a key on the way to another, which may be closed itself.
bool KeyThere(const RegistryPlace& place, bool passing = false);
std::optional<RawValue> ReadValue(const RegistryPlace& place, const std::wstring& name);
// Makes keys that are missing; a value that is there already is left alone. Each new key and the value are recorded
// before they are made; those of another machine are not.
void MakeKey(const Recording& to, const RegistryPlace& place, const std::wstring& keyClass,
             const std::wstring& feature);
void WriteValue(const Recording& to, const RegistryPlace& place, const std::wstring& name, const RawValue& value,
                const std::wstring& feature);
// System codes. A tree goes with its key, which is no root. Until the run ends it can come back, but for its access
// lists.
LSTATUS DeleteTree(InstallLog& log, const RegistryPlace& place);
LSTATUS DeleteValue(InstallLog& log, const RegistryPlace& place, const std::wstring& name);

enum class KeyNames { keys, values };
LSTATUS NamesIn(const RegistryPlace& place, KeyNames kind, std::vector<std::wstring>& names);

// The bare steps, which undo uses: nothing is recorded, and failures are thrown.
void CreateOneKey(const RegistryPlace& place, std::wstring keyClass);
void PutValue(const RegistryPlace& place, const std::wstring& name, const RawValue& value);
void DropValue(const RegistryPlace& place, const std::wstring& name);

// Text as the registry holds it, with its terminator.
RawValue TextValue(DWORD type, std::wstring_view text);
RawValue NumberValue(DWORD number);

} // namespace vh::engine
