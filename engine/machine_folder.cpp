#include "machine_folder.h"

#include <algorithm>
#include <array>
#include <optional>

#include <sddl.h>

#include "../scriptdata/folder_link.h"
#include "engine.h"
#include "files.h"

namespace vh::engine {

namespace {

// Nothing is inherited from above, and what is made inside inherits this.
constexpr const wchar_t* list_of_machine = L"O:BAG:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)(A;OICI;FRFX;;;";
constexpr const wchar_t* users = L"BU";

constexpr const wchar_t* trusted_owners[] = {
    L"S-1-5-18",                                                       // the system
    L"S-1-5-32-544",                                                   // administrators
    L"S-1-5-80-956008885-3418522649-1831038044-1853292631-2271478464", // the service that installs the system
};
// Stand for the owner, who is one of those.
constexpr const wchar_t* stand_ins[] = {L"S-1-3-0", L"S-1-3-4"};

constexpr DWORD changing = FILE_WRITE_DATA | FILE_APPEND_DATA | FILE_WRITE_EA | FILE_DELETE_CHILD |
                           FILE_WRITE_ATTRIBUTES | DELETE | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;

std::wstring TextOf(PSID sid)
{
    wchar_t* text = nullptr;
    if (!ConvertSidToStringSidW(sid, &text))
        return L"?";
    const unique_local held(text);
    return text;
}

// "BUILTIN\Users (S-1-5-32-545)", as far as the system knows it.
std::wstring NameOf(PSID sid)
{
    std::array<wchar_t, 256> name{};
    std::array<wchar_t, 256> domain{};
    DWORD nameSize = name.size();
    DWORD domainSize = domain.size();
    SID_NAME_USE use{};
    const std::wstring text = TextOf(sid);
    if (!LookupAccountSidW(nullptr, sid, name.data(), &nameSize, domain.data(), &domainSize, &use))
        return text;
    return JoinPath(domain.data(), name.data()) + L" (" + text + L")";
}

bool IsTrusted(PSID sid) { return std::ranges::find(trusted_owners, TextOf(sid)) != std::end(trusted_owners); }

// Empty for an entry that gives others nothing but sight.
std::wstring WhyEntryUntrusted(const ACE_HEADER& header)
{
    switch (header.AceType) {
    case ACCESS_DENIED_ACE_TYPE:
    case ACCESS_DENIED_OBJECT_ACE_TYPE:
    case ACCESS_DENIED_CALLBACK_ACE_TYPE:
    case ACCESS_DENIED_CALLBACK_OBJECT_ACE_TYPE:
        return {};
    case ACCESS_ALLOWED_ACE_TYPE:
    case ACCESS_ALLOWED_CALLBACK_ACE_TYPE: {
        // Both begin alike.
        auto& entry = reinterpret_cast<ACCESS_ALLOWED_ACE&>(const_cast<ACE_HEADER&>(header));
        const auto sid = static_cast<PSID>(&entry.SidStart);
        if (!(entry.Mask & changing) || IsTrusted(sid) ||
            std::ranges::find(stand_ins, TextOf(sid)) != std::end(stand_ins))
            return {};
        return NameOf(sid) + L" may change it";
    }
    default:
        return L"its access list has an entry of an unknown kind";
    }
}

unique_local Descriptor(const std::wstring& text)
{
    unique_local descriptor;
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1, descriptor.put(), nullptr))
        ThrowFileError({}, L"can't make an access list", GetLastError());
    return descriptor;
}

// Who may read what is made: a name of the access list's language, or a SID.
std::wstring ListFor(const std::wstring& reader) { return list_of_machine + reader + L")"; }

std::wstring UserOfProcess()
{
    unique_handle token;
    alignas(TOKEN_USER) std::array<BYTE, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user{};
    DWORD size = 0;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put()) ||
        !GetTokenInformation(token.get(), TokenUser, user.data(), static_cast<DWORD>(user.size()), &size))
        return users;
    return TextOf(reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid);
}

