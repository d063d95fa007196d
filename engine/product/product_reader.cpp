// From the JSON of a product file to a Product.
#include "product_reader.h"

#include <algorithm>
#include <optional>

#include "json_reader.h"
#include "payload.h"
#include "product_values.h"
#include "target_check.h"

namespace vh::engine {

namespace {

constexpr std::size_t most_features = 4096;
constexpr std::size_t most_entries = 65536;
constexpr std::size_t most_files = 262144;
constexpr std::size_t most_of_a_kind = 1024;
constexpr int most_levels = 16;
constexpr int64_t largest_payload = int64_t{1} << 60;

class ProductReader {
public:
    ProductReader(const JsonFile& json, std::vector<PatternUse>* uses, const Pack* pack)
        : m_json(json), m_uses(uses), m_pack(pack)
    {
    }

    std::unique_ptr<Product> Read();

private:
    void ReadHead(const JsonPlace& root);
    void ReadStrings(const JsonPlace& root);
    void ReadItem(const JsonPlace& at, Item& item, int level);
    void ReadItems(const JsonPlace& at, Item& parent, int level);
    FileGroup ReadGroup(const JsonPlace& at);
    void ReadFile(const JsonPlace& at, FileGroup& group);
    Audience ReadAudience(const JsonPlace& at);
    void ReadSetupTypes(const JsonPlace& root);
    void ReadRegistrySets(const JsonPlace& root);
    RegistryValue ReadRegistryValue(const JsonPlace& at);
    void ReadShellObjects(const JsonPlace& root);
    void ReadMedia(const JsonPlace& root);
    void ReadSupport(const JsonPlace& root);
    std::wstring FeaturePath(const JsonPlace& at) const;
    std::wstring Folder(const JsonPlace& at, const char* key) const;
    // A text that may hold patterns, and what it is for.
    std::wstring Noted(const JsonPlace& at, PatternKind kind, std::wstring text) const;
    std::wstring Pattern(const JsonPlace& at) const;
    std::wstring Pattern(const JsonPlace& at, const char* key, PatternKind kind) const;

