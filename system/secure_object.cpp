#include "secure_object.h"

#include <cstdarg>

#include "../Src/inc/engine_services.h"
#include "../scriptdata/bstr.h"
#include "../scriptdata/format.h"
#include "../scriptdata/unique.h"
#include "late_advapi32.h"

namespace vh {

namespace {

constexpr int32_t flag_deny = 1, flag_limit = 2, flags_of_helper = 2 | 4 | 16;

// A well-known group, and how it is put together where the system can't.
struct WellKnown {
    const wchar_t* name;
    WELL_KNOWN_SID_TYPE type;
    BYTE authority;
    BYTE count;
    DWORD first;
    DWORD second;
};
constexpr BYTE world = 1, creator = 3, nt = 5;
constexpr DWORD builtin = SECURITY_BUILTIN_DOMAIN_RID;
constexpr WellKnown well_known[] = {
    {L"Everyone", WinWorldSid, world, 1, SECURITY_WORLD_RID, 0},
    {L"Authenticated Users", WinAuthenticatedUserSid, nt, 1, SECURITY_AUTHENTICATED_USER_RID, 0},
    {L"Users", WinBuiltinUsersSid, nt, 2, builtin, DOMAIN_ALIAS_RID_USERS},
    {L"Administrators", WinBuiltinAdministratorsSid, nt, 2, builtin, DOMAIN_ALIAS_RID_ADMINS},
    {L"Local System", WinLocalSystemSid, nt, 1, SECURITY_LOCAL_SYSTEM_RID, 0},
    {L"Local Service", WinLocalServiceSid, nt, 1, SECURITY_LOCAL_SERVICE_RID, 0},
    {L"Network Service", WinNetworkServiceSid, nt, 1, SECURITY_NETWORK_SERVICE_RID, 0},
    {L"Guests", WinBuiltinGuestsSid, nt, 2, builtin, DOMAIN_ALIAS_RID_GUESTS},
    {L"CREATOR OWNER", WinCreatorOwnerSid, creator, 1, SECURITY_CREATOR_OWNER_RID, 0},
    {L"INTERACTIVE", WinInteractiveSid, nt, 1, SECURITY_INTERACTIVE_RID, 0},
    {L"Power Users", WinBuiltinPowerUsersSid, nt, 2, builtin, DOMAIN_ALIAS_RID_POWER_USERS},
    {L"Remote Desktop Users", WinBuiltinRemoteDesktopUsersSid, nt, 2, builtin, DOMAIN_ALIAS_RID_REMOTE_DESKTOP_USERS},
    // The system alone knows this one.
    {L"IUSR", static_cast<WELL_KNOWN_SID_TYPE>(63), 0, 0, 0, 0},
};

const WellKnown* FindWellKnown(const stringx& account)
{
    for (const WellKnown& row : well_known)
        if (account.size() == wcslen(row.name) && _wcsnicmp(account.c_str(), row.name, account.size()) == 0)
            return &row;
    return nullptr;
}

template <class Function, class... Arguments>
auto Call(const Function& function, Arguments... arguments) -> decltype(function(arguments...))
{
    const auto found = function.get();
    return found ? found(arguments...) : decltype(function(arguments...)){};
}

bool MakeWellKnown(const WellKnown& row, PSID sid, DWORD size)
{
    if (DWORD needed = size; Call(late::create_well_known_sid, row.type, PSID{nullptr}, sid, &needed))
        return true;
    if (row.count == 0)
        return false;
    SID_IDENTIFIER_AUTHORITY authority{{0, 0, 0, 0, 0, row.authority}};
    PSID made = nullptr;
    constexpr DWORD none = 0;
    if (!Call(late::allocate_sid, &authority, row.count, row.first, row.second, none, none, none, none, none, none,
              &made))
        return false;
    const BOOL copied = Call(late::copy_sid, size, sid, made);
    Call(late::free_sid, made);
    return copied != FALSE;
}

// Where a call that failed left no reason, that of a bad SID: a failure is never taken for a success.
DWORD FailureOfSid()
{
    const DWORD error = GetLastError();
    return error != ERROR_SUCCESS ? error : ERROR_INVALID_SID;
}

DWORD InheritanceOf(const PermissionItem& item)
{
    if (item.flags & flag_limit)
        return NO_PROPAGATE_INHERIT_ACE;
    return item.objectKind == PermissionItem::folder || item.objectKind == PermissionItem::key
               ? DWORD{SUB_CONTAINERS_AND_OBJECTS_INHERIT}
               : DWORD{NO_INHERITANCE};
}

} // namespace

PermissionItem::PermissionItem(const wchar_t* object_name, int32_t kind_of_it, const wchar_t* domain_name,
                               const wchar_t* account_name, uint32_t mask, int32_t item_flags)
    : object(object_name), objectKind(kind_of_it),
      platformKind(kind_of_it == file || kind_of_it == folder ? SE_FILE_OBJECT
                   : kind_of_it == key                        ? SE_REGISTRY_KEY
                                                              : SE_UNKNOWN_OBJECT_TYPE),
      domain(domain_name), account(account_name), access(mask), flags(item_flags)
{
}

void CVHSecureObject::LogFormatted(const wchar_t* format, ...)
{
    wchar_t line[1024];
    va_list arguments;
    va_start(arguments, format);
    FormatTextV(line, std::size(line), format, arguments);
    va_end(arguments);
    Log(line);
}

int32_t CVHSecureObject::SetPermissions(const PermissionItem& item)
{
    return item.objectKind == PermissionItem::key && (item.flags & flags_of_helper) ? SetThroughHelper(item)
                                                                                    : SetLocally(item);
}

int32_t CVHSecureObject::SetThroughHelper(const PermissionItem& item)
{
    com_ptr<ISetupPermissionHelper> helper;
    HRESULT code = GetHelper(helper);
    if (FAILED(code)) {
        LogFormatted(L"Failed to obtain 64-bit helper process for permission item '%s', error '%x'",
                     item.object.c_str(), static_cast<unsigned>(code));
        return code;
    }
    LogFormatted(L"Processing registry object '%s' in 64-bit outproc", item.object.c_str());
    long result = 0;
    code = helper->SetObjectPermissions(item.object.AsBstr(), item.domain.AsBstr(), item.account.AsBstr(),
                                        item.platformKind, static_cast<long>(item.access), item.flags, &result);
    if (FAILED(code)) {
        LogFormatted(L"Failed call to 64-bit set object permissions, error %x", static_cast<unsigned>(code));
        return code;
    }
    return result;
}

int32_t CVHSecureObject::SetLocally(const PermissionItem& item)
{
    sid_buffer sid{};
    if (const DWORD error = ResolveSid(item, sid); error != ERROR_SUCCESS)
        return static_cast<int32_t>(error);
    EXPLICIT_ACCESSW entry{};
    entry.grfAccessPermissions = item.access;
    entry.grfAccessMode = static_cast<ACCESS_MODE>((item.flags & flag_deny) | SET_ACCESS);
    entry.grfInheritance = InheritanceOf(item);
    entry.Trustee.TrusteeForm = TRUSTEE_IS_SID;
    entry.Trustee.ptstrName = reinterpret_cast<wchar_t*>(sid.data());

    LogFormatted(L"Getting existing security descriptor for '%s'", item.object.c_str());
    unique_local descriptor;
    ACL* existing = nullptr;
    const auto type = static_cast<SE_OBJECT_TYPE>(item.platformKind);
    // The functions take the name as text to write to; they don't.
    auto* const name = const_cast<wchar_t*>(item.object.c_str());
    constexpr SECURITY_INFORMATION access_list = DACL_SECURITY_INFORMATION;
    PSID* const no_sid = nullptr;
    ACL** const no_list = nullptr;
    DWORD error = Call(late::get_security_info, static_cast<const wchar_t*>(name), type, access_list, no_sid, no_sid,
                       &existing, no_list, descriptor.put());
    if (error != ERROR_SUCCESS) {
        LogFormatted(L"Failed to obtain existing security descriptor, last error: 0x%08x", error);
        return static_cast<int32_t>(error);
    }
    unique_local merged;
    error = Call(late::set_entries, ULONG{1}, &entry, existing, reinterpret_cast<ACL**>(merged.put()));
    if (error != ERROR_SUCCESS) {
        LogFormatted(L"Failed to set explicit access for new ACL, last error: 0x%08x", error);
        return static_cast<int32_t>(error);
    }
    LogFormatted(L"Setting new security descriptor for '%s'", item.object.c_str());
    error = Call(late::set_security_info, name, type, access_list, PSID{nullptr}, PSID{nullptr},
                 static_cast<ACL*>(merged.get()), static_cast<ACL*>(nullptr));
    // Scripts are not told of this one.
    if (error != ERROR_SUCCESS)
        LogFormatted(L"Failed to set new security descriptor, last error: 0x%08x", error);
    return 0;
}

DWORD CVHSecureObject::ResolveSid(const PermissionItem& item, sid_buffer& sid)
{
    if (const WellKnown* row = FindWellKnown(item.account)) {
        if (MakeWellKnown(*row, sid.data(), static_cast<DWORD>(sid.size())))
            return ERROR_SUCCESS;
        const DWORD error = FailureOfSid();
        LogFormatted(L"Failed to lookup wellknown account, last error: 0x%x", error);
        return error;
    }
    if (item.account.view().starts_with(L"S-")) {
        unique_local converted;
        if (Call(late::sid_from_text, item.account.c_str(), converted.put()) &&
            Call(late::is_valid_sid, converted.get()) &&
            Call(late::copy_sid, static_cast<DWORD>(sid.size()), static_cast<PSID>(sid.data()), converted.get()))
            return ERROR_SUCCESS;
    }
    return LookUp(item, sid);
}

DWORD CVHSecureObject::LookUp(const PermissionItem& item, sid_buffer& sid)
{
    stringx name = item.account;
    if (!item.domain.empty()) {
        name = item.domain;
        name += L'\\';
        name += item.account;
    }
    LogFormatted(L"ResolveSidForAccountName: looking up account name '%s'", name.c_str());
    wchar_t domain[260] = L"";
    DWORD domain_size = 260;
    auto sid_size = static_cast<DWORD>(sid.size());
    SID_NAME_USE use = SidTypeUnknown;
    if (!Call(late::lookup_account, static_cast<const wchar_t*>(nullptr), name.c_str(), static_cast<PSID>(sid.data()),
              &sid_size, static_cast<wchar_t*>(domain), &domain_size, &use)) {
        const DWORD error = FailureOfSid();
        LogFormatted(L"Failed to lookup account name, last error: 0x%08x", error);
        return error;
    }
    if (!Call(late::is_valid_sid, static_cast<PSID>(sid.data()))) {
        const DWORD error = FailureOfSid();
        LogFormatted(L"Failed to lookup account name, SID is invalid, last error: 0x%08x", error);
        return error;
    }
    return ERROR_SUCCESS;
}

} // namespace vh
