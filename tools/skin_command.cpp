#include "skin_command.h"

#include <algorithm>
#include <filesystem>
#include <windows.h>

#include "exit_codes.h"
#include "file_bytes.h"
#include "host/console.h"
#include "host/text.h"
#include "skin/skin_container.h"
#include "skin/skin_picture.h"
#include "skin_check.h"
#include "skin_source.h"

namespace tools {

namespace {

// True when there are none.
bool ReportFaults(const std::wstring& path, const SkinSource& skin)
{
    for (const std::string& fault : skin.faults)
        host::Complain(path + L": " + host::Wide(fault));
    return skin.faults.empty();
}

bool IsThere(const std::wstring& path)
{
    return GetFileAttributesW(host::LongPath(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

bool IsIn(const std::wstring& folder, const std::wstring& file)
{
    std::error_code ignored;
    return std::filesystem::equivalent(std::filesystem::path(file).parent_path(), folder, ignored);
}

std::string_view Text(const std::vector<std::byte>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

int PackSkin(const std::wstring& folder, const std::wstring& file)
{
    // It could be one of the files, and would be one the next time.
    if (IsIn(folder, file)) {
        host::Complain(file + L": lies in the folder that is packed");
        return exit_file;
    }
    const SkinSource skin = ReadSkin(folder);
    if (!ReportFaults(folder, skin))
        return exit_found;
    SaveFile(file, Text(ContainerOf(skin)));
    return exit_done;
}

// Nothing is written before each name is known to be good.
int UnpackSkin(const std::wstring& file, const std::wstring& folder, bool overwrite)
{
    const SkinSource skin = ReadSkin(file);
    if (!ReportFaults(file, skin))
        return exit_found;
    if (!CreateDirectoryW(host::LongPath(folder).c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS)
        ThrowFor(folder, GetLastError());
    bool blocked = false;
    for (const SkinEntry& entry : skin.entries)
        if (const std::wstring path = host::Join(folder, host::Wide(entry.name)); !overwrite && IsThere(path)) {
            host::Complain(path + L": is there already; --overwrite replaces it");
            blocked = true;
        }
    if (blocked)
        return exit_file;
    for (const SkinEntry& entry : skin.entries)
        SaveFile(host::Join(folder, host::Wide(entry.name)), Text(entry.bytes), overwrite);
    return exit_done;
}

int ListSkin(const std::wstring& file)
{
    const SkinSource skin = ReadSkin(file);
    for (const SkinEntry& entry : skin.entries) {
        std::wstring line = std::to_wstring(entry.bytes.size()) + L"\t";
        if (SetupImage picture; vh::LoadSkinPicture(picture, entry.name, entry.bytes))
            line += std::to_wstring(picture.size().cx) + L"x" + std::to_wstring(picture.size().cy);
        host::Say(line + L"\t" + host::Wide(ShownName(entry.name)));
    }
    return ReportFaults(file, skin) ? exit_done : exit_found;
}

int CheckSkinFiles(const std::wstring& path)
{
    const std::vector<std::string> findings = CheckSkin(ReadSkin(path));
    for (const std::string& finding : findings)
        host::Say(host::Wide(finding));
    return findings.empty() ? exit_done : exit_found;
}

int ShowSkin(const std::wstring& path, const std::wstring& folder, const PreviewOptions& options)
{
    const SkinSource skin = ReadSkin(path);
    if (!ReportFaults(path, skin))
        return exit_found;
    if (PreviewSkin(skin, folder, options))
        return exit_done;
    host::Complain(path + L": the library does not load this skin");
    return exit_found;
}

} // namespace tools
