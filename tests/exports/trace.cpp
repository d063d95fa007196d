// The trace log, seen in the files that it leaves.
#include "../support/traced_library.h"

namespace {

// What stands behind the heading, without the line of the load.
std::string Lines(const std::wstring& path)
{
    const std::string text = DecodedTrace(path), heading = "Category|SubCategory|Details\r\n";
    const size_t begin = text.find(heading);
    if (begin == text.npos)
        return "<no heading>";
    const std::string data = text.substr(begin + heading.size());
    EXPECT_EQ(data.find("VHSetupInit|DLLProcessAttach|Library="), 0u);
    return data.substr(data.find("\r\n") + 2);
}

struct OpenTrace : testing::Test {
    const TempFolder folder;
    const std::wstring path = folder / L"t.bin";
    TracedLibrary library{path};
};

TEST_F(OpenTrace, BeginsWithItsHeaderAndTheLoad)
{
    int records = 0;
    const std::string text = DecodedTrace(path, &records);
    EXPECT_EQ(records, 7 + 2);
    EXPECT_EQ(text.find("FormatVersion=00000112\r\n\r\n"), 0u);
    EXPECT_NE(text.find("\r\nSetupExe: "), text.npos);
    EXPECT_NE(text.find("vhrt_export_tests.exe\r\nSetupExeVersion: 0.0.0.0\r\n\r\nTraceData:\r\n"), text.npos);
    SYSTEMTIME now;
    GetLocalTime(&now);
    char year[32];
    std::snprintf(year, sizeof(year), "/%04d ", static_cast<int>(now.wYear));
    EXPECT_NE(text.find(year, text.find("TraceStarted: ")), text.npos);

    library.Unload();
    EXPECT_NE(DecodedTrace(path).find("VHSetupInit|DLLProcessDetach|Library="), text.npos);
    TracedLibrary again(path);
    const std::string both = DecodedTrace(path);
    EXPECT_EQ(both.find("FormatVersion", 1), both.npos) << "one header for all runs";
}

TEST_F(OpenTrace, StoresLengthAndScrambledBytes)
{
    DeleteFileW(path.c_str());
    VHRT_GET(library, _SetupTraceWrite)(L"A", L"", L"");
    // "A||" and "\r\n", each with its length; a file that was deleted comes back without a header.
    const std::string record("\3\0\0\0\x24\xD4\xD8\2\0\0\0\x15\x0D", 13);
    EXPECT_EQ(BytesOf(path), record);
    folder.Large(L"t.bin", (5ll << 30) + 7);
    VHRT_GET(library, _SetupTraceWrite)(L"A", L"", L"");
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    file.seekg((5ll << 30) + 7);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), record) << "at the end of a file of any size";
}

TEST_F(OpenTrace, CleansLineEndsOutOfDetails)
{
    Table<const wchar_t*, const char*> cases = {
        {L"abc\n\n", "abc_"},  {L"abc\r\n", "abc"}, {L"abc", "abc"}, {L"a\r\nb\nc", "a_b_c"},
        {L"a\r\n\r\n", "a_"},  {L"a\rb", "a\rb"},   {L"\n", ""},     {L"", ""},
        {L"a|b\tc", "a|b\tc"}, {L"100%%", "100%"},  {L"\r", ""},     {L"%d of %d", "0 of 0"},
        {L"a%n%5hhnb", "ab"},  {L"%s.", "(null)."}, {L"%%n", "%n"},  {L"http://u:p@h/x", "http://u:***@h/x"},
        {L"%5%nn.%d", "%5n.0"}};
    std::string expected;
    for (const auto& [details, line] : cases) {
        EXPECT_EQ(VHRT_GET(library, _SetupTraceWrite)(L"Cat\n", nullptr, details), 0);
        expected += "Cat\n||" + std::string(line) + "\r\n";
    }
    EXPECT_EQ(Lines(path), expected);
}

