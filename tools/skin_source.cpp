#include "skin_source.h"

#include <algorithm>
#include <array>
#include <windows.h>

#include "file_bytes.h"
#include "host/text.h"
#include "skin/skin_container.h"
#include "skin/skin_profile.h"

namespace tools {

namespace {

constexpr std::size_t longest_name = 255;
// Names that Windows keeps for devices, with any extension; "#" stands for a digit but 0.
constexpr std::array<std::string_view, 8> device_names = {"CON",  "PRN",  "AUX",    "NUL",
                                                          "COM#", "LPT#", "CONIN$", "CONOUT$"};

bool IsDevice(std::string_view name)
{
    std::string stem(name.substr(0, name.find('.')));
    stem.resize(stem.find_last_not_of(' ') + 1);
    if (stem.size() == 4 && stem[3] >= '1' && stem[3] <= '9')
        stem[3] = '#';
    return std::ranges::any_of(device_names, [&](std::string_view one) { return vh::skin_profile::Same(one, stem); });
}

void ReadFolder(const std::wstring& folder, SkinSource& skin)
{
    WIN32_FIND_DATAW found{};
    const vh::unique_find search(FindFirstFileW(host::LongPath(host::Join(folder, L"*")).c_str(), &found));
    if (!search) {
        const DWORD code = GetLastError();
        ThrowFor(folder, code);
    }
    do {
        const std::wstring name = found.cFileName;
        if (name == L"." || name == L"..")
            continue;
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            skin.faults.push_back(host::Utf8(name) + ": a skin has no folders in its folder");
        else
            skin.entries.push_back({host::Utf8(name), ReadBytes(host::Join(folder, name))});
    } while (FindNextFileW(search.get(), &found));
    std::ranges::sort(skin.entries, [](const SkinEntry& a, const SkinEntry& b) {
        const bool text = vh::IsSkinText(a.name);
        return text != vh::IsSkinText(b.name) ? text : a.name < b.name;
    });
}

} // namespace

const SkinEntry* SkinSource::Text() const
{
    const auto found = std::ranges::find_if(entries, [](const SkinEntry& one) { return vh::IsSkinText(one.name); });
    return found == entries.end() ? nullptr : &*found;
}

const SkinEntry* SkinSource::Find(const std::string& name) const
{
    const auto found = std::ranges::find(entries, name, &SkinEntry::name);
    return found == entries.end() ? nullptr : &*found;
}

SkinSource ReadSkin(const std::wstring& path)
{
    SkinSource skin;
    const DWORD kind = GetFileAttributesW(host::LongPath(path).c_str());
    if (kind != INVALID_FILE_ATTRIBUTES && kind & FILE_ATTRIBUTE_DIRECTORY) {
        ReadFolder(path, skin);
    } else {
        std::vector<std::byte> bytes = ReadBytes(path);
        vh::DescrambleSkin(bytes);
        if (!vh::ForEachSkinEntry(bytes, [&](std::string_view name, std::span<const std::byte> content) {
                skin.entries.push_back({std::string(name), {content.begin(), content.end()}});
            }))
            skin.faults.emplace_back("the file ends inside an entry, or is no skin");
    }
    for (auto one = skin.entries.begin(); one != skin.entries.end(); ++one) {
        if (const std::string fault = FaultOfName(one->name); !fault.empty())
            skin.faults.push_back(ShownName(one->name) + ": " + fault);
        if (std::any_of(skin.entries.begin(), one,
                        [&](const SkinEntry& other) { return vh::skin_profile::Same(other.name, one->name); }))
            skin.faults.push_back(ShownName(one->name) + ": a name that two entries have");
    }
    if (!skin.Text())
        skin.faults.push_back("there is no " + ShownName(vh::skin_text_name));
    return skin;
}

std::vector<std::byte> ContainerOf(const SkinSource& skin)
{
    std::vector<std::byte> file;
    for (const SkinEntry& entry : skin.entries)
        vh::AddSkinEntry(file, entry.name, entry.bytes);
    vh::ScrambleSkin(file);
    return file;
}

std::string ShownName(std::string_view name)
{
    std::string shown(1, '"');
    shown.append(name).push_back('"');
    std::ranges::replace_if(
        shown, [](char c) { return c < ' ' || c > '~'; }, '?');
    return shown;
}

std::string FaultOfName(std::string_view name)
{
    constexpr std::string_view refused = "\\/:*?\"<>|";
    if (name.empty() || name.size() > longest_name)
        return "a name has 1 to " + std::to_string(longest_name) + " characters";
    if (std::ranges::any_of(name, [&](char c) { return c < ' ' || c > '~' || refused.find(c) != refused.npos; }))
        return "a name is plain ASCII without " + std::string(refused);
    if (name.back() == '.' || name.back() == ' ' || name.front() == ' ')
        return "a name begins and ends with no blank, and ends with no point";
    return IsDevice(name) ? "a name that Windows keeps for a device" : std::string();
}

} // namespace tools
