#include "../support/replaced.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

std::wstring OpenError(const SetupFolder& folder)
{
    try {
        folder.Open();
    } catch (const engine_error& error) {
        return error.message().Text();
    }
    return L"(no error)";
}

// Lets folders named "out" look like links to other folders, which not every system lets a test make.
BOOL WINAPI AttributesWithLinks(LPCWSTR path, GET_FILEEX_INFO_LEVELS level, LPVOID data)
{
    const BOOL done = vh::test::OfSystem<decltype(GetFileAttributesExW)>("GetFileAttributesExW")(path, level, data);
    if (done && std::wstring_view(path).ends_with(L"\\out"))
        static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data)->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return done;
}

// Members of a product with one feature and one group, which has these files.
std::string WithFiles(const std::string& files)
{
    return R"("features": [{"name": "A", "files": [{"name": "g", "files": [)" + files + "]}]}]";
}

// `count` elements of a list, or members of an object, "#" standing for their numbers.
std::string Many(std::size_t count, const std::string& element, const char* separator = ",")
{
    std::string list;
    for (std::size_t i = 0; i < count; ++i) {
        std::string one = (i ? separator : "") + element;
        for (std::size_t at = one.find('#'); at != std::string::npos; at = one.find('#', at))
            one.replace(at, 1, std::to_string(i));
        list += one;
    }
    return list;
}

} // namespace

