// The user's rights, by the token as it is and by tokens that the system could give.
#include "../../exports/vhrt/facts.h"
#include "../support/test.h"

namespace {

// What the three exports answer, in the order administrator, power user, member of the administrators.
std::string Rights()
{
    return std::to_string(IsNTAdmin()) + std::to_string(IsPowerUser()) + std::to_string(_IsInAdminGroup());
}

// A group with up to two subauthorities.
struct Group {
    std::vector<DWORD> subauthorities;
    DWORD attributes = SE_GROUP_ENABLED | SE_GROUP_MANDATORY;
    BYTE authority = 5;
};

// The token that the next look-ups find, or the error of each step.
struct Token {
    std::vector<Group> groups;
    DWORD thread_error = ERROR_NO_TOKEN, process_error = 0, size_error = 0, read_error = 0;
};
Token token;

BOOL Answer(DWORD error)
{
    SetLastError(error);
    return error == 0;
}

// A token of the real process, so that there is something to close.
BOOL RealToken(HANDLE* handle) { return OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, handle); }

BOOL WINAPI ThreadToken(HANDLE, DWORD, BOOL, HANDLE* handle)
{
    return token.thread_error ? Answer(token.thread_error) : RealToken(handle);
}

BOOL WINAPI ProcessToken(HANDLE, DWORD, HANDLE* handle)
{
    return token.process_error ? Answer(token.process_error) : RealToken(handle);
}

BOOL WINAPI Information(HANDLE, TOKEN_INFORMATION_CLASS kind, void* buffer, DWORD size, DWORD* needed)
{
    EXPECT_EQ(kind, TokenGroups);
    constexpr DWORD sid_bytes = 16;
    const auto count = static_cast<DWORD>(token.groups.size());
    const auto head = static_cast<DWORD>(sizeof(TOKEN_GROUPS) + count * sizeof(SID_AND_ATTRIBUTES));
    *needed = head + count * sid_bytes;
    if (!buffer)
        return Answer(token.size_error ? token.size_error : ERROR_INSUFFICIENT_BUFFER);
    if (token.read_error || size < *needed)
        return Answer(token.read_error ? token.read_error : ERROR_INSUFFICIENT_BUFFER);
    auto* groups = static_cast<TOKEN_GROUPS*>(buffer);
    groups->GroupCount = count;
    auto* bytes = static_cast<BYTE*>(buffer) + head;
    for (DWORD i = 0; i < count; ++i, bytes += sid_bytes) {
        const Group& group = token.groups[i];
        SID_IDENTIFIER_AUTHORITY authority{{0, 0, 0, 0, 0, group.authority}};
        InitializeSid(bytes, &authority, static_cast<BYTE>(group.subauthorities.size()));
        for (DWORD part = 0; part < group.subauthorities.size(); ++part)
            *GetSidSubAuthority(bytes, part) = group.subauthorities[part];
        groups->Groups[i] = {bytes, group.attributes};
    }
    return TRUE;
}

DWORD WINAPI VersionWithoutRights() { return 0x80000004; }

struct TokenRights : testing::Test {
    void SetUp() override { token = {}; }

private:
    const Patched m_thread{"OpenThreadToken", ThreadToken, L"VHRT.dll"};
    const Patched m_process{"OpenProcessToken", ProcessToken, L"VHRT.dll"};
    const Patched m_information{"GetTokenInformation", Information, L"VHRT.dll"};
};

TEST(RealRights, AreThoseOfTheProcess)
{
    BYTE sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof(sid);
    ASSERT_TRUE(CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, sid, &size));
    BOOL granted = FALSE;
    ASSERT_TRUE(CheckTokenMembership(nullptr, sid, &granted));
    EXPECT_EQ(IsNTAdmin(), granted);
    EXPECT_GE(_IsInAdminGroup(), IsNTAdmin());
}

TEST_F(TokenRights, AreTakenFromTheLocalGroupsOfTheToken)
{
    const DWORD denied = SE_GROUP_USE_FOR_DENY_ONLY;
    // A right number counts in its place alone.
    using Groups = std::vector<Group>;
    Table<Groups, const char*> rows = {
        {Groups{{{32, 544}}}, "101"},         {Groups{}, "000"},
        {Groups{{{32, 547}}}, "010"},         {Groups{{{32, 545}}, {{32, 547}}, {{32, 544}}}, "111"},
        {Groups{{{32, 544}, denied}}, "001"}, {Groups{{{32, 547}, denied}}, "000"},
        {Groups{{{32, 544}, 0}}, "101"},      {Groups{{{32, 544}, denied}, {{32, 544}}}, "101"},
        {Groups{{{21, 544}}}, "000"},         {Groups{{{544}}}, "000"},
        {Groups{{{32, 544}, 0, 1}}, "000"}};
    for (const auto& [groups, answers] : rows) {
        token.groups = groups;
        EXPECT_EQ(Rights(), answers) << groups.size();
    }
}

TEST_F(TokenRights, ComeFromTheProcessOnlyWhenTheThreadHasNoToken)
{
    token.groups = {{{32, 544}}};
    token.thread_error = 0;
    token.process_error = ERROR_ACCESS_DENIED;
    EXPECT_EQ(Rights(), "101");
    token.thread_error = ERROR_ACCESS_DENIED;
    token.process_error = 0;
    EXPECT_EQ(Rights(), "000");
}

TEST_F(TokenRights, AreNoneWhenATokenCannotBeReadAndAllWhenTheSystemHasNoTokens)
{
    token.groups = {{{32, 544}}, {{32, 547}}};
    DWORD Token::*const steps[] = {&Token::thread_error, &Token::process_error, &Token::size_error, &Token::read_error};
    for (const auto step : steps) {
        const Token sound = token;
        token.*step = ERROR_ACCESS_DENIED;
        EXPECT_EQ(Rights(), "000");
        token.*step = ERROR_CALL_NOT_IMPLEMENTED;
        EXPECT_EQ(Rights(), "111");
        token = sound;
    }
    token.groups.clear();
    const Patched version("GetVersion", VersionWithoutRights, L"VHRT.dll");
    EXPECT_EQ(Rights(), "111");
}

} // namespace
