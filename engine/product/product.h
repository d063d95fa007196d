// A product, or another data set, as its file describes it, with the state that a run gives it.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "../../Src/inc/engine_features.h"
#include "../../Src/inc/script_values.h"
#include "../../scriptdata/com_ptr.h"
#include "../files.h"

namespace vh::engine {

class Pack;
struct PackedFile;

// Operating systems, as bits of a filter.
struct SystemName {
    const wchar_t* name;
    uint64_t bit;
};
inline constexpr SystemName system_names[] = {
    {L"windows-7", SystemWindows7},   {L"windows-8", SystemWindows8},   {L"windows-8.1", SystemWindows8_1},
    {L"windows-10", SystemWindows10}, {L"windows-11", SystemWindows11}, {L"server", SystemServer},
};

enum FileFlags : unsigned {
    file_shared = 1,
    file_permanent = 2,
    file_never_overwrite = 4,
    file_always_overwrite = 8,
    file_keep_changed = 16, // what somebody changed since it was placed stays
};
struct FileFlagName {
    const wchar_t* name;
    FileFlags flag;
};
inline constexpr FileFlagName file_flag_names[] = {
    {L"shared", file_shared},
    {L"permanent", file_permanent},
    {L"never-overwrite", file_never_overwrite},
    {L"always-overwrite", file_always_overwrite},
    {L"keep-changed", file_keep_changed},
};

// One file of the payload.
struct ProductFile {
    std::wstring source; // full path; of a file in a pack, that of the pack with the path in it
    const PackedFile* packed = nullptr;
    std::wstring path; // below the group's target
    uint64_t size = 0;
    uint64_t time = 0;
    DWORD attributes = 0;
    std::wstring version; // as the product file gives it; empty leaves it to the file's version resource
    WORD language = 0;
    unsigned flags = 0;
    uint32_t entry = 0; // which of its group's entries brought it
};

// For whom a product is installed.
enum class Scope { user, machine };
inline constexpr const wchar_t* scope_names[] = {L"user", L"machine"};

// Which languages and systems something is for; an empty list and no bit stand for all.
struct Audience {
    std::vector<WORD> languages;
    uint64_t systems = 0;
};

struct FileGroup {
    std::wstring name;
    std::wstring target; // below the item's target
    Audience audience;
    unsigned flags = 0;
    std::string place; // in the product file, as a JSON pointer
    std::vector<ProductFile> files;
};

// Costs that a script adds to an item.
struct ExtraCost {
    std::wstring path;
    uint64_t bytes = 0;
};

struct Listener {
    com_ptr<ISetupBasicFeatureStateEvents> view;
    LONG64 viewItem = 0;
};

// Numbers of the further texts, as attributes know them.
inline constexpr int first_item_text = 16;
inline constexpr int last_item_text = 23;

// A feature, which is a component of its data set as well.
struct Item {
    std::wstring name;
    std::string place; // in the product file, as a JSON pointer
    std::wstring displayName;
    std::wstring description;
    std::wstring longText;
    std::wstring miscText;
    std::array<std::wstring, last_item_text - first_item_text + 1> texts;
    bool visible = true;
    bool required = false;
    bool pseudo = false; // "Disk<1>": has no files and is moved never
    std::wstring target;
    short order = 0;
    long flags = 0;
    long status = 4;
    std::wstring key;
    Audience audience;
    std::vector<FileGroup> groups;

    Item* parent = nullptr;
    std::vector<std::unique_ptr<Item>> children;
    std::unordered_map<std::wstring, Item*> byName; // the children, under their names in upper case

    bool selected = true;
    bool installed = false; // its files stand in the target and need no second move
    std::vector<ExtraCost> costs;
    std::map<long, Listener> listeners;

    // False when there is a child of that name; the first one may be put before the others.
    bool Add(std::unique_ptr<Item> child, bool first = false);
    Item* Find(std::wstring_view child) const;
    // Backslashes between the names; without the root's name.
    std::wstring Path() const;
};

struct SetupType {
    std::wstring name;
    std::wstring displayName;
    std::wstring description;
    std::vector<std::wstring> features;
};

struct RegistryValue {
    std::wstring name;
    DWORD type = 0;
    std::wstring text; // texts of a list are separated by line feeds
    std::string bytes;
    DWORD number = 0;
};

struct RegistryKey {
    std::wstring root;
    std::wstring key;
    std::vector<RegistryValue> values;
};

struct RegistrySet {
    std::wstring name;
    std::wstring feature;
    std::vector<RegistryKey> keys;
};

struct ShellObject {
    std::wstring name;
    std::wstring folder;
    std::wstring target;
    std::wstring arguments;
    std::wstring workingDir;
    std::wstring icon;
    long iconIndex = 0;
    std::wstring feature;
};

struct MediaInfo {
    std::array<std::wstring, 14> texts;
    long number = 0;
    std::array<bool, 5> truths{};
};

using StringTable = std::map<std::wstring, std::wstring>;

struct Product {
    std::wstring file;          // of the product file itself
    std::wstring payloadFolder; // full path
    std::wstring name;
    std::wstring version;
    std::wstring company;
    std::wstring guid;
    std::wstring installGuid;
    Scope scope = Scope::user;
    std::vector<WORD> languages{1033};
    std::map<WORD, StringTable> strings;
    std::wstring target;
    // Run in this order in one global scope; the last one is the setup's own.
    std::vector<std::wstring> scripts;
    std::wstring skin;
    long maintenanceOption = 1;
    long enabledServices = 0;
    std::wstring key;
    std::vector<std::pair<std::wstring, std::wstring>> variables;
    Item data;    // "<Data>": its children are the features
    Item support; // "<Support>": one child for each support group
    std::vector<SetupType> setupTypes;
    std::vector<RegistrySet> registrySets;
    std::vector<ShellObject> shellObjects;
    MediaInfo media;

    // An item by its path below "<Data>"; null when there is none.
    Item* Feature(std::wstring_view path) const;
};

// Reads and checks a product file and measures its payload. Throws engine_error.
// `pack`, which may be null and has to outlive the product, holds the payload.
std::unique_ptr<Product> ReadProduct(const std::wstring& file, const Pack* pack = nullptr);
// What a product file installs and for whom; nothing else of it is looked at.
struct ProductIdentity {
    std::wstring installGuid;
    Scope scope = Scope::user;
};
ProductIdentity ReadIdentity(const std::wstring& file);

} // namespace vh::engine
