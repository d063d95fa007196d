// Access lists: which SID, which entry, which line for which failure. The system's lists stand in where the platform
// under test keeps less than it is given.
#include "../../system/secure_object.h"
#include "../../Src/inc/engine_services.h"
#include "../../scriptdata/com_object.h"
#include "../../system/late_advapi32.h"
#include "../support/test.h"

namespace {

constexpr DWORD ok = ERROR_SUCCESS;
constexpr auto no_memory = static_cast<int32_t>(0x8007000E);

// What the stand-ins were given and answer.
std::wstring g_seen;
DWORD g_read = ok, g_merge = ok, g_write = ok;

DWORD WINAPI Read(const wchar_t* name, SE_OBJECT_TYPE type, SECURITY_INFORMATION what, PSID*, PSID*, ACL**, ACL**,
                  PSECURITY_DESCRIPTOR* descriptor)
{
    g_seen += L"read " + std::wstring(name) + L" " + std::to_wstring(type) + L" " + std::to_wstring(what) + L"|";
    *descriptor = LocalAlloc(LMEM_FIXED, 8);
    return g_read;
}
DWORD WINAPI Merge(ULONG count, EXPLICIT_ACCESSW* entry, ACL*, ACL** list)
{
    wchar_t* sid = nullptr;
    ConvertSidToStringSidW(entry->Trustee.ptstrName, &sid);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(entry->Trustee.TrusteeForm, TRUSTEE_IS_SID);
    g_seen += std::wstring(sid ? sid : L"?") + L" " + std::to_wstring(entry->grfAccessMode) + L" " +
              std::to_wstring(entry->grfInheritance) + L" " + std::to_wstring(entry->grfAccessPermissions) + L"|";
    LocalFree(sid);
    *list = static_cast<ACL*>(LocalAlloc(LMEM_FIXED, 8));
    return g_merge;
}
DWORD WINAPI Write(wchar_t* name, SE_OBJECT_TYPE type, SECURITY_INFORMATION what, PSID, PSID, ACL* list, ACL*)
{
    g_seen += L"write " + std::wstring(name) + L" " + std::to_wstring(type) + L" " + std::to_wstring(what) +
              (list ? L"" : L" nothing");
    return g_write;
}

class Recorded final : public CVHSecureObject {
public:
    void Log(const wchar_t* line) override { log += std::wstring(line) + L"|"; }
    HRESULT GetHelper(com_ptr<ISetupPermissionHelper>& given) override
    {
        given = helper;
        return helper ? S_OK : E_NOINTERFACE;
    }
    std::wstring log;
    com_ptr<ISetupPermissionHelper> helper;
};

class Helper final : public com_object<ISetupPermissionHelper> {
public:
    HRESULT STDMETHODCALLTYPE SetObjectPermissions(BSTR object, BSTR domain, BSTR account, long type, long access,
                                                   long flags, long* result) override
    {
        seen = std::wstring(object) + L"|" + domain + L"|" + account + L"|" + std::to_wstring(type) + L"|" +
               std::to_wstring(access) + L"|" + std::to_wstring(flags);
        *result = 5;
        return code;
    }
    HRESULT code = S_OK;
    std::wstring seen;
};

struct SecureObject : testing::Test {
    void SetUp() override { g_read = g_merge = g_write = ok; }
    int32_t Set(const PermissionItem& item)
    {
        object.log.clear();
        g_seen.clear();
        return object.SetPermissions(item);
    }

