#include "user_rights.h"

#include <cstddef>
#include <span>
#include <vector>

#include "../scriptdata/unique.h"

namespace vh {

namespace {

// The token of the thread, or of the process when the thread has none. Result: 0, or the system's error.
DWORD OpenToken(unique_handle& token)
{
    if (OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, token.put()))
        return 0;
    if (const DWORD error = GetLastError(); error != ERROR_NO_TOKEN)
        return error;
    return OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put()) ? 0 : GetLastError();
}

// Fills `record` with the TOKEN_GROUPS. Result as above.
DWORD ReadGroups(std::vector<std::byte>& record)
{
    unique_handle token;
    if (const DWORD error = OpenToken(token))
        return error;
    DWORD size = 0;
    if (!GetTokenInformation(token.get(), TokenGroups, nullptr, 0, &size))
        if (const DWORD error = GetLastError(); error != ERROR_INSUFFICIENT_BUFFER)
            return error;
    record.resize(size);
    if (!GetTokenInformation(token.get(), TokenGroups, record.data(), size, &size))
        return GetLastError();
    return record.size() >= sizeof(TOKEN_GROUPS) ? 0 : ERROR_INVALID_DATA;
}

bool IsGroup(PSID sid, local_group group)
{
    struct {
        SID domain;
        DWORD more;
    } wanted = {{SID_REVISION, 2, SECURITY_NT_AUTHORITY, {SECURITY_BUILTIN_DOMAIN_RID}}, static_cast<DWORD>(group)};
    static_assert(offsetof(decltype(wanted), more) == offsetof(SID, SubAuthority) + sizeof(DWORD));
    return EqualSid(sid, &wanted) != FALSE;
}

bool SystemHasNoRights() { return (GetVersion() & 0x80000000) != 0; }

} // namespace

bool IsInLocalGroup(local_group group, membership kind)
{
    if (SystemHasNoRights())
        return true;
    std::vector<std::byte> record;
    if (const DWORD error = ReadGroups(record))
        return error == ERROR_CALL_NOT_IMPLEMENTED;
    const auto& groups = *reinterpret_cast<const TOKEN_GROUPS*>(record.data());
    for (const SID_AND_ATTRIBUTES& entry : std::span(groups.Groups, groups.GroupCount)) {
        if (kind == membership::granted && (entry.Attributes & SE_GROUP_USE_FOR_DENY_ONLY))
            continue;
        if (IsGroup(entry.Sid, group))
            return true;
    }
    return false;
}

} // namespace vh
