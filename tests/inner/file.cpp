// The library's file: shared by its copies, marked or not, and the names of temporary files.
#include <thread>

#include "../../diagnostics/file.h"
#include "../support/test.h"

namespace {

DWORD OpenForReading(vh::file& file, const std::wstring& path)
{
    return file.open(path.c_str(), GENERIC_READ, FILE_SHARE_READ, FILE_ATTRIBUTE_NORMAL, OPEN_EXISTING);
}

TEST(File, StaysOpenUntilItsLastCopyIsClosed)
{
    const TempFolder folder;
    const std::wstring path = folder.Write(L"a", "abc");
    vh::file first;
    ASSERT_EQ(OpenForReading(first, path), 0u);
    vh::file second = first;
    char read[2] = {};
    EXPECT_EQ(first.read(read, 2), 2u);
    first.close();
    EXPECT_FALSE(first.is_open());
    EXPECT_EQ(second.read(read), 1u) << "a count of -1 is the size of the element";
    EXPECT_EQ(read[0], 'c') << "copies share the position";
    EXPECT_FALSE(DeleteFileW(path.c_str()));
    second.close();
    EXPECT_TRUE(DeleteFileW(path.c_str()));
    EXPECT_EQ(OpenForReading(second, path), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

TEST(File, KnowsItsMark)
{
    Table<std::string, UINT> cases = {
        {"", 0},   {"\xFF", 0}, {"\xFF\xFE", 1200}, {"\xFE\xFFx", 1201}, {"\xEF\xBB", 0}, {"\xEF\xBB\xBF", 65001},
        {"abc", 0}};
    const TempFolder folder;
    for (const auto& [content, code_page] : cases) {
        vh::file file;
        ASSERT_EQ(OpenForReading(file, folder.Write(L"m", content)), 0u);
        EXPECT_EQ(file.code_page(), code_page) << content;
        EXPECT_EQ(file.seek(0, FILE_CURRENT), 0u) << "the mark is still to be read";
        EXPECT_EQ(file.size(), content.size());
    }
    // A pipe has no size, and what were read from it would be lost.
    const std::wstring name = L"\\\\.\\pipe\\vhrt test " + std::to_wstring(GetCurrentProcessId());
    const HANDLE pipe = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 64, 64, 0, nullptr);
    std::thread writer([pipe] {
        DWORD written = 0;
        ConnectNamedPipe(pipe, nullptr);
        WriteFile(pipe, "\xFF\xFEx", 3, &written, nullptr);
        FlushFileBuffers(pipe);
        CloseHandle(pipe);
    });
    vh::file file;
    char bytes[4] = "";
    EXPECT_EACH(0u, OpenForReading(file, name), file.code_page());
    EXPECT_GIVES_TEXT(file.read_bytes(bytes, 3), 3u, bytes, "\xFF\xFEx");
    writer.join();
}

TEST(File, SaysWhatFailed)
{
    const TempFolder folder;
    const std::wstring path = folder.Write(L"a", "abc");
    vh::file file;
    ASSERT_EQ(OpenForReading(file, path), 0u);
    try {
        file.write("x", 1);
        FAIL() << "written to a file that is open for reading";
    } catch (const vh::file_exception& failure) {
        EXPECT_EQ(failure.code(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
        EXPECT_EQ(failure.name(), path.c_str());
        EXPECT_STRNE(failure.what(), "");
    }
    EXPECT_THROW(file.seek(-1, FILE_BEGIN), vh::file_exception);
}

TEST(TemporaryNames, LieBesideTheirFileAndAreFree)
{
    const TempFolder folder;
    const std::wstring path = folder / L"setup.ini";
    const stringx name = vh::make_temp_name(path);
    EXPECT_TRUE(name.view().starts_with((folder / L"set").c_str())) << name.c_str();
    EXPECT_EQ(GetFileAttributesW(name.c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_THROW(vh::make_temp_name((folder / L"none") + L"\\a"), vh::win32_exception);
}

} // namespace
