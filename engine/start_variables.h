// The variables that every run starts with, before those of the product file and of the host.
#pragma once

#include <string>

#include <shlobj.h>

#include "core.h"

namespace vh::engine {

// A folder of the system or the user by its number.
std::wstring SystemFolder(int folder);

struct StartVariable {
    const wchar_t* name;
    std::wstring (*value)(const Core& core);
};

// `OfMachine` is the folder for a product of the machine.
template <int Folder, int OfMachine = Folder>
std::wstring FolderValue([[maybe_unused]] const Core& core)
{
    if constexpr (Folder != OfMachine)
        if (core.product->product->scope == Scope::machine)
            return SystemFolder(OfMachine);
    return SystemFolder(Folder);
}
template <std::wstring Product::*Member>
std::wstring ProductValue(const Core& core)
{
    return core.product->product.get()->*Member;
}
template <std::wstring Core::*Member>
std::wstring CoreValue(const Core& core)
{
    return core.*Member;
}
inline std::wstring SetupFolderValue(const Core& core) { return core.options.setupFolder; }

// TARGETDIR comes behind those of the host, which may give it.
inline constexpr StartVariable start_variables[] = {
    {L"SRCDIR", SetupFolderValue},
    {L"ENGINEDIR", SetupFolderValue},
    {L"ENGINECOMMONDIR", SetupFolderValue},
    {L"SUPPORTDIR", CoreValue<&Core::supportDir>},
    {L"SHAREDSUPPORTDIR", CoreValue<&Core::supportDir>},
    {L"TEMPDIR", [](const Core&) { return TempFolder(); }},
    {L"PRODUCT_NAME", ProductValue<&Product::name>},
    {L"PRODUCT_VERSION", ProductValue<&Product::version>},
    {L"PRODUCT_GUID", ProductValue<&Product::guid>},
    {L"INSTALL_GUID", ProductValue<&Product::installGuid>},
    {L"COMPANY_NAME", ProductValue<&Product::company>},
    {L"LANGUAGE", [](const Core& core) { return Number(core.language); }},
    {L"WINDIR", FolderValue<CSIDL_WINDOWS>},
    {L"SYSTEMDIR", FolderValue<CSIDL_SYSTEM>},
    {L"PROGRAMFILES", FolderValue<CSIDL_PROGRAM_FILES>},
    {L"COMMONFILES", FolderValue<CSIDL_PROGRAM_FILES_COMMON>},
    {L"APPDATA", FolderValue<CSIDL_APPDATA>},
    {L"LOCALAPPDATA", FolderValue<CSIDL_LOCAL_APPDATA>},
    {L"COMMONAPPDATA", FolderValue<CSIDL_COMMON_APPDATA>},
    {L"DESKTOP", FolderValue<CSIDL_DESKTOPDIRECTORY, CSIDL_COMMON_DESKTOPDIRECTORY>},
    {L"PROGRAMS", FolderValue<CSIDL_PROGRAMS, CSIDL_COMMON_PROGRAMS>},
    // Set once it is known what is installed already.
    {L"INSTALLED_VERSION", CoreValue<&Core::installedVersion>},
    {L"MAINTENANCE_MODE", [](const Core&) { return std::wstring(); }},
    {L"PERSONAL", FolderValue<CSIDL_PERSONAL>},
};

} // namespace vh::engine