    const JsonFile& m_json;
    std::vector<PatternUse>* m_uses;
    const Pack* m_pack;
    std::optional<Payload> m_payload;
    std::unique_ptr<Product> m_product = std::make_unique<Product>();
    std::size_t m_features = 0;
    std::size_t m_entries = 0;
    std::size_t m_files = 0;
};

Scope ScopeOf(const JsonPlace& root)
{
    const std::wstring name = root.Text("scope", scope_names[0]);
    if (name != scope_names[0] && name != scope_names[1])
        root.At("scope").Fail(L"must be user or machine");
    return name == scope_names[1] ? Scope::machine : Scope::user;
}
constexpr const wchar_t* default_targets[] = {L"<LOCALAPPDATA>\\Programs\\<PRODUCT_NAME>",
                                              L"<PROGRAMFILES>\\<PRODUCT_NAME>"};

std::wstring ProductReader::Noted(const JsonPlace& at, PatternKind kind, std::wstring text) const
{
    if (m_uses && text.find(L'<') != std::wstring::npos)
        m_uses->push_back({at.place(), kind, text});
    return text;
}

std::wstring ProductReader::Pattern(const JsonPlace& at, const char* key, PatternKind kind) const
{
    return at.Has(key) ? Noted(at.At(key), kind, at.At(key).Text()) : std::wstring();
}

std::wstring ProductReader::Pattern(const JsonPlace& at) const { return Noted(at, PatternKind::path, PathPattern(at)); }

std::unique_ptr<Product> ProductReader::Read()
{
    const JsonPlace root = m_json.Root();
    root.Keys({"$schema",     "format",   "name",       "version",           "company",         "guid",
               "installGuid", "scope",    "languages",  "strings",           "target",          "payload",
               "script",      "scripts",  "skin",       "maintenanceOption", "enabledServices", "key",
               "variables",   "features", "setupTypes", "support",           "registrySets",    "shellObjects",
               "media"});
    ReadHead(root);
    ReadStrings(root);
    root.At("features");
    ReadItems(root, m_product->data, 1);
    ReadSupport(root);
    CheckTargets(*m_product, [&](const std::string& place, const std::wstring& reason) { m_json.Fail(place, reason); });
    ReadSetupTypes(root);
    ReadRegistrySets(root);
    ReadShellObjects(root);
    ReadMedia(root);
    return std::move(m_product);
}

void ProductReader::ReadHead(const JsonPlace& root)
{
    Product& product = *m_product;
    root.Text("$schema"); // for editors
    root.At("format").Number(1, 1);
    product.file = m_json.path();
    product.name = PlainName(root.At("name"));
    product.version = Version(root.At("version"));
    product.company = root.Text("company");
    product.guid = Identifier(root.At("guid"));
    product.installGuid = root.Has("installGuid") ? Identifier(root.At("installGuid")) : product.guid;
    product.scope = ScopeOf(root);
    const std::wstring payload = Folder(root, "payload");
    product.payloadFolder = JoinPath(FolderOf(product.file), payload);
    // Behind a wrong folder every file would seem to be missing.
    if (!payload.empty() || root.Text("payload").empty())
        m_payload.emplace(FolderOf(product.file), product.payloadFolder, m_pack);
    product.target = root.Has("target") ? Pattern(root.At("target")) : default_targets[product.scope == Scope::machine];
    root.Each("scripts", 16, [&](const JsonPlace& file) { product.scripts.push_back(Below(file)); });
    product.scripts.push_back(root.Has("script") ? Folder(root, "script") : L"setup.js");
    product.skin = Folder(root, "skin");
    product.maintenanceOption = static_cast<long>(root.Number("maintenanceOption", 1, 1, 8));
    if (product.maintenanceOption != 1 && product.maintenanceOption != 4 && product.maintenanceOption != 8)
        root.At("maintenanceOption").Fail(L"must be 1, 4 or 8");
    product.enabledServices = static_cast<long>(root.Number("enabledServices", 0, INT32_MIN, INT32_MAX));
    product.key = root.Text("key");
    root.Members("variables", most_of_a_kind, [&](const std::string& name, const JsonPlace& value) {
        if (name.empty() || name.find_first_of("<>") != std::string::npos)
            value.Fail(L"a variable's name must not be empty or hold '<' or '>'");
        product.variables.emplace_back(ToWide(name), Noted(value, PatternKind::text, value.Text()));
    });
}

void ProductReader::ReadStrings(const JsonPlace& root)
{
    std::vector<WORD> languages;
    root.Each("languages", 256, [&](const JsonPlace& at) { languages.push_back(Language(at)); });
    if (!languages.empty())
        m_product->languages = languages;
    root.Members("strings", 256, [&](const std::string& language, const JsonPlace& table) {
        const auto number = static_cast<WORD>(atoi(language.c_str()));
        const auto& known = m_product->languages;
        if (std::to_string(number) != language || std::find(known.begin(), known.end(), number) == known.end())
            return table.Fail(L"is no language of the product");
        root.At("strings").Members(language.c_str(), 65536, [&](const std::string& id, const JsonPlace& text) {
            m_product->strings[number][Upper(ToWide(id))] = Noted(text, PatternKind::display, text.Text());
        });
    });
}

Audience ProductReader::ReadAudience(const JsonPlace& at)
{
    Audience audience;
    at.Each("languages", 256, [&](const JsonPlace& language) { audience.languages.push_back(Language(language)); });
    at.Each("systems", 64, [&](const JsonPlace& system) {
        const std::wstring name = system.Text();
        const auto* known = std::find_if(std::begin(system_names), std::end(system_names),
                                         [&](const SystemName& entry) { return name == entry.name; });
        if (known == std::end(system_names))
            system.Fail(L"unknown system \"" + name + L"\"");
        else
            audience.systems |= known->bit;
    });
    return audience;
}

std::wstring ProductReader::Folder(const JsonPlace& at, const char* key) const
{
    return at.Has(key) ? Below(at.At(key)) : std::wstring();
}

void ProductReader::ReadItems(const JsonPlace& at, Item& parent, int level)
{
    at.Each("features", most_features, [&](const JsonPlace& feature) {
        if (level > most_levels)
            return feature.Fail(L"features are nested deeper than " + Number(most_levels) + L" levels");
        if (++m_features > most_features)
            return feature.Fail(L"there are more than " + Number(most_features) + L" features");
        auto item = std::make_unique<Item>();
        item->parent = &parent;
        item->order = static_cast<short>(std::min<std::size_t>(parent.children.size() + 1, INT16_MAX));
        ReadItem(feature, *item, level);
        const std::wstring name = item->name;
        // A name that is wrong or missing is told already.
        if (!name.empty() && !parent.Add(std::move(item)))
            feature.Fail(L"a feature \"" + name + L"\" exists already");
    });
}

void ProductReader::ReadItem(const JsonPlace& at, Item& item, int level)
{
    at.Keys({"name", "displayName", "description", "longText", "miscText", "texts", "visible", "required", "selected",
             "target", "order", "flags", "status", "key", "languages", "systems", "files", "features"});
    item.place = at.place();
    item.name = PlainName(at.At("name"));
    item.displayName = Pattern(at, "displayName", PatternKind::display);
    item.description = Pattern(at, "description", PatternKind::display);
    item.longText = Pattern(at, "longText", PatternKind::display);
    item.miscText = Pattern(at, "miscText", PatternKind::display);
    at.Members("texts", item.texts.size(), [&](const std::string& number, const JsonPlace& text) {
        const int n = atoi(number.c_str());
        if (n < first_item_text || n > last_item_text || std::to_string(n) != number)
            return text.Fail(L"only texts 16 to 23 exist");
        item.texts[static_cast<std::size_t>(n - first_item_text)] = text.Text();
    });
    item.visible = at.Truth("visible", true);
    item.required = at.Truth("required", false);
    item.selected = at.Truth("selected", true) || item.required;
    if (at.Has("target"))
        item.target = Pattern(at.At("target"));
    item.order = static_cast<short>(at.Number("order", item.order, 0, INT16_MAX));
    item.flags = static_cast<long>(at.Number("flags", 0, INT32_MIN, INT32_MAX));
    item.status = static_cast<long>(at.Number("status", 4, INT32_MIN, INT32_MAX));
    item.key = at.Text("key");
    item.audience = ReadAudience(at);
    at.Each("files", most_of_a_kind, [&](const JsonPlace& group) {
        FileGroup made = ReadGroup(group);
        if (!made.name.empty() && std::any_of(item.groups.begin(), item.groups.end(),
                                              [&](const FileGroup& other) { return SameText(other.name, made.name); }))
            group.Fail(L"a file group \"" + made.name + L"\" exists already");
        item.groups.push_back(std::move(made));
    });
    ReadItems(at, item, level + 1);
}

FileGroup ProductReader::ReadGroup(const JsonPlace& at)
{
    at.Keys({"name", "target", "languages", "systems", "flags", "files"});
    FileGroup group;
    group.place = at.place();
    group.name = PlainName(at.At("name"));
    group.target = Folder(at, "target");
    group.audience = ReadAudience(at);
    group.flags = Flags(at, 0);
    at.At("files");
    uint32_t entry = 0;
    at.Each("files", most_entries, [&](const JsonPlace& file) {
        const std::size_t before = group.files.size();
        ReadFile(file, group);
        for (std::size_t i = before; i < group.files.size(); ++i)
            group.files[i].entry = entry;
        ++entry;
    });
    return group;
}

void ProductReader::ReadFile(const JsonPlace& at, FileGroup& group)
{
    if (++m_entries > most_entries)
        return at.Fail(L"there are more than " + Number(most_entries) + L" file entries");
    FileEntry entry;
    entry.flags = group.flags;
    if (at.IsText()) {
        entry.path = at.Name(longest_path);
    } else {
        at.Keys({"path", "recurse", "name", "target", "size", "version", "language", "flags"});
        entry.path = at.At("path").Name(longest_path);
        entry.recurse = at.Truth("recurse", false);
        entry.name = Folder(at, "name");
        entry.target = Folder(at, "target");
        if (at.Has("size"))
            entry.size = static_cast<uint64_t>(at.At("size").Number(0, largest_payload));
        if (at.Has("version"))
            entry.version = Version(at.At("version"));
        if (at.Has("language"))
            entry.language = Language(at.At("language"));
        entry.flags = Flags(at, group.flags);
    }
    if (entry.path.empty())
        return;
    if (const std::wstring fault = PathFault(entry.path, true); !fault.empty())
        return at.Fail(L"the path \"" + entry.path + L"\" " + fault);
    const bool pattern = entry.path.find_first_of(L"*?") != std::wstring::npos;
    if (pattern ? !entry.name.empty() || entry.size.has_value() : entry.recurse)
        return at.Fail(pattern ? L"a pattern has no name and no size" : L"only a pattern can be recursive");
    if (!m_payload)
        return;
    const std::size_t before = group.files.size();
    const std::wstring problem = m_payload->Find(entry, before + most_files - m_files, group.files);
    if (!problem.empty())
        return at.Fail(problem);
    m_files += group.files.size() - before;
    if (m_files > most_files)
        at.Fail(L"there are more than " + Number(most_files) + L" files");
}

void ProductReader::ReadSupport(const JsonPlace& root)
{
    // These lie in the setup folder in any case.
    if (m_payload)
        m_payload.emplace(FolderOf(m_product->file), m_product->payloadFolder, nullptr);
    Item& support = m_product->support;
    root.Each("support", most_of_a_kind, [&](const JsonPlace& at) {
        auto item = std::make_unique<Item>();
        item->parent = &support;
        item->order = static_cast<short>(support.children.size() + 1);
        item->groups.push_back(ReadGroup(at));
        const std::wstring name = item->groups.front().name;
        item->name = name;
        if (!name.empty() && !support.Add(std::move(item)))
            at.Fail(L"a support group \"" + name + L"\" exists already");
    });
}

void ProductReader::ReadSetupTypes(const JsonPlace& root)
{
    root.Each("setupTypes", most_of_a_kind, [&](const JsonPlace& at) {
        at.Keys({"name", "displayName", "description", "features"});
        SetupType type{at.At("name").Name(),
                       Pattern(at, "displayName", PatternKind::display),
                       Pattern(at, "description", PatternKind::display),
                       {}};
        if (std::any_of(m_product->setupTypes.begin(), m_product->setupTypes.end(),
                        [&](const SetupType& other) { return SameText(other.name, type.name); }))
            at.Fail(L"a setup type \"" + type.name + L"\" exists already");
        at.At("features");
        at.Each("features", most_features, [&](const JsonPlace& feature) {
            type.features.push_back(feature.Text() == L"*" ? L"*" : FeaturePath(feature));
        });
        m_product->setupTypes.push_back(std::move(type));
    });
}

std::wstring ProductReader::FeaturePath(const JsonPlace& at) const
{
    std::wstring path = at.Name(longest_path);
    if (!path.empty() && !m_product->Feature(path))
        at.Fail(L"there is no feature \"" + path + L"\"");
    return path;
}

void ProductReader::ReadRegistrySets(const JsonPlace& root)
{
    root.Each("registrySets", most_of_a_kind, [&](const JsonPlace& at) {
        at.Keys({"name", "feature", "keys"});
        RegistrySet set{at.At("name").Name(), at.Has("feature") ? FeaturePath(at.At("feature")) : L"", {}};
        at.Each("keys", most_of_a_kind, [&](const JsonPlace& key) {
            key.Keys({"root", "key", "values"});
            const JsonPlace name = key.At("key");
            RegistryKey made{key.At("root").Text(), Noted(name, PatternKind::text, name.Name(longest_path)), {}};
            if (made.root != L"HKCU" && made.root != L"HKLM" && made.root != L"HKCR")
                key.At("root").Fail(L"must be HKCU, HKLM or HKCR");
            key.Each("values", most_of_a_kind,
                     [&](const JsonPlace& value) { made.values.push_back(ReadRegistryValue(value)); });
            set.keys.push_back(std::move(made));
        });
        m_product->registrySets.push_back(std::move(set));
    });
}

RegistryValue ProductReader::ReadRegistryValue(const JsonPlace& at)
{
    at.Keys({"name", "type", "data"});
    RegistryValue value;
    value.name = Pattern(at, "name", PatternKind::text);
    const std::wstring type = at.At("type").Text();
    const JsonPlace data = at.At("data");
    if (type == L"text" || type == L"expand") {
        value.type = type == L"text" ? REG_SZ : REG_EXPAND_SZ;
        value.text = Noted(data, PatternKind::text, data.Text());
    } else if (type == L"number") {
        value.type = REG_DWORD;
        value.number = static_cast<DWORD>(data.Number(0, UINT32_MAX));
    } else if (type == L"binary") {
        value.type = REG_BINARY;
        value.bytes = Bytes(data);
    } else if (type == L"texts") {
        value.type = REG_MULTI_SZ;
        at.Each("data", most_of_a_kind, [&](const JsonPlace& line) {
            value.text += Noted(line, PatternKind::text, line.Name(longest_text)) + L'\n';
        });
    } else {
        at.At("type").Fail(L"must be text, expand, number, binary or texts");
    }
    return value;
}

void ProductReader::ReadShellObjects(const JsonPlace& root)
{
    root.Each("shellObjects", most_of_a_kind, [&](const JsonPlace& at) {
        at.Keys({"name", "folder", "target", "arguments", "workingDir", "icon", "iconIndex", "feature"});
        ShellObject object;
        object.name = Noted(at.At("name"), PatternKind::display, at.At("name").Name());
        if (object.name.find_first_of(L"\\/") != std::wstring::npos)
            at.At("name").Fail(L"must not hold a slash");
        if (const std::wstring fault = PathFault(object.name + L".lnk");
            !fault.empty() && object.name.find(L'<') == std::wstring::npos)
            at.At("name").Fail(L"\"" + object.name + L"\" " + fault);
        object.folder = Folder(at, "folder");
        object.target = Pattern(at.At("target"));
        object.arguments = Pattern(at, "arguments", PatternKind::text);
        object.workingDir = Pattern(at, "workingDir", PatternKind::path);
        object.icon = Pattern(at, "icon", PatternKind::path);
        object.iconIndex = static_cast<long>(at.Number("iconIndex", 0, INT16_MIN, INT16_MAX));
        object.feature = at.Has("feature") ? FeaturePath(at.At("feature")) : L"";
        m_product->shellObjects.push_back(std::move(object));
    });
}

void ProductReader::ReadMedia(const JsonPlace& root)
{
    if (!root.Has("media"))
        return;
    const JsonPlace media = root.At("media");
    media.Keys({"texts", "number", "truths"});
    MediaInfo& info = m_product->media;
    info.number = static_cast<long>(media.Number("number", 0, INT32_MIN, INT32_MAX));
    std::size_t i = 0;
    // 255 characters fit the smallest field that texts are handed on in.
    media.Each("texts", info.texts.size(), [&](const JsonPlace& text) { info.texts[i++] = text.Text(255); });
    i = 0;
    media.Each("truths", info.truths.size(), [&](const JsonPlace& truth) { info.truths[i++] = truth.Truth(); });
}

std::unique_ptr<Item> FirstDisk()
{
    auto disk = std::make_unique<Item>();
    disk->name = L"Disk<1>";
    disk->pseudo = true;
    disk->visible = false;
    return disk;
}

} // namespace

ProductIdentity ReadIdentity(const std::wstring& file)
{
    const JsonFile json(file, JsonFile::Faults::thrown);
    const JsonPlace root = json.Root();
    return {Identifier(root.At(root.Has("installGuid") ? "installGuid" : "guid")), ScopeOf(root)};
}

std::unique_ptr<Product> ReadProduct(const std::wstring& file, const Pack* pack)
{
    return ReadProduct(JsonFile(file, JsonFile::Faults::thrown), nullptr, pack);
}

std::unique_ptr<Product> ReadProduct(const JsonFile& json, std::vector<PatternUse>* uses, const Pack* pack)
{
    auto product = ProductReader(json, uses, pack).Read();
    product->data.name = L"<Data>";
    product->support.name = L"<Support>";
    for (Item* root : {&product->data, &product->support})
        root->Add(FirstDisk(), true);
    return product;
}

} // namespace vh::engine