// Result: 0, or the system's error.
DWORD MakeWith(const std::wstring& path, const std::wstring& reader)
{
    const unique_local descriptor = Descriptor(ListFor(reader));
    SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor.get(), FALSE};
    return CreateDirectoryW(LongPath(path).c_str(), &attributes) ? 0 : GetLastError();
}

unique_file OpenItself(const std::wstring& path, DWORD access, DWORD sharing)
{
    return unique_file(CreateFileW(LongPath(path).c_str(), access | READ_CONTROL | FILE_READ_ATTRIBUTES, sharing,
                                   nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                                   nullptr));
}

std::wstring WhyListUntrusted(HANDLE thing)
{
    constexpr SECURITY_INFORMATION wanted = OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION;
    unique_local descriptor;
    const DWORD code =
        late::get_security_info(thing, SE_FILE_OBJECT, wanted, nullptr, nullptr, nullptr, nullptr, descriptor.put());
    return code ? L"its access list can't be read: " + SystemText(code) : WhyUntrusted(descriptor.get());
}

// Some volumes keep no access lists: what is made with one has another at once, and nothing can be told by it. Nobody
// else gets at the probe, which is known by its handle alone.
bool KeepsLists(const std::wstring& folder)
{
    const unique_local descriptor = Descriptor(ListFor(users));
    SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor.get(), FALSE};
    const unique_file probe(CreateFileW(LongPath(JoinPath(folder, L"VHSetup" + NewIdentifier())).c_str(),
                                        READ_CONTROL | DELETE, 0, &attributes, CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE,
                                        nullptr));
    return !probe || WhyListUntrusted(probe.get()).empty();
}

// What lies in one folder; whether its volume keeps lists is asked for when one is not as it should be.
class Judge {
public:
    explicit Judge(std::wstring folder) : m_folder(std::move(folder)) {}

    void Require(const std::wstring& path, HANDLE thing)
    {
        BY_HANDLE_FILE_INFORMATION facts{};
        if (!GetFileInformationByHandle(thing, &facts))
            throw untrusted_error(path, SystemText(GetLastError()));
        if (LeadsElsewhere(facts.dwFileAttributes))
            throw untrusted_error(path, L"it leads elsewhere");
        if (const std::wstring reason = WhyListUntrusted(thing); !reason.empty() && Keeps())
            throw untrusted_error(path, reason);
    }
    void Require(const std::wstring& path)
    {
        const unique_file thing = OpenItself(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
        const DWORD code = GetLastError();
        if (thing)
            Require(path, thing.get());
        else if (code != ERROR_FILE_NOT_FOUND && code != ERROR_PATH_NOT_FOUND)
            throw untrusted_error(path, SystemText(code));
    }
    // The folder, and what lies in it.
    void RequireAll(const std::wstring& folder)
    {
        Require(folder);
        for (const Entry& entry : ListFolder(folder))
            Require(JoinPath(folder, entry.name));
    }

private:
    bool Keeps()
    {
        if (!m_keeps)
            m_keeps = KeepsLists(m_folder);
        return *m_keeps;
    }

    std::wstring m_folder;
    std::optional<bool> m_keeps;
};

// What this process makes belongs to administrators, whatever the policy says: the same user may run programs that have
// their rights not.
void OwnAsAdministrators()
{
    std::array<BYTE, SECURITY_MAX_SID_SIZE> sid{};
    DWORD size = sid.size();
    unique_handle token;
    TOKEN_OWNER owner{sid.data()};
    if (CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid.data(), &size) &&
        OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_DEFAULT, token.put()))
        SetTokenInformation(token.get(), TokenOwner, &owner, sizeof owner);
}

// Gives a thing to administrators alone.
std::wstring MendingWords(const std::wstring& path)
{
    const std::wstring heirs = FactsOf(path).folder() ? L"(OI)(CI)" : L"";
    const std::wstring program = L"icacls \"" + path + L"\" ";
    return program + L"/setowner *S-1-5-32-544 /T and " + program + L"/inheritance:r /grant:r *S-1-5-18:" + heirs +
           L"F *S-1-5-32-544:" + heirs + L"F *S-1-5-32-545:" + heirs + L"RX";
}

} // namespace