TEST_F(OpenTrace, CutsLongDetails)
{
    for (const size_t length : {16380u, 16381u, 16382u, 40000u}) {
        DeleteFileW(path.c_str());
        VHRT_GET(library, _SetupTraceWrite)(L"C", L"S", std::wstring(length, L'x').c_str());
        const std::string expected = "C|S|" + std::string(std::min<size_t>(length, 16381), 'x') + "\r\n";
        EXPECT_EQ(DecodedTrace(path), expected) << length;
    }
    VHRT_GET(library, _SetupTraceWrite)((std::wstring(16370, L'c') + L"http://u:secret@h").c_str(), L"", L"");
    EXPECT_NE(DecodedTrace(path).find("chttp://u:***"), std::string::npos) << "cut inside a password";
}

TEST(Trace, NeverFailsItsCaller)
{
    const TempFolder folder;
    const std::wstring read_only = folder.Write(L"read only.bin", "");
    SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
    for (const std::wstring& path : {read_only, folder.path().wstring(), folder / L"no such folder\\t.bin",
                                     std::wstring(L"Q:\\?:*\\t.bin"), std::wstring(L"Z:\\dev\\full")}) {
        TracedLibrary library(path);
        ASSERT_NE(library.module(), nullptr);
        SetLastError(1234);
        EXPECT_EQ(VHRT_GET(library, _SetupTraceWrite)(L"C", L"S", L"text"), 0);
        EXPECT_EQ(GetLastError(), 1234u);
    }
    SetFileAttributesW(read_only.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(Trace, StaysOffWithoutTheSwitch)
{
    const TempFolder folder;
    TracedLibrary library(L"", false);
    EXPECT_EQ(VHRT_GET(library, _SetupTraceWrite)(L"C", L"S", L"%n%n"), 0);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(Trace, NamesItsFileAfterTheProcessOnTheDesktop)
{
    wchar_t profile[MAX_PATH];
    ASSERT_NE(GetEnvironmentVariableW(L"USERPROFILE", profile, MAX_PATH), 0u);
    const std::wstring file =
        std::wstring(profile) + L"\\Desktop\\setuptrace" + std::to_wstring(GetCurrentProcessId()) + L".bin";
    DeleteFileW(file.c_str());
    {
        TracedLibrary library(L"");
        EXPECT_EQ(Lines(file), "");
    }
    EXPECT_TRUE(DeleteFileW(file.c_str()));
}

TEST(TracedCalls, WriteBeginAndEndWithTheirTabs)
{
    const std::string text = TracedCalls(nullptr, nullptr, [](auto& library, ObjectContext* context) {
        VHRT_GET(library, _ComponentMoveData)(context, L"none", 7);
        VHRT_GET(library, _ComponentTransferData)(context, L"none");
        VHRT_GET(library, _CreateRegistrySet)(context, nullptr, L"Set");
        VHRT_GET(library, _CreateShellObjects)(context, L"none");
        VHRT_GET(library, _ComponentLoadTarget)(context, L"T");
        VHRT_GET(library, _ComponentSaveTarget)(context, L"T");
        VHRT_GET(library, _FileCopy)(context, L"C:\\a", nullptr, 0x202);
        VHRT_GET(library, _CreateDir)(context, L"C:\\d");
        VHRT_GET(library, _ComponentMoveData)(nullptr, L"M", 0);
        VHRT_GET(library, _FileCopy)(nullptr, L"s", L"t", 1);
    });
    const char* const failure = "Failure\t\tError=0xffffffff\t\t";
    const char* const no_media = "Failure\t\tError=0x8004f084\t\t";
    EXPECT_EQ(text, Record("FeatureMoveData", "Media=none", "Failure\t\tError=0x8004f07e\t\t") +
                        Record("FeatureTransferData", "Media=none", no_media) +
                        "VHFuncBegin|CreateRegistrySet|Set\r\n"
                        "VHFuncEnd|CreateRegistrySet|Result=Failure\t\tError=0x8004f084\tRegistrySet=Set\r\n" +
                        Record("CreateShellObjects", "", "Failure\t\tError=0x8004f084\t") +
                        Record("FeatureLoadTarget", "Name=T") + Record("FeatureSaveTarget", "Name=T") +
                        Record("XCopyFile", "Source=C:\\a\tTarget=\tFlags=0x00000202", failure) +
                        Record("CreateDir", "Dir=C:\\d", failure) + Record("FeatureMoveData", "Media=M") +
                        Record("XCopyFile", "Source=s\tTarget=t\tFlags=0x00000001"));
}

} // namespace
