// Parts of paths, their shortening and their syntax, on 16-bit units everywhere.
#include "../../scriptdata/path_text.h"
#include "../support/test.h"

namespace {

using namespace std::string_view_literals;
using view = std::u16string_view;

TEST(PathText, TakesEveryPathApart)
{
    Table<view, view, view, view, view, view, view> rows = {
        {u"", u"", u"", u"", u"", u"", u""},
        {u"c:", u"c:", u"c:", u"", u"", u"", u""},
        {u"c:\\", u"c:", u"c:\\", u"\\", u"", u"", u""},
        {u"c:\\a\\b.txt", u"c:", u"c:\\a\\", u"\\a\\", u"b.txt", u"b", u"txt"},
        {u"c:b.txt", u"c:", u"c:", u"", u"b.txt", u"b", u"txt"},
        {u"c:a\\b", u"c:", u"c:a\\", u"a\\", u"b", u"b", u""},
        {u"a\\b", u"", u"a\\", u"a\\", u"b", u"b", u""},
        {u"b", u"", u"", u"", u"b", u"b", u""},
        {u"\\b.c", u"", u"\\", u"\\", u"b.c", u"b", u"c"},
        {u"\\\\server\\share\\a.txt", u"\\\\server\\share", u"\\\\server\\share\\", u"\\", u"a.txt", u"a", u"txt"},
        {u"\\\\server\\share", u"\\\\server\\share", u"\\\\server\\share", u"", u"", u"", u""},
        {u"\\\\server", u"\\\\server", u"\\\\server", u"", u"", u"", u""},
        {u"\\\\server\\", u"\\\\server\\", u"\\\\server\\", u"", u"", u"", u""},
        {u"\\\\", u"", u"\\\\", u"\\\\", u"", u"", u""},
        {u"a.tar.gz", u"", u"", u"", u"a.tar.gz", u"a.tar", u"gz"},
        {u"c:\\a.b\\c", u"c:", u"c:\\a.b\\", u"\\a.b\\", u"c", u"c", u""},
        {u"c:\\a.", u"c:", u"c:\\", u"\\", u"a.", u"a", u""},
        {u"c:\\.rc", u"c:", u"c:\\", u"\\", u".rc", u"", u"rc"},
        {u"\\c:b.txt", u"", u"\\", u"\\", u"b.txt", u"b", u"txt"},
        {u"x/y.z", u"", u"", u"", u"x/y.z", u"x/y", u"z"},
        {u"c:\\\u00E4\\\u4E2D.\u6587", u"c:", u"c:\\\u00E4\\", u"\\\u00E4\\", u"\u4E2D.\u6587", u"\u4E2D", u"\u6587"}};
    for (const auto& [path, root, part, directory, file, name, extension] : rows) {
        SCOPED_TRACE(::testing::PrintToString(path));
        EXPECT_EQ(vh::PathRoot(path), root);
        EXPECT_EQ(vh::PathPart(path), part);
        EXPECT_EQ(vh::PathDirectory(path), directory);
        EXPECT_EQ(vh::PathFile(path), file);
        EXPECT_EQ(vh::PathFileName(path), name);
        EXPECT_EQ(vh::PathExtension(path), extension);
    }
}

TEST(PathText, BecomeAFolderAnotherExtensionOrALongerPath)
{
    EXPECT_EQ(vh::PathFolder(u"c:\\setup\\setup.exe"sv), u"c:\\setup\\");
    EXPECT_EQ(vh::PathFolder(u"c:\\setup.exe"sv), u"c:\\");
    EXPECT_EQ(vh::PathFolder(u"\\\\server\\share"sv), u"\\\\server\\share");
    EXPECT_EQ(vh::PathFolder(u"setup.exe"sv), u"setup.exe");
    EXPECT_EQ(vh::PathWithExtension(u"c:\\d.x\\data.cab"sv, u".hdr"), u"c:\\d.x\\data.hdr");
    EXPECT_EQ(vh::PathWithExtension(u"c:\\d.x\\data"sv, u".hdr"), u"c:\\d.x\\data.hdr");
    EXPECT_EQ(vh::PathWithExtension(u"a.b.c"sv, u".hdr"), u"a.b.hdr");
    EXPECT_EQ(vh::PathWithExtension(u""sv, u".hdr"), u".hdr");
    Table<view, view, view> rows = {
        {u"c:\\a", u"b", u"c:\\a\\b"}, {u"c:\\a\\", u"b", u"c:\\a\\b"}, {u"", u"b", u"b"}, {u"c:", u"", u"c:\\"}};
    for (const auto& [folder, name, joined] : rows) {
        std::u16string path(folder);
        vh::PathAppend(path, name);
        EXPECT_EQ(path, joined);
    }
}

TEST(PathText, ShortensFolderByFolderButNeverTheFile)
{
    const std::vector<std::vector<view>> chains = {
        {u"C:\\aaa\\bbb\\ccc\\f.txt", u"C:\\...\\bbb\\ccc\\f.txt", u"C:\\...\\ccc\\f.txt", u"C:\\...\\f.txt"},
        {u"C:\\a\\f", u"C:\\...\\f"},
        {u"C:\\f.txt"},
        {u"f.txt"},
        {u"C:"},
        {u"\\\\server\\share\\one\\two\\f", u"\\\\server\\share\\...\\two\\f", u"\\\\server\\share\\...\\f"},
        {u"C:\\.git\\objects\\f", u"C:\\...\\f"},
        {u"C:\\a\\b\\", u"C:\\...\\b\\", u"C:\\...\\"},
        {u"C:\\\\x", u"C:\\...\\x"},
        {u"a\\b\\c", u"a\\...\\c"},
        {u"C:\\.."}};
    for (const auto& chain : chains) {
        std::u16string path(chain.front());
        for (std::size_t step = 1; step < chain.size(); ++step) {
            EXPECT_TRUE(vh::ShortenPath(path));
            EXPECT_EQ(path, chain[step]);
        }
        EXPECT_FALSE(vh::ShortenPath(path)) << ::testing::PrintToString(path);
        EXPECT_EQ(path, chain.back());
    }
}

TEST(PathText, AcceptsWhatCouldBeAPath)
{
    for (const view path : {u"c:"sv, u"C:\\a b\\c.txt"sv, u"\\\\server\\share"sv, u"\"c:\\a b\""sv, u"\"c:\\a b"sv,
                            u"c:\\a b\""sv, u"\" c:\\a \""sv, u"\u4E2D\u6587"sv, u"."sv})
        EXPECT_TRUE(vh::IsPathSyntax(path)) << ::testing::PrintToString(path);
    for (const view other :
         {u""sv, u"  \t"sv, u"\""sv, u"\"\""sv, u"1:\\a"sv, u"\u00E9:\\a"sv, u":a"sv, u"c::"sv, u"c:\\a:b"sv,
          u" \"c:\\a b\" "sv, u"a\"b"sv, u"a*b"sv, u"a/b"sv, u"a<b"sv, u"a>b"sv, u"a?b"sv, u"a|b"sv})
        EXPECT_FALSE(vh::IsPathSyntax(other)) << ::testing::PrintToString(other);
}

} // namespace
