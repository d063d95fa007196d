// The user's rights, by the token as it is and by tokens that the system could give.
#include "../../exports/vhrt/facts.h"
#include "../support/replaced.h"

namespace {

// What the three exports answer, in the order administrator, power user, member of the administrators.
struct Answers {
    int32_t admin, power_user, member;
    bool operator==(const Answers&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Answers& answers)
{
    return out << answers.admin << answers.power_user << answers.member;
}

Answers Rights() { return {IsNTAdmin(), IsPowerUser(), _IsInAdminGroup()}; }

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

class TokenRights : public testing::Test {
protected:
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
    const struct {
        std::vector<Group> groups;
        Answers answers;
    } rows[] = {{{{{32, 544}}}, {1, 0, 1}},         {{}, {0, 0, 0}},
                {{{{32, 547}}}, {0, 1, 0}},         {{{{32, 545}}, {{32, 547}}, {{32, 544}}}, {1, 1, 1}},
                {{{{32, 544}, denied}}, {0, 0, 1}}, {{{{32, 547}, denied}}, {0, 0, 0}},
                {{{{32, 544}, 0}}, {1, 0, 1}},      {{{{32, 544}, denied}, {{32, 544}}}, {1, 0, 1}},
                {{{{21, 544}}}, {0, 0, 0}},         {{{{544}}}, {0, 0, 0}},
                {{{{32, 544}, 0, 1}}, {0, 0, 0}}};
    for (const auto& row : rows) {
        token.groups = row.groups;
        EXPECT_EQ(Rights(), row.answers) << (&row - rows);
    }
}

TEST_F(TokenRights, ComeFromTheProcessOnlyWhenTheThreadHasNoToken)
{
    token.groups = {{{32, 544}}};
    token.thread_error = 0;
    token.process_error = ERROR_ACCESS_DENIED;
    EXPECT_EQ(Rights(), (Answers{1, 0, 1}));
    token.thread_error = ERROR_ACCESS_DENIED;
    token.process_error = 0;
    EXPECT_EQ(Rights(), (Answers{0, 0, 0}));
}

TEST_F(TokenRights, AreNoneWhenATokenCannotBeReadAndAllWhenTheSystemHasNoTokens)
{
    token.groups = {{{32, 544}}, {{32, 547}}};
    DWORD Token::*const steps[] = {&Token::thread_error, &Token::process_error, &Token::size_error, &Token::read_error};
    for (const auto step : steps) {
        const Token sound = token;
        token.*step = ERROR_ACCESS_DENIED;
        EXPECT_EQ(Rights(), (Answers{0, 0, 0}));
        token.*step = ERROR_CALL_NOT_IMPLEMENTED;
        EXPECT_EQ(Rights(), (Answers{1, 1, 1}));
        token = sound;
    }
    token.groups.clear();
    const Patched version("GetVersion", VersionWithoutRights, L"VHRT.dll");
    EXPECT_EQ(Rights(), (Answers{1, 1, 1}));
}

} // namespace
