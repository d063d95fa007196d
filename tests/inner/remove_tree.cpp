// The removal of folders, and what it leaves alone.
#include "../../files/remove_tree.h"
#include "../../diagnostics/file_exception.h"
#include "../support/test.h"

namespace {

// Code and name; no failure has neither.
using Failure = std::pair<DWORD, std::wstring>;

Failure Remove(const std::wstring& path, bool ignore)
{
    try {
        RemoveTree(stringx(path), ignore);
    } catch (const file_exception& failure) {
        return {failure.code(), std::wstring(failure.name().view())};
    }
    return {};
}

unique_file Locked(const std::wstring& path)
{
    return unique_file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
}

TEST(RemoveTree, TakesFilesAndFolders)
{
    const TempFolder folder;
    const std::wstring tree = folder / L"tree";
    for (const wchar_t* name : {L"a", L"b\\c", L"b\\d\\e.x", L"b\\d\\.f", L"g h\\i"})
        folder.Write(L"tree\\" + std::wstring(name), "x");
    std::filesystem::create_directories(folder / L"tree\\empty\\empty");
    folder.Write(L"tree.txt", "x");
    EXPECT_EQ(Remove(tree, false), Failure());
    EXPECT_FALSE(std::filesystem::exists(tree));
    EXPECT_EQ(Remove(folder / L"tree.txt", false), Failure());
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
    EXPECT_EQ(Remove(tree, true), (Failure{ERROR_FILE_NOT_FOUND, tree}));
}

TEST(RemoveTree, GoesBelowTheUsualLengthOfPaths)
{
    const TempFolder folder;
    std::wstring deep = L"\\\\?\\" + folder.path().wstring();
    const std::wstring top = deep + L"\\a";
    for (int level = 0; level < 200; ++level) {
        deep += L"\\a";
        ASSERT_TRUE(CreateDirectoryW(deep.c_str(), nullptr)) << level;
    }
    EXPECT_EQ(Remove(top, false), Failure());
    EXPECT_EQ(GetFileAttributesW(top.c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST(RemoveTree, NamesWhatStays)
{
    const TempFolder folder;
    const std::wstring tree = folder / L"tree", locked = folder.Write(L"tree\\a\\locked", "x");
    folder.Write(L"tree\\a\\z", "x");
    {
        const unique_file open = Locked(locked);
        EXPECT_EQ(Remove(tree, false), (Failure{ERROR_SHARING_VIOLATION, locked}));
        EXPECT_EQ(Remove(tree, true), (Failure{ERROR_DIR_NOT_EMPTY, folder / L"tree\\a"}));
        EXPECT_FALSE(std::filesystem::exists(folder / L"tree\\a\\z")) << "others go all the same";
        EXPECT_EQ(Remove(locked, true), Failure()) << "a file alone";
        EXPECT_TRUE(std::filesystem::exists(locked));
    }
    EXPECT_EQ(Remove(tree, false), Failure());
}

// The folder "link" seems to be a junction, and opens as one or as what it leads to.
bool g_opens_itself = false;
HANDLE WINAPI Find(const wchar_t* pattern, WIN32_FIND_DATAW* found)
{
    EXPECT_EQ(std::wstring_view(pattern).find(L"link\\"), std::wstring_view::npos) << "a junction is listed";
    return OfSystem<decltype(FindFirstFileW)>("FindFirstFileW")(pattern, found);
}
BOOL WINAPI FindNext(HANDLE search, WIN32_FIND_DATAW* found)
{
    const BOOL more = OfSystem<decltype(FindNextFileW)>("FindNextFileW")(search, found);
    if (more && std::wstring_view(found->cFileName) == L"link")
        found->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return more;
}
DWORD WINAPI Attributes(const wchar_t* path)
{
    const DWORD attributes = OfSystem<decltype(GetFileAttributesW)>("GetFileAttributesW")(path);
    return std::wstring_view(path).ends_with(L"\\link") ? attributes | FILE_ATTRIBUTE_REPARSE_POINT : attributes;
}
BOOL WINAPI Facts(HANDLE file, BY_HANDLE_FILE_INFORMATION* facts)
{
    const BOOL known = OfSystem<decltype(GetFileInformationByHandle)>("GetFileInformationByHandle")(file, facts);
    if (g_opens_itself)
        facts->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return known;
}

TEST(RemoveTree, FollowsNoJunction)
{
    const Patched find("FindFirstFileW", &Find), next("FindNextFileW", &FindNext);
    const Patched attributes("GetFileAttributesW", &Attributes), facts("GetFileInformationByHandle", &Facts);
    Table<bool, const wchar_t*, const wchar_t*, DWORD> cases = {
        {true, L"tree", L"", 0},
        {true, L"tree\\link", L"", 0},
        // A stand-in for one with content can't go like one.
        {true, L"tree", L"kept", ERROR_DIR_NOT_EMPTY},
        {false, L"tree", L"kept", ERROR_NOT_A_REPARSE_POINT},
        {false, L"tree", L"", ERROR_NOT_A_REPARSE_POINT},
        {false, L"tree\\link", L"kept", ERROR_NOT_A_REPARSE_POINT}};
    for (const auto& [opens_itself, removed, kept, code] : cases) {
        const TempFolder folder;
        std::filesystem::create_directories(folder / L"tree\\link");
        if (*kept)
            folder.Write(L"tree\\link\\" + std::wstring(kept), "x");
        g_opens_itself = opens_itself;
        EXPECT_EQ(Remove(folder / removed, false), code ? (Failure{code, folder / L"tree\\link"}) : Failure());
        EXPECT_EQ(std::filesystem::exists(folder / L"tree\\link"), code != 0);
        EXPECT_EQ(std::filesystem::exists(folder / L"tree\\link\\kept"), *kept != 0);
    }
}

} // namespace
