#include "item_files.h"

#include <algorithm>

#include "costs.h"
#include "item.h"
#include "md5.h"
#include "pack.h"

namespace vh::engine {

namespace {

constexpr uint64_t low_half = 0x7FFFFFFF;

struct Subject {
    const Core& core;
    const Item& item;
    const FileGroup& group;
    const ProductFile* file; // null for the group itself
};

variant Whole(uint64_t number) { return variant(static_cast<long>(number & low_half)); }
variant TextValue(std::wstring_view text) { return variant(text); }

uint64_t SizeOf(const FileGroup& group)
{
    uint64_t size = 0;
    for (const ProductFile& file : group.files)
        size += file.size;
    return size;
}

uint64_t SizeOf(const Subject& about) { return about.file ? about.file->size : SizeOf(about.group); }

// The file's last write in the packed form of a directory entry, local time: date above, time below.
unsigned long PackedTime(const Subject& about)
{
    if (!about.file)
        return 0;
    const FILETIME written{static_cast<DWORD>(about.file->time & 0xFFFFFFFF),
                           static_cast<DWORD>(about.file->time >> 32)};
    FILETIME local{};
    WORD date = 0, time = 0;
    FileTimeToLocalFileTime(&written, &local);
    FileTimeToDosDateTime(&local, &date, &time);
    return static_cast<unsigned long>(date) << 16 | time;
}

variant Date(const Subject& about) { return variant(static_cast<long>(PackedTime(about) >> 16)); }

uint64_t SystemsOf(const Subject& about)
{
    return about.group.audience.systems ? about.group.audience.systems : about.item.audience.systems;
}

// Language numbers in groups of five characters.
std::wstring LanguagesOf(const Subject& about)
{
    std::vector<WORD> languages =
        about.group.audience.languages.empty() ? about.item.audience.languages : about.group.audience.languages;
    if (about.file && about.file->language)
        languages = {about.file->language};
    std::wstring text;
    for (WORD language : languages) {
        const std::wstring number = Number(language);
        text += std::wstring(5 - number.size(), L'0') + number;
    }
    return text;
}

std::wstring VersionOf(const Subject& about)
{
    if (!about.file)
        return {};
    return about.file->version.empty() && !about.file->packed ? FileVersion(about.file->source) : about.file->version;
}

std::wstring TargetFolder(const Subject& about)
{
    return JoinPath(JoinPath(TargetOf(about.core, about.item), about.group.target),
                    about.file ? FolderOf(about.file->path) : L"");
}

std::wstring SourceFolder(const Subject& about)
{
    const ProductFile* file = about.file                  ? about.file
                              : about.group.files.empty() ? nullptr
                                                          : &about.group.files.front();
    return file ? FolderOf(file->source) : std::wstring();
}

bool Has(const Subject& about, FileFlags flag) { return (about.file ? about.file->flags : about.group.flags) & flag; }

struct Info {
    long code;
    variant (*value)(const Subject& about);
};

// Codes up to 13 but 10 are asked for files only; the others answer for groups too.
const Info infos[] = {
    {FileFactSizeLow, [](const Subject& about) { return Whole(SizeOf(about)); }},
    {FileFactSizeHigh, [](const Subject& about) { return Whole(SizeOf(about) >> 31); }},
    {FileFactDate, Date},
    {FileFactTime, [](const Subject& about) { return variant(static_cast<long>(PackedTime(about) & 0xFFFF)); }},
    {FileFactAttributes,
     [](const Subject& about) { return variant(static_cast<long>(about.file ? about.file->attributes : 0)); }},
    {FileFactVersion, [](const Subject& about) { return TextValue(VersionOf(about)); }},
    {FileFactLanguage,
     [](const Subject& about) {
         return TextValue(about.file && about.file->language ? Number(about.file->language) : L"");
     }},
    {FileFactSource, [](const Subject& about) { return TextValue(about.file ? about.file->source : L""); }},
    {FileFactLongDate, Date},
    {FileFactSystems, [](const Subject& about) { return variant(static_cast<long>(SystemsOf(about))); }},
    {FileFactSignature,
     [](const Subject& about) { return TextValue(about.file ? Md5OfFile(about.file->source) : L""); }},
    {FileFactPlainSizeLow, [](const Subject& about) { return Whole(SizeOf(about)); }},
    {FileFactPlainSizeHigh, [](const Subject& about) { return Whole(SizeOf(about) >> 31); }},
    {FileFactGroupFiles, [](const Subject& about) { return Whole(about.group.files.size()); }},
    {FileFactGroup, [](const Subject& about) { return TextValue(about.group.name); }},
    {FileFactTargetFolder, [](const Subject& about) { return TextValue(TargetFolder(about)); }},
    {FileFactSourceFolder, [](const Subject& about) { return TextValue(SourceFolder(about)); }},
    {FileFactGroupSizeLow, [](const Subject& about) { return Whole(SizeOf(about.group)); }},
    {FileFactItem, [](const Subject& about) { return TextValue(about.item.Path()); }},
    {FileFactGroupSizeHigh, [](const Subject& about) { return Whole(SizeOf(about.group) >> 31); }},
    {FileFactShared, [](const Subject& about) { return variant(Has(about, file_shared)); }},
    {FileFactPermanent, [](const Subject& about) { return variant(Has(about, file_permanent)); }},
    {FileFactNeverOverwritten, [](const Subject& about) { return variant(Has(about, file_never_overwrite)); }},
    {FileFactLanguages, [](const Subject& about) { return TextValue(LanguagesOf(about)); }},
    {FileFactSystemBits,
     [](const Subject& about) { return TextValue(Number(static_cast<int64_t>(SystemsOf(about)))); }},
};

} // namespace

const FileGroup* FindGroup(const Item& item, std::wstring_view name)
{
    const auto found = std::find_if(item.groups.begin(), item.groups.end(),
                                    [&](const FileGroup& group) { return SameText(group.name, name); });
    return found == item.groups.end() ? nullptr : &*found;
}

std::vector<std::wstring> FilesOf(const Item& item)
{
    std::vector<std::wstring> names;
    for (const FileGroup& group : item.groups)
        for (const ProductFile& file : group.files)
            names.push_back(JoinPath(group.name, file.path));
    return names;
}

std::vector<std::wstring> FilesIn(const FileGroup& group, bool foldersToo)
{
    std::vector<std::wstring> names;
    for (const ProductFile& file : group.files)
        if (foldersToo || file.path.find(L'\\') == std::wstring::npos)
            names.push_back(file.path);
    return names;
}

HRESULT GiveFileInfo(const Core& core, const Item& item, const FileGroup* group, std::wstring_view file, long code,
                     VARIANT* value)
{
    if (!value)
        return E_POINTER;
    if (!group)
        return no_such_item;
    Subject about{core, item, *group, nullptr};
    if (!file.empty()) {
        const auto found = std::find_if(group->files.begin(), group->files.end(),
                                        [&](const ProductFile& entry) { return SameText(entry.path, file); });
        if (found == group->files.end())
            return no_such_item;
        about.file = &*found;
    }
    const auto* info =
        std::find_if(std::begin(infos), std::end(infos), [&](const Info& entry) { return entry.code == code; });
    if (info == std::end(infos))
        return E_INVALIDARG;
    info->value(about).detach(value);
    return S_OK;
}

} // namespace vh::engine
