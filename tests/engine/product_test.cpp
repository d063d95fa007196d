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

} // namespace

struct BrokenProduct {
    std::string members;
    const wchar_t* place; // a part of the message
    const wchar_t* reason;
};

TEST(ProductFile, NamesThePlaceAndTheReasonOfEveryFault)
{
    const BrokenProduct cases[] = {
        {R"("features": [], "colour": 1)", L"/: ", L"unknown key \"colour\""},
        {R"("features": {})", L"/features: ", L"list"},
        {R"("company": "x")", L"/: ", L"\"features\" is missing"},
        {R"("features": [{"name": "A"}, {"name": "a"}])", L"/features/1: ", L"exists already"},
        {R"("features": [{"name": "A\\B"}])", L"/features/0/name: ", L"backslash"},
        {R"("features": [{"name": ""}])", L"/features/0/name: ", L"empty"},
        {R"("features": [{"name": "A", "visible": 1}])", L"/features/0/visible: ", L"true or false"},
        {R"("features": [{"name": "A", "order": 1.5}])", L"/features/0/order: ", L"whole number"},
        {R"("features": [{"name": "A", "order": 40000}])", L"/features/0/order: ", L"between 0 and 32767"},
        {R"("features": [{"name": "A", "target": "<TARGETDIR>\\..\\x"}])", L"/features/0/target: ", L"\"..\""},
        {R"("features": [{"name": "A", "systems": ["beos"]}])", L"/features/0/systems/0: ", L"beos"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "files": ["../x"]}]}])",
         L"/features/0/files/0/files/0: ", L"relative"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "files": ["C:\\x"]}]}])",
         L"/features/0/files/0/files/0: ", L"relative"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "files": ["none.txt"]}]}])",
         L"/features/0/files/0/files/0: ", L"none.txt: the payload file is missing"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "files": ["*.none"]}]}])",
         L"/features/0/files/0/files/0: ", L"no payload file matches"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "files": [{"path": "a.bin", "size": 4}]}]}])",
         L"/features/0/files/0/files/0: ", L"10 bytes instead of 4"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "files": [{"path": "a.bin", "flags": ["x"]}]}]}])",
         L"/features/0/files/0/files/0/flags/0: ", L"unknown flag"},
        {R"("features": [{"name": "A", "files": [{"name": "g", "target": "../up", "files": []}]}])",
         L"/features/0/files/0/target: ", L"relative"},
        {R"("features": [], "installGuid": "{1}")", L"/installGuid: ", L"braces"},
        {R"("features": [], "payload": "..")", L"/payload: ", L"relative"},
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
    for (const BrokenProduct& broken : cases) {
        SetupFolder folder;
        folder.Payload(L"a.bin", std::string(10, 'a'));
        folder.Product(broken.members);
        const std::wstring message = OpenError(folder);
        EXPECT_NE(std::wstring::npos, message.find(broken.place)) << broken.members << "\n" << ToUtf8(message);
        EXPECT_NE(std::wstring::npos, message.find(broken.reason)) << broken.members << "\n" << ToUtf8(message);
        EXPECT_EQ(0u, message.find(folder.Setup(L"product.json"))) << ToUtf8(message);
    }
}

TEST(ProductFile, IsBoundedInDepthAndLevels)
{
    SetupFolder folder;
    std::string deep = "\"features\": ";
    for (int i = 0; i < 5000; ++i)
        deep += "[";
    folder.Product(deep);
    EXPECT_NE(std::wstring::npos, OpenError(folder).find(L"nested deeper than 32"));
    const std::wstring path = folder.Setup(L"product.json");
    const uint64_t whole = FactsOf(path).size;
    EXPECT_EQ(whole, ReadWhole(path, whole).size());
    try {
        ReadWhole(path, whole - 1);
        ADD_FAILURE() << "read beyond the limit";
    } catch (const engine_error& error) {
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_TOO_LARGE), error.code());
    }
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