untrusted_error::untrusted_error(const std::wstring& path, const std::wstring& reason)
    : engine_error(FromWin32(ERROR_INVALID_OWNER), path,
                   L"can't be trusted with a product of the machine, because " + reason +
                       L"; look through it as an administrator, then remove it or run " + MendingWords(path))
{
}

bool HasMachineRights()
{
    std::array<BYTE, SECURITY_MAX_SID_SIZE> administrators{};
    DWORD size = administrators.size();
    BOOL member = FALSE;
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators.data(), &size) &&
           CheckTokenMembership(nullptr, administrators.data(), &member) && member;
}

std::wstring WhyUntrusted(PSECURITY_DESCRIPTOR descriptor)
{
    PSID owner = nullptr;
    PACL list = nullptr;
    BOOL present = FALSE;
    BOOL defaulted = FALSE;
    if (!GetSecurityDescriptorOwner(descriptor, &owner, &defaulted) || !owner)
        return L"it belongs to nobody";
    if (!IsTrusted(owner))
        return L"it belongs to " + NameOf(owner);
    if (!GetSecurityDescriptorDacl(descriptor, &present, &list, &defaulted) || !present || !list)
        return L"everybody may change it";
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (!GetAce(list, i, &entry))
            return L"its access list is damaged";
        if (std::wstring reason = WhyEntryUntrusted(*static_cast<const ACE_HEADER*>(entry)); !reason.empty())
            return reason;
    }
    return {};
}

unique_file HoldTrusted(const std::wstring& folder)
{
    // Without access to what it holds its handle would keep nobody from moving it.
    unique_file held = OpenItself(folder, FILE_LIST_DIRECTORY, FILE_SHARE_READ | FILE_SHARE_WRITE);
    if (!held)
        ThrowFileError(folder, GetLastError());
    RequireTrusted(folder, held.get());
    return held;
}

void RequireTrusted(const std::wstring& path, HANDLE thing) { Judge(FolderOf(path)).Require(path, thing); }

void MakePrivateFolder(const std::wstring& path)
{
    if (!HasMachineRights())
        return MakeFolder(path);
    if (const DWORD code = MakeWith(path, UserOfProcess()))
        ThrowFileError(path, L"can't make the folder", code);
}

unique_file MakePrivateFile(const std::wstring& path)
{
    const unique_local descriptor = Descriptor(ListFor(UserOfProcess()));
    SECURITY_ATTRIBUTES attributes{sizeof attributes, descriptor.get(), FALSE};
    return unique_file(CreateFileW(LongPath(path).c_str(), GENERIC_WRITE, 0, HasMachineRights() ? &attributes : nullptr,
                                   CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
}

void MakeLogFolder(const std::wstring& logFile, const std::wstring& machine)
{
    if (!LiesIn(logFile, machine))
        return MakeFolders(FolderOf(logFile));
    OwnAsAdministrators();
    MakeFolders(FolderOf(machine));
    if (const DWORD code = MakeWith(machine, users); code && code != ERROR_ALREADY_EXISTS)
        ThrowFileError(machine, L"can't make the folder", code);
    RequireTrusted(logFile, machine);
    MakeFolders(FolderOf(logFile));
}

void RequireTrusted(const std::wstring& logFile, const std::wstring& machine)
{
    if (!LiesIn(logFile, machine))
        return;
    Judge judge(FolderOf(machine));
    judge.Require(machine);
    judge.Require(JoinPath(machine, L"in-use.log"));
    judge.RequireAll(JoinPath(machine, L"host"));
    judge.RequireAll(FolderOf(logFile));
    judge.RequireAll(JoinPath(FolderOf(logFile), L"setup"));
}

} // namespace vh::engine