    Recorded object;
    const Replaced<decltype(late::get_security_info)> read{late::get_security_info, &Read};
    const Replaced<decltype(late::set_entries)> merge{late::set_entries, &Merge};
    const Replaced<decltype(late::set_security_info)> write{late::set_security_info, &Write};
};

TEST_F(SecureObject, PutsOneEntryInByKindFlagsAndAccount)
{
    const std::wstring around[] = {L"read C:\\x 1 4|", L"write C:\\x 1 4", L"read C:\\x 4 4|",
                                   L"write C:\\x 4 4", L"read C:\\x 0 4|", L"write C:\\x 0 4"};
    const Table<int32_t, int32_t, const wchar_t*, const wchar_t*> cases = {
        {0, 0, L"Everyone", L"S-1-1-0 2 0 7|"},
        {0, 1, L"everyone", L"S-1-1-0 3 0 7|"},
        {1, 0, L"Authenticated Users", L"S-1-5-11 2 3 7|"},
        {1, 2, L"USERS", L"S-1-5-32-545 2 4 7|"},
        {1, 3, L"Administrators", L"S-1-5-32-544 3 4 7|"},
        {0, 2, L"Local System", L"S-1-5-18 2 4 7|"},
        {2, 0, L"Local Service", L"S-1-5-19 2 3 7|"},
        {2, 1, L"Network Service", L"S-1-5-20 3 3 7|"},
        {2, 8, L"Guests", L"S-1-5-32-546 2 3 7|"},
        {0, 20, L"CREATOR OWNER", L"S-1-3-0 2 0 7|"},
        {3, 0, L"INTERACTIVE", L"S-1-5-4 2 0 7|"},
        {-1, 0, L"Power Users", L"S-1-5-32-547 2 0 7|"},
        {0, 0, L"Remote Desktop Users", L"S-1-5-32-555 2 0 7|"},
        {0, 0, L"S-1-5-32-544", L"S-1-5-32-544 2 0 7|"},
        {0, 0, L"S-1-5-21-1-2-3-500", L"S-1-5-21-1-2-3-500 2 0 7|"}};
    // As the system makes well-known SIDs, and put together by hand.
    for (const bool hidden : {false, true}) {
        if (hidden)
            late::create_well_known_sid.hide();
        for (const auto& [kind, flags, account, entry] : cases) {
            EXPECT_EQ(Set({L"C:\\x", kind, L"nobody's", account, 7, flags}), 0) << account;
            const std::size_t type = kind == 2 ? 2 : kind == 0 || kind == 1 ? 0 : 4;
            EXPECT_EQ(g_seen, around[type] + entry + around[type + 1]);
            EXPECT_EQ(object.log, L"Getting existing security descriptor for 'C:\\x'|"
                                  L"Setting new security descriptor for 'C:\\x'|");
        }
        late::create_well_known_sid.show();
    }
}

TEST_F(SecureObject, TellsEachFailureInALine)
{
    const std::wstring reading = L"Getting existing security descriptor for 'o'|";
    const std::wstring writing = reading + L"Setting new security descriptor for 'o'|";
    const Table<DWORD*, int32_t, std::wstring> cases = {
        {&g_read, 5, reading + L"Failed to obtain existing security descriptor, last error: 0x00000005|"},
        {&g_merge, 5, reading + L"Failed to set explicit access for new ACL, last error: 0x00000005|"},
        {&g_write, 0, writing + L"Failed to set new security descriptor, last error: 0x00000005|"}};
    for (const auto& [step, result, log] : cases) {
        *step = 5;
        EXPECT_GIVES(Set({L"o", 0, nullptr, L"Users", 1, 0}), result, object.log, log);
        *step = ok;
    }
    // Names that only a look-up knows: with its domain, and a SID that is none.
    const Replaced lookup(late::lookup_account,
                          [](const wchar_t*, const wchar_t* name, PSID sid, DWORD* size, wchar_t*, DWORD* domain_size,
                             SID_NAME_USE*) WINAPI -> BOOL {
                              EXPECT_TRUE(*size == 260 && *domain_size == 260);
                              SetLastError(name[0] == L'n' ? ERROR_NONE_MAPPED : ERROR_SUCCESS);
                              return name[0] == L'n' ? FALSE : (*static_cast<BYTE*>(sid) = name[0] == L'v', TRUE);
                          });
    const std::wstring looking = L"ResolveSidForAccountName: looking up account name '";
    const Table<const wchar_t*, const wchar_t*, int32_t, std::wstring> names = {
        {nullptr, L"nobody", 1332, looking + L"nobody'|Failed to lookup account name, last error: 0x00000534|"},
        {L"north", L"Users2", 1332, looking + L"north\\Users2'|Failed to lookup account name, last error: 0x00000534|"},
        {L"", L"S-1-none", 1337,
         looking + L"S-1-none'|Failed to lookup account name, SID is invalid, last error: 0x00000539|"},
        {L"v", L"User", 0, looking + L"v\\User'|" + writing}};
    for (const auto& [domain, account, result, log] : names)
        EXPECT_GIVES(Set({L"o", 0, domain, account, 1, 0}), result, object.log, log);
    // IUSR is the system's own; nothing else makes it.
    const Replaced none(late::create_well_known_sid);
    EXPECT_GIVES(Set({L"o", 0, nullptr, L"IUSR", 1, 0}), 127, object.log,
                 L"Failed to lookup wellknown account, last error: 0x7f|");
}

TEST_F(SecureObject, SendsKeysThroughTheHelper)
{
    for (const int32_t flags : {2, 4, 16}) {
        object.helper.reset();
        EXPECT_GIVES(Set({L"MACHINE\\K", 2, L"d", L"a", 9, flags}), E_NOINTERFACE, object.log,
                     L"Failed to obtain 64-bit helper process for permission item 'MACHINE\\K', error '80004002'|");
        const auto helper = make_object<Helper>();
        object.helper = com_ptr<ISetupPermissionHelper>(helper.get());
        EXPECT_GIVES(Set({L"MACHINE\\K", 2, L"d", L"a", 0x80000000u, flags}), 5, object.log,
                     L"Processing registry object 'MACHINE\\K' in 64-bit outproc|");
        EXPECT_EQ(helper->seen, L"MACHINE\\K|d|a|4|-2147483648|" + std::to_wstring(flags));
        helper->code = no_memory;
        EXPECT_GIVES(Set({L"MACHINE\\K", 2, L"d", L"a", 9, flags}), no_memory, object.log,
                     L"Processing registry object 'MACHINE\\K' in 64-bit outproc|"
                     L"Failed call to 64-bit set object permissions, error 8007000e|");
        EXPECT_EQ(g_seen, L"");
    }
}

TEST_F(SecureObject, AnswersNothingWhereTheSystemLacksAFunction)
{
    const Replaced lookup(late::lookup_account);
    EXPECT_EQ(Set({L"o", 0, nullptr, L"Users2", 1, 0}), static_cast<int32_t>(ERROR_PROC_NOT_FOUND));
    const Replaced none(late::get_security_info);
    EXPECT_EQ(Set({L"o", 1, nullptr, L"Users", 1, 0}), 0);
    EXPECT_EQ(g_seen, L"S-1-5-32-545 2 3 1|write o 1 4");
}

} // namespace
