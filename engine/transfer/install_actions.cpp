#include "install_actions.h"

#include <algorithm>

#include "../services/registry_access.h"
#include "../services/shell_service.h"

namespace vh::engine {

namespace {

bool IsWanted(const Product& product, const std::wstring& feature)
{
    const Item* item = feature.empty() ? nullptr : product.Feature(feature);
    return !item || item->selected;
}

// Lines become the texts of a list, each with its terminator.
std::wstring ListText(std::wstring lines)
{
    std::replace(lines.begin(), lines.end(), L'\n', L'\0');
    return lines;
}

RawValue ValueOf(const Core& core, const RegistryValue& value)
{
    switch (value.type) {
    case REG_DWORD:
        return NumberValue(value.number);
    case REG_BINARY:
        return {REG_BINARY, value.bytes};
    case REG_MULTI_SZ:
        return TextValue(value.type, ListText(core.Substitute(value.text)));
    default:
        return TextValue(value.type, core.Substitute(value.text));
    }
}

void Apply(Core& core, const RegistrySet& set, bool loose)
{
    const Recording to{core.log.get(), loose};
    if (!loose) {
        LogRecord record;
        record.kind = LogKind::set;
        record.what = set.name;
        record.feature = set.feature;
        to.log->Append(std::move(record));
    }
    for (const RegistryKey& key : set.keys) {
        const RegistryPlace place = Redirected(core, PlaceOf(key.root + L'\\' + core.Substitute(key.key)));
        MakeKey(to, place, {}, set.feature);
        for (const RegistryValue& value : key.values)
            WriteValue(to, place, core.Substitute(value.name), ValueOf(core, value), set.feature);
    }
}

} // namespace

void ApplyRegistrySets(Core& core, const Product& product, std::wstring_view name, bool loose)
{
    bool found = name.empty();
    for (const RegistrySet& set : product.registrySets) {
        if (!name.empty() && !SameText(set.name, name))
            continue;
        found = true;
        if (IsWanted(product, set.feature))
            Apply(core, set, loose);
        else
            core.Note(set.name, L"the registry set is left out: \"" + set.feature + L"\" is not selected");
    }
    if (!found)
        throw engine_error(E_INVALIDARG, std::wstring(name), L"there is no such registry set");
}

void MakeShellObjects(Core& core, const Product& product, bool loose)
{
    for (const ShellObject& object : product.shellObjects) {
        if (!IsWanted(product, object.feature))
            continue;
        LinkData link;
        link.target = core.Substitute(object.target);
        link.arguments = core.Substitute(object.arguments);
        link.workingDir = core.Substitute(object.workingDir);
        link.iconFile = core.Substitute(object.icon.empty() ? object.target : object.icon);
        link.iconIndex = object.iconIndex;
        SaveShortcut(core, link, ShortcutPath(core, JoinPath(object.folder, core.DisplayText(object.name))),
                     object.feature, loose);
    }
}

} // namespace vh::engine
