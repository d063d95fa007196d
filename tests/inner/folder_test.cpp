// Which folders the picker takes, and that its test of a new folder leaves nothing behind.
#include "../../dialogs/folder_test.h"
#include "../support/test.h"

namespace fs = std::filesystem;

namespace {

UINT WINAPI NoTempFile(LPCWSTR, LPCWSTR, UINT, LPWSTR) { return 0; }
BOOL WINAPI DeniedFolder(LPCWSTR, LPSECURITY_ATTRIBUTES)
{
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

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
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"", L""},       {L"c:\\", L"c:\\"},        {L" \tc:\\a b\\\n", L"c:\\a b"},
        {L"c:", L"c:"},   {L"c:\\a", L"c:\\a"},      {L"\\\\server\\share\\", L"\\\\server\\share\\"},
        {L"\\", L"\\"},   {L"c:\\a\\ ", L"c:\\a"},   {L"\\\\server\\share\\a\\", L"\\\\server\\share\\a"},
        {L" \t\n ", L""}, {L"c:\\a\\\\", L"c:\\a\\"}};
    for (const auto& [typed, folder] : cases)
        EXPECT_EQ(vh::TypedFolder(typed), folder) << typed;
}

TEST(TextWithPath, PutsThePathInOnceAndTakesNothingElseForAFormat)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"", L""},         {L"no path", L"no path"},      {L"Not \"%s\".", L"Not \"c:\\%s\"."},
        {L"%s", L"c:\\%s"}, {L"Not %ls!", L"Not c:\\%s!"}, {L"%s and %s", L"c:\\%s and %s"},
        {L"%%s", L"%s"},    {L"%d %n %", L"%d %n %"},      {L"100%% of %s", L"100% of c:\\%s"}};
    for (const auto& [text, made] : cases)
        EXPECT_EQ(vh::TextWithPath(text, L"c:\\%s"), made) << text;
}

TEST(NewFolder, IsPossibleWhereItCanBeMadeAndIsTakenAwayAgain)
{
    const TempFolder folder;
    folder.Write(L"there\\file", "x");
    const std::wstring before = Below(folder);
    for (const wchar_t* name : {L"new", L"new\\", L"new\\below\\and below", L"there\\new", L"there\\\\new\\\\"})
        EXPECT_TRUE(vh::IsNewFolderPossible(folder.path().wstring() + L"\\" + name)) << name;
    for (const wchar_t* name : {L"there", L"there\\", L"there\\file", L"bad?name", L"there\\file\\new", L""})
        EXPECT_FALSE(vh::IsNewFolderPossible(folder.path().wstring() + L"\\" + name)) << name;
    EXPECT_EQ(Below(folder), before);
    for (const std::wstring& path :
         {std::wstring(), std::wstring(L"c:"), std::wstring(L"c:\\"), folder / std::wstring(300, L'x')})
        EXPECT_FALSE(vh::IsNewFolderPossible(path)) << path;
}

TEST(NewFolder, IsNotPossibleWhereNoneMayBeMadeOrItTakesNoFile)
{
    const TempFolder folder;
    const auto expect_none = [&] {
        EXPECT_FALSE(vh::IsNewFolderPossible(folder / L"new\\below"));
        EXPECT_EQ(Below(folder), L"");
    };
    {
        const Patched no_file("GetTempFileNameW", NoTempFile);
        expect_none();
    }
    const Patched no_folder("CreateDirectoryW", DeniedFolder);
    expect_none();
}

TEST(Folder, IsAcceptedByItsDiskItsSyntaxAndTheVerifyTest)
{
    const TempFolder folder;
    const std::wstring there = folder.path().wstring();
    Table<std::wstring, bool, bool> cases = {
        {L"", false, false},    {L"folder", false, false},      {there + L"\\a|b", false, false},
        {there, true, false},   {L"q:\\folder", false, false},  {there + L"\\a?b", false, false},
        {L"c:\\", true, false}, {there + L"\\new", true, true}, {L"\\\\no such server\\share\\a", false, false}};
    for (const auto& [path, plain, verified] : cases) {
        EXPECT_EQ(vh::IsFolderAccepted(path.c_str(), false), plain) << path;
        EXPECT_EQ(vh::IsFolderAccepted(path.c_str(), true), verified) << path;
    }
    EXPECT_EQ(Below(folder), L"");
}

} // namespace
