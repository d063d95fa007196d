// Permissions through the export: registry keys by reading their list back, and what the engine is asked and told.
#include <aclapi.h>
#include <sddl.h>

#include "../support/session.h"

namespace {

constexpr const wchar_t* path = L"Software\\VHPermissionTest";
constexpr const wchar_t* name = L"CURRENT_USER\\Software\\VHPermissionTest";

// The key's own entries for one SID: type, flags and mask.
std::wstring EntriesOf(const std::wstring& sid)
{
    ACL* list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    std::wstring found;
    if (GetNamedSecurityInfoW(name, SE_REGISTRY_KEY, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list, nullptr,
                              &descriptor) != ERROR_SUCCESS)
        return L"unreadable";
    for (DWORD i = 0; list && i < list->AceCount; ++i) {
        void* ace = nullptr;
        wchar_t* text = nullptr;
        GetAce(list, i, &ace);
        const auto& entry = *static_cast<ACCESS_ALLOWED_ACE*>(ace);
        ConvertSidToStringSidW(const_cast<DWORD*>(&entry.SidStart), &text);
        if (sid == text)
            found += std::to_wstring(entry.Header.AceType) + L" " + std::to_wstring(entry.Header.AceFlags) + L" " +
                     std::to_wstring(entry.Mask) + L"|";
        LocalFree(text);
    }
    LocalFree(descriptor);
    return found;
}

TEST(Permissions, OfKeysAreInTheirListAfterwards)
{
    const Session session;
    const Table<const wchar_t*, int32_t, const wchar_t*, const wchar_t*> cases = {
        {L"Users", 0, L"S-1-5-32-545", L"0 3 131097|"},
        {L"S-1-5-32-546", 1, L"S-1-5-32-546", L"1 3 131097|"},
        // Through the helper of the engine.
        {L"INTERACTIVE", 4, L"S-1-5-4", L"0 3 131097|"},
        {L"Network Service", 2, L"S-1-5-20", L"0 4 131097|"}};
    for (const auto& [account, flags, sid, entries] : cases) {
        RegDeleteTreeW(HKEY_CURRENT_USER, path);
        HKEY key = nullptr;
        ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr),
                  ERROR_SUCCESS);
        RegCloseKey(key);
        EXPECT_EQ(_SetObjectPermissions(session, name, ObjectRegistryKey, L"", account, KEY_READ, flags), 0);
        EXPECT_EQ(EntriesOf(sid), entries) << account;
        EXPECT_EQ(session.CallsOf(L"ISetupPermissionHelper.SetObjectPermissions"), flags & 6 ? 1 : 0);
        EXPECT_EQ(session.engine->Messages().back().reason,
                  L"Setting new security descriptor for '" + std::wstring(name) + L"'");
        session.calls().Reset();
        session.calls().Record(true);
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, path);
    // A line that the engine refuses changes nothing.
    session.calls().FailCall(L"ISetupScriptLog.WriteLine", E_FAIL);
    EXPECT_EQ(_SetObjectPermissions(session, name, ObjectRegistryKey, nullptr, L"Users", KEY_READ, 0), 2);
    const Session alone;
    alone.calls().FailCall(L"IServiceProvider.QueryService", E_NOINTERFACE);
    EXPECT_EQ(_SetObjectPermissions(alone, name, ObjectRegistryKey, L"", L"Users", 1, 16), E_NOINTERFACE);
}

} // namespace
