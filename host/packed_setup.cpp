#include "packed_setup.h"

#include <windows.h>

#include "kept_host.h"

namespace host {

using vh::engine::JoinPath;

void KeepToSystemLibraries() { SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS); }

PackedSetup::PackedSetup(std::shared_ptr<const vh::engine::Pack> pack)
    : m_pack(std::move(pack)), m_folder(vh::engine::NewIdentifier())
{
    vh::engine::MakeFolders(SetupFolder());
    for (const vh::engine::PackedFile& file : m_pack->Files())
        if (file.role != vh::engine::PackRole::payload)
            m_pack->Unpack(file, JoinPath(file.role == vh::engine::PackRole::library ? LibraryFolder() : SetupFolder(),
                                          file.path));
    m_pack->UnpackProgram(JoinPath(LibraryFolder(), kept_program));
    AddDllDirectory(LibraryFolder().c_str());
    AddDllDirectory(SetupFolder().c_str());
}

std::wstring PackedSetup::LibraryFolder() const { return JoinPath(m_folder.path(), L"host"); }
std::wstring PackedSetup::SetupFolder() const { return JoinPath(m_folder.path(), L"setup"); }

} // namespace host
