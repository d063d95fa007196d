#include "process_snapshot.h"

#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

#include "../scriptdata/late_library.h"
#include "../scriptdata/unique.h"

namespace vh {

namespace {

constinit late_library ntdll(L"ntdll.dll");
constinit late_function<decltype(NtQueryInformationProcess)> query_process(ntdll, "NtQueryInformationProcess");

uint32_t ParentOf(uint32_t id)
{
    const unique_handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    // The last member holds the parent's id.
    struct {
        LONG_PTR members[5];
        ULONG_PTR parent;
    } facts{};
    if (!process || !query_process ||
        query_process(process.get(), ProcessBasicInformation, &facts, ULONG{sizeof(facts)}, nullptr) < 0)
        return 0;
    return static_cast<uint32_t>(facts.parent);
}

// Some systems list processes without their parents; then they are asked. The idle process has none.
void AddMissingParents(std::vector<ProcessEntry>& entries)
{
    for (ProcessEntry& entry : entries)
        if (entry.parent == 0 && entry.id != 0)
            entry.parent = ParentOf(entry.id);
}

} // namespace

std::optional<std::vector<ProcessEntry>> TakeProcessSnapshot()
{
    const unique_file snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (!snapshot)
        return std::nullopt;
    std::vector<ProcessEntry> entries;
    PROCESSENTRY32W entry{};
    entry.dwSize = sizeof(entry);
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more; more = Process32NextW(snapshot.get(), &entry))
        entries.push_back({entry.th32ProcessID, entry.th32ParentProcessID, entry.szExeFile});
    return entries;
}

std::optional<uint64_t> CreationTime(void* process)
{
    FILETIME created, exited, kernel, user;
    if (!GetProcessTimes(process, &created, &exited, &kernel, &user))
        return std::nullopt;
    return uint64_t{created.dwHighDateTime} << 32 | created.dwLowDateTime;
}

std::optional<uint64_t> CreationTime(uint32_t id)
{
    const unique_handle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    return process ? CreationTime(process.get()) : std::nullopt;
}

uint32_t FindRunningChild(uint32_t id, void* handle, bool descendants)
{
    const std::optional<uint64_t> time = handle ? CreationTime(handle) : CreationTime(id);
    auto entries = TakeProcessSnapshot();
    if (!entries)
        return 0;
    AddMissingParents(*entries);
    return ProcessTable(std::move(*entries)).FindChild(id, descendants, time, [](uint32_t child) {
        return CreationTime(child);
    });
}

} // namespace vh
