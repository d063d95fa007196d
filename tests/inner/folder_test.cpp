// Which folders the picker takes, and that its test of a new folder leaves nothing behind.
#include <gtest/gtest.h>

#include "../../dialogs/folder_test.h"
#include "../support/import_patch.h"
#include "../support/temp_folder.h"

namespace fs = std::filesystem;
using vh::test::ImportPatch;
using vh::test::TempFolder;

namespace {

UINT WINAPI NoTempFile(LPCWSTR, LPCWSTR, UINT, LPWSTR) { return 0; }
BOOL WINAPI DeniedFolder(LPCWSTR, LPSECURITY_ATTRIBUTES)
{
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

HMODULE Self() { return GetModuleHandleW(nullptr); }

// Names of all that lies below, each with a blank behind it.
std::wstring Below(const TempFolder& folder)
{
    std::wstring names;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path()))
        names += entry.path().lexically_relative(folder.path()).wstring() + L" ";
    return names;
}

TEST(TypedFolder, LosesBlanksAndOneBackslashButKeepsARoot)
{
    const struct {
        const wchar_t* typed;
        const wchar_t* folder;
    } cases[] = {
        {L"", L""},
        {L" \t\n ", L""},
        {L"c:\\a", L"c:\\a"},
        {L" \tc:\\a b\\\n", L"c:\\a b"},
        {L"c:\\a\\ ", L"c:\\a"},
        {L"c:\\a\\\\", L"c:\\a\\"},
        {L"c:\\", L"c:\\"},
        {L"c:", L"c:"},
        {L"\\\\server\\share\\", L"\\\\server\\share\\"},
        {L"\\\\server\\share\\a\\", L"\\\\server\\share\\a"},
        {L"\\", L"\\"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(vh::TypedFolder(one.typed), one.folder) << one.typed;
}

TEST(TextWithPath, PutsThePathInOnceAndTakesNothingElseForAFormat)
{
    const struct {
        const wchar_t* text;
        const wchar_t* made;
    } cases[] = {
        {L"", L""},
        {L"no path", L"no path"},
        {L"%s", L"c:\\%s"},
        {L"Not \"%s\".", L"Not \"c:\\%s\"."},
        {L"Not %ls!", L"Not c:\\%s!"},
        {L"%s and %s", L"c:\\%s and %s"},
        {L"100%% of %s", L"100% of c:\\%s"},
        {L"%d %n %", L"%d %n %"},
        {L"%%s", L"%s"},
    };
    for (const auto& one : cases)
        EXPECT_EQ(vh::TextWithPath(one.text, L"c:\\%s"), one.made) << one.text;
}

TEST(NewFolder, IsPossibleWhereItCanBeMadeAndIsTakenAwayAgain)
{
    const TempFolder folder;
    folder.Write(L"there\\file", "x");
    const std::wstring before = Below(folder);
    const struct {
        const wchar_t* name;
        bool possible;
    } cases[] = {
        {L"new", true},
        {L"new\\", true},
        {L"new\\below\\and below", true},
        {L"there\\new", true},
        {L"there\\\\new\\\\", true},
        {L"there", false},
        {L"there\\", false},
        {L"there\\file", false},
        {L"there\\file\\new", false},
        {L"bad?name", false},
        {L"", false},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(vh::IsNewFolderPossible(folder.path().wstring() + L"\\" + one.name), one.possible) << one.name;
        EXPECT_EQ(Below(folder), before) << one.name;
    }
    EXPECT_FALSE(vh::IsNewFolderPossible(L""));
    EXPECT_FALSE(vh::IsNewFolderPossible(L"c:"));
    EXPECT_FALSE(vh::IsNewFolderPossible(L"c:\\"));
    EXPECT_FALSE(vh::IsNewFolderPossible(folder / std::wstring(300, L'x')));
}

TEST(NewFolder, IsTakenAwayWhenItTakesNoFile)
{
    const TempFolder folder;
    const ImportPatch no_files(Self(), "GetTempFileNameW", reinterpret_cast<void*>(&NoTempFile));
    ASSERT_TRUE(no_files.found());
    EXPECT_FALSE(vh::IsNewFolderPossible(folder / L"new\\below"));
    EXPECT_EQ(Below(folder), L"");
}

TEST(NewFolder, IsNotPossibleWhereNoneMayBeMade)
{
    const TempFolder folder;
    const ImportPatch denied(Self(), "CreateDirectoryW", reinterpret_cast<void*>(&DeniedFolder));
    ASSERT_TRUE(denied.found());
    EXPECT_FALSE(vh::IsNewFolderPossible(folder / L"new"));
}

TEST(Folder, IsAcceptedByItsDiskItsSyntaxAndTheVerifyTest)
{
    const TempFolder folder;
    const std::wstring there = folder.path().wstring();
    const struct {
        std::wstring path;
        bool plain;
        bool verified;
    } cases[] = {
        {there, true, false},
        {there + L"\\new", true, true},
        {there + L"\\a|b", false, false},
        {there + L"\\a?b", false, false},
        {L"c:\\", true, false},
        {L"q:\\folder", false, false},
        {L"folder", false, false},
        {L"\\\\no such server\\share\\a", false, false},
        {L"", false, false},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(vh::IsFolderAccepted(one.path.c_str(), false), one.plain) << one.path;
        EXPECT_EQ(vh::IsFolderAccepted(one.path.c_str(), true), one.verified) << one.path;
    }
    EXPECT_EQ(Below(folder), L"");
}

} // namespace
