#include "packed_setup.h"

#include <array>

#include <objbase.h>

#include "console.h"
#include "kept_host.h"
#include "scriptdata/unique.h"
#include "setup_run.h"
#include "text.h"

namespace host {

namespace {

using vh::engine::JoinPath;

std::wstring NewIdentifier()
{
    GUID id{};
    std::array<wchar_t, 39> text{};
    if (FAILED(CoCreateGuid(&id)) || !StringFromGUID2(id, text.data(), static_cast<int>(text.size())))
        throw vh::engine::engine_error(E_FAIL, {}, L"the system gives no identifier");
    return text.data();
}

} // namespace

PackedSetup::PackedSetup(std::shared_ptr<const vh::engine::Pack> pack)
    : m_pack(std::move(pack)), m_folder(NewIdentifier())
{
    vh::engine::MakeFolders(SetupFolder());
    for (const vh::engine::PackedFile& file : m_pack->Files())
        if (file.role != vh::engine::PackRole::payload)
            m_pack->Unpack(file, JoinPath(file.role == vh::engine::PackRole::library ? LibraryFolder() : SetupFolder(),
                                          file.path));
    m_pack->UnpackProgram(JoinPath(LibraryFolder(), kept_program));
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS);
    AddDllDirectory(LibraryFolder().c_str());
    AddDllDirectory(SetupFolder().c_str());
}

std::wstring PackedSetup::LibraryFolder() const { return JoinPath(m_folder.path(), L"host"); }
std::wstring PackedSetup::SetupFolder() const { return JoinPath(m_folder.path(), L"setup"); }

ExitCode RunPackedSetup(const std::wstring& file, const RunOptions& options)
{
    const std::pair<const wchar_t*, bool> flags[] = {{L" --silent", options.silent},
                                                     {L" --repair", options.repair},
                                                     {L" --notes", options.notes},
                                                     {L" --main-window", options.main_window},
                                                     {L" --show-log", options.show_log},
                                                     {L" --verify", options.verify},
                                                     {L" --allow-downgrade", options.allow_downgrade}};
    const std::pair<const wchar_t*, const std::wstring&> texts[] = {{L" --data ", options.data_folder},
                                                                    {L" --registry-root ", options.registry_root},
                                                                    {L" --target ", options.target},
                                                                    {L" --trace ", options.trace_file},
                                                                    {L" --log ", options.log_file}};
    std::wstring line = Quoted(file);
    for (const auto& [word, given] : flags)
        line += given ? word : L"";
    for (const auto& [word, text] : texts)
        line += text.empty() ? std::wstring() : word + Quoted(text);
    if (options.language)
        line += L" --language " + std::to_wstring(options.language);
    for (const std::wstring& script : options.scripts)
        line += L" --script " + Quoted(script);
    for (const auto& [name, value] : options.variables)
        line += L" --var " + Quoted(name + L"=" + value);
    if (options.plan != PlanForm::none)
        line += options.plan == PlanForm::json ? L" --plan=json" : L" --plan";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started)) {
        Complain(file + L": can't be started: " + SystemText(GetLastError()));
        return exit_setup;
    }
    const vh::unique_handle thread(started.hThread);
    const vh::unique_handle process(started.hProcess);
    DWORD code = exit_setup;
    WaitForSingleObject(process.get(), INFINITE);
    GetExitCodeProcess(process.get(), &code);
    return static_cast<ExitCode>(code);
}

} // namespace host