TEST(ProductFile, NamesThePlaceAndTheReasonOfEveryFault)
{
    Table<std::string, const wchar_t*, const wchar_t*> cases = {
        {R"("features": [], "colour": 1)", L"/colour: ", L"unknown key \"colour\""},
        {R"("features": {})", L"/features: ", L"list"},
        {R"("company": "x")", L"/features: ", L"\"features\" is missing"},
        {R"("features": [{"name": "A"}, {"name": "a"}])", L"/features/1: ", L"exists already"},
        {R"("features": [{"name": "A\\B"}])", L"/features/0/name: ", L"backslash"},
        {R"("features": [{"name": ""}])", L"/features/0/name: ", L"empty"},
        {R"("features": [{"name": "A", "visible": 1}])", L"/features/0/visible: ", L"true or false"},
        {R"("features": [{"name": "A", "order": 1.5}])", L"/features/0/order: ", L"whole number"},
        {R"("features": [{"name": "A", "order": 40000}])", L"/features/0/order: ", L"between 0 and 32767"},
        {R"("features": [{"name": "A", "target": "<TARGETDIR>\\..\\x"}])", L"/features/0/target: ", L"\"..\""},
        {R"("features": [{"name": "A", "systems": ["beos"]}])", L"/features/0/systems/0: ", L"beos"},
        {WithFiles(R"("../x")"), L"/features/0/files/0/files/0: ", L"relative"},
        {WithFiles(R"("C:\\x")"), L"/features/0/files/0/files/0: ", L"relative"},
        {WithFiles(R"("none.txt")"), L"/features/0/files/0/files/0: ", L"none.txt: the payload file is missing"},
        {WithFiles(R"("*.none")"), L"/features/0/files/0/files/0: ", L"no payload file matches"},
        {WithFiles(R"({"path": "a.bin", "size": 4})"), L"/features/0/files/0/files/0: ", L"10 bytes instead of 4"},
        {WithFiles(R"({"path": "a.bin", "flags": ["x"]})"), L"/features/0/files/0/files/0/flags/0: ", L"unknown flag"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "target": "../up", "files": []}]}])",
         L"/features/0/files/0/target: ", L"relative"},
        {WithFiles(R"({"path": "a.bin", "name": "Nul.txt"})"), L"/features/0/files/0/files/0/name: ",
         L"\"Nul.txt\" holds \"Nul.txt\", the name of a device"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "target": "x/end.", "files": ["a.bin"]}]}])",
         L"/features/0/files/0/target: ", L"dot or blank"},
        {WithFiles(R"({"path": "odd/*", "target": "t"})"), L"/features/0/files/0/files/0: ",
         L"the name \"t\\com7.x\" at the target holds \"com7.x\""},
        {WithFiles(R"("a.bin", {"path": "b.bin", "name": "A.BIN"})"), L"/features/0/files/0/files/1: ",
         L"b.bin has the target <TARGETDIR>\\A.BIN, which is that of "},
        {R"("features": [{"name": "A", "target": "<TARGETDIR>/s", "files": [{"name": "g", "files": ["a.bin"]}]},
            {"name": "B", "files": [{"name": "g", "files": [{"path": "b.bin", "name": "a.bin", "target": "S"}]}]}])",
         L"/features/1/files/0/files/0: ", L"b.bin has the target <TARGETDIR>\\S\\a.bin, which is that of "},
        {R"("features": [], "support": [{"name": "g", "files": ["a.bin"]}, {"name": "h", "files": [{"path": "b.bin", "name": "A.bin"}]}])",
         L"/support/1/files/0: ", L"which is that of "},
        {R"("features": [], "support": [{"name": "g", "files": [{"path": "a.bin", "target": "aux"}]}])",
         L"/support/0/files/0/target: ", L"device"},
        {R"("features": [], "target": "<PROGRAMFILES>\\con\\x")", L"/target: ", L"the name of a device"},
        {WithFiles(R"("out/secret.txt")"), L"/features/0/files/0/files/0: ", L"out: is a link to another folder"},
        {WithFiles(R"("out/deep/*")"), L"/features/0/files/0/files/0: ", L"out: is a link to another folder"},
        {R"("features": [], "payload": "out", "support": [{"name": "g", "files": ["secret.txt"]}])",
         L"/support/0/files/0: ", L"out: is a link to another folder"},
        {R"("features": [], "variables": [])", L"/variables: ", L"must be an object"},
        {R"("features": [], "variables": {"A<B": "x"})", L"/variables/A<B: ", L"'<'"},
        {R"("features": [], "installGuid": "{1}")", L"/installGuid: ", L"braces"},
        {R"("features": [], "payload": "..")", L"/payload: ", L"relative"},
        {R"("features": [], "scripts": ["a.js", "..\\b.js"])", L"/scripts/1: ", L"relative"},
        {R"("features": [], "strings": {"1031": {"A": "x"}})", L"/strings/1031: ", L"no language of the product"},
        {R"("features": [], "setupTypes": [{"name": "T", "features": ["None"]}])", L"/setupTypes/0/features/0: ",
         L"no feature \"None\""},
        {R"("features": [], "registrySets": [{"name": "S", "keys": [{"root": "HKXX", "key": "a"}]}])",
         L"/registrySets/0/keys/0/root: ", L"HKCU"},
        {R"("features": [], "registrySets": [{"name": "S", "keys": [{"root": "HKCU", "key": "a", "values": [{"type": "binary", "data": "0"}]}]}])",
         L"/registrySets/0/keys/0/values/0/data: ", L"hexadecimal"},
        {R"("features": [], "features": [])", L"product.json: ", L"twice"},
        {R"("features": [}])", L"product.json: ", L"no valid JSON"},
        {"\"features\": [\"\xC3(\"]", L"product.json: ", L"no valid JSON"}};
    const vh::test::Patched links("GetFileAttributesExW", AttributesWithLinks);
    for (const auto& [members, place, reason] : cases) {
        SetupFolder folder;
        folder.Payload(L"a.bin", std::string(10, 'a'));
        folder.Payload(L"b.bin", "b");
        WriteText(L"\\\\?\\" + folder.Setup(L"odd\\com7.x"), "x");
        folder.Payload(L"out\\secret.txt", "x");
        folder.Payload(L"out\\deep\\x", "x");
        folder.Product(members);
        const std::wstring message = OpenError(folder);
        EXPECT_NE(std::wstring::npos, message.find(place)) << members << "\n" << ToUtf8(message);
        EXPECT_NE(std::wstring::npos, message.find(reason)) << members << "\n" << ToUtf8(message);
        EXPECT_EQ(0u, message.find(folder.Setup(L"product.json"))) << ToUtf8(message);
    }
    SetupFolder wide;
    WriteText(wide.Setup(L"product.json"), "\xFF\xFE{");
    EXPECT_NE(std::wstring::npos, OpenError(wide).find(L"is UTF-16"));
}

// Each bound of docs/product-file.md, at the bound and one above.
TEST(ProductFile, TakesWhatItsBoundsAllowAndNoMore)
{
    // The count, a part of what one more is refused with, and what stands before, between and behind the elements.
    Table<std::size_t, const wchar_t*, const char*, const char*, const char*, const char*> limits = {
        {4096, L"4096", R"("features": [)", R"({"name": "F#"})", ",", "]"},
        {4095, L"more than 4096 features", R"("features": [{"name": "A", "features": [)", R"({"name": "F#"})", ",",
         "]}]"},
        {65536, L"65536", R"("features": [{"name": "A", "files": [{"name": "g", "files": [)",
         R"({"path": "a.bin", "name": "#"})", ",", "]}]}]"},
        {16, L"deeper than 16 levels", R"("features": )", R"([{"name": "F", "features": )", "", "[]"},
        {1024, L"1024", R"("features": [], "setupTypes": [)", R"({"name": "T#", "features": []})", ",", "]"},
        {1024, L"1024", R"("features": [], "registrySets": [)", R"({"name": "S"})", ",", "]"},
        {1024, L"1024", R"("features": [], "shellObjects": [)", R"({"name": "S#", "target": "x"})", ",", "]"},
        {1024, L"1024", R"("features": [], "support": [)", R"({"name": "g#", "files": []})", ",", "]"},
        {1024, L"1024", R"("features": [], "variables": {)", R"("V#": "x")", ",", "}"},
        {14, L"14", R"("features": [], "media": {"texts": [)", R"("x")", ",", "]}"},
        {255, L"255", R"("features": [], "media": {"texts": [")", "x", "", R"("]})"},
        {5, L"5", R"("features": [], "media": {"truths": [)", "true", ",", "]}"},
        {32767, L"32767", R"("features": [], "company": ")", "x", "", "\""},
        {200, L"200", R"("features": [{"name": ")", "x", "", R"("}])"},
        {1024, L"1024", R"("features": [], "target": ")", "x", "", "\""}};
    SetupFolder folder;
    folder.Payload(L"a.bin", "a");
    for (int i = 0; i < 64; ++i)
        folder.Payload(L"p\\" + std::to_wstring(i), "p");
    const auto check = [&](const std::string& allowed, const std::string& one_more, const std::wstring& reason) {
        folder.Product(allowed);
        EXPECT_EQ(L"(no error)", OpenError(folder)) << ToUtf8(reason);
        folder.Product(one_more);
        const std::wstring error = OpenError(folder);
        EXPECT_NE(std::wstring::npos, error.find(reason)) << ToUtf8(error);
    };
    for (const auto& [most, reason, before, element, separator, behind] : limits) {
        const auto members = [&, start = before, one = element, between = separator, end = behind](std::size_t count) {
            std::string closing = end;
            for (std::size_t i = 0; !*between && *one == '[' && i < count; ++i)
                closing += "}]";
            return start + Many(count, one, between) + closing;
        };
        check(members(most), members(most + 1), reason);
    }
    const std::string full = Many(4096, R"({"path": "p/*", "target": "t#"})");
    check(WithFiles(full), WithFiles(full + R"(, "a.bin")"), L"262144 files");
    check(R"("features": [], "languages": [65535])", R"("features": [], "languages": [65536])", L"65535");
    folder.Product("\"features\": []");
    std::string content = ReadWhole(folder.Setup(L"product.json"), 10000);
    content.resize(16u << 20, ' ');
    WriteText(folder.Setup(L"product.json"), content);
    EXPECT_EQ(L"(no error)", OpenError(folder));
    WriteText(folder.Setup(L"product.json"), content + ' ');
    EXPECT_NE(std::wstring::npos, OpenError(folder).find(L"is larger than"));
}

// One payload may belong to several features, and what never meets may share a name.
TEST(ProductFile, TakesSharedTargetsThatDoNoHarm)
{
    const char* const products[] = {
        R"("features": [{"name": "A", "files": [{"name": "g", "files": ["a.bin"]}]}, {"name": "B", "files": [{"name": "g", "files": ["A.BIN"]}]}])",
        R"("languages": [1033, 1031], "features": [{"name": "A", "files": [
            {"name": "en", "languages": [1033], "files": ["a.bin"]}, {"name": "de", "languages": [1031], "files": [{"path": "b.bin", "name": "a.bin"}]}]}])",
        R"("features": [{"name": "A", "systems": ["windows-7"], "files": [{"name": "g", "files": ["a.bin"]}]},
            {"name": "B", "systems": ["windows-11"], "files": [{"name": "g", "files": [{"path": "b.bin", "name": "a.bin"}]}]}])",
        R"("features": [{"name": "A", "files": [{"name": "g", "files": ["a.bin"]}]}], "support": [{"name": "g", "files": ["a.bin"]}])"};
    for (const char* product : products) {
        SetupFolder folder;
        folder.Payload(L"a.bin", "a");
        folder.Payload(L"b.bin", "b");
        folder.Product(product);
        EXPECT_EQ(L"(no error)", OpenError(folder)) << product;
    }
}

TEST(ProductFile, IsBoundedInDepthAndLevels)
{
    SetupFolder folder;
    std::string deep = "\"features\": ";
    for (int i = 0; i < 5000; ++i)
        deep += "[";
    folder.Product(deep);
    EXPECT_NE(std::wstring::npos, OpenError(folder).find(L"nested deeper than 48"));
    const std::wstring path = folder.Setup(L"product.json");
    const uint64_t whole = FactsOf(path).size;
    EXPECT_EQ(whole, ReadWhole(path, whole).size());
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_TOO_LARGE),
              vh::test::CodeOf<engine_error>([&] { ReadWhole(path, whole - 1); }));
    RemoveFile(folder.Setup(L"product.json"));
    EXPECT_NE(std::wstring::npos, OpenError(folder).find(L"product.json"));
    Options options = folder.Given();
    options.setupFolder = folder.Setup(L"nowhere");
    EXPECT_THROW(Engine::Open(std::move(options)), engine_error);
}

TEST(ProductFile, TakesAByteOrderMarkAndForeignNames)
{
    SetupFolder folder;
    folder.Payload(L"\u65e5\u672c\\\u00fcber.txt", "x");
    folder.Product(
        R"("features": [{"name": "\u65e5", "files": [{"name": "g", "files": ["\u65e5\u672c/\u00fcber.txt"]}]}])");
    wchar_t local[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"LOCALAPPDATA", local, MAX_PATH);
    EXPECT_EQ(std::wstring(local) + L"\\VHSetup\\{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D01}\\install.log",
              LogFileOf(folder.Setup()));
    WriteText(folder.Setup(L"product.json"), "\xEF\xBB\xBF" + ReadWhole(folder.Setup(L"product.json"), 10000));
    const auto engine = folder.Open();
    ASSERT_EQ(S_OK, MoveAll(*engine));
    EXPECT_EQ((std::vector<std::wstring>{L"\u00fcber.txt"}), Tree(folder.Target()));
}

TEST(ProductFile, TargetsThatAreNoPathFailWithTheFeaturesName)
{
    SetupFolder folder;
    folder.Payload(L"a.bin", "a");
    folder.Product(
        R"("features": [{"name": "Lost", "target": "<NOWHERE>\\x", "files": [{"name": "g", "files": ["a.bin"]}]}])");
    const auto engine = folder.Open();
    EXPECT_EQ(E_INVALIDARG, MoveAll(*engine));
    EXPECT_NE(std::wstring::npos, LastReason(*engine).find(L"\"Lost\""));
    ServiceOf<ISetupTextSub>(*engine, global_text_service)
        ->SetValue(bstr(L"NOWHERE").get(), bstr(std::wstring_view(folder.Target())).get());
    EXPECT_EQ(S_OK, MoveAll(*engine));
    EXPECT_TRUE(Exists(folder.Target(L"x\\a.bin")));
}
