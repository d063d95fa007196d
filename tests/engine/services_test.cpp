#include "../../engine/services/registry_object.h"
#include "../support/replaced.h"
#include "setup_folder.h"

using namespace vh;
using namespace vh::engine;
using namespace vh::engine::test;

namespace {

const LONG64 current_user = static_cast<int32_t>(0x80000001), local_machine = static_cast<int32_t>(0x80000002);

// A key of the test's own; it goes with the test.
class TestKey {
public:
    TestKey() { RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\VHEngineTest"); }
    ~TestKey() { RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\VHEngineTest"); }

    bool Exists() const
    {
        unique_key key;
        return RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\VHEngineTest", 0, KEY_READ, key.put()) == ERROR_SUCCESS;
    }
    std::wstring Text(const wchar_t* name, const wchar_t* below = L"") const
    {
        wchar_t text[200] = {};
        DWORD size = sizeof text;
        RegGetValueW(HKEY_CURRENT_USER, (std::wstring(L"Software\\VHEngineTest") + below).c_str(), name, RRF_RT_REG_SZ,
                     nullptr, text, &size);
        return text;
    }
    void Write(const wchar_t* name, const wchar_t* text) const
    {
        RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\VHEngineTest", name, REG_SZ, text,
                        static_cast<DWORD>((wcslen(text) + 1) * sizeof(wchar_t)));
    }
};

// The registry service with its log and a key of the test's own; names of keys are those below it.
class Registry : public OnTree {
protected:
    void SetUp() override
    {
        OnTree::SetUp();
        Begin(folder.Given());
    }
    void Begin(const Options& options)
    {
        registry.reset();
        log.reset();
        Reopen(options);
        registry = ServiceOf<ISetupRegistry>(*engine);
        log = ServiceOf<ISetupLog>(*engine);
    }
    static bstr At(const wchar_t* below = L"")
    {
        return bstr((L"Software\\VHEngineTest" + std::wstring(below)).c_str());
    }
    HRESULT Create(const bstr& name, LONG64 root = current_user) const
    {
        return registry->CreateKey(root, name.get(), nullptr, VARIANT_FALSE, log.get());
    }
    HRESULT Set(const bstr& name, const wchar_t* name_of_value, const wchar_t* text, LONG64 root = current_user) const
    {
        variant data(text);
        return registry->SetValue(root, name.get(), bstr(name_of_value).get(), REG_SZ, &data.get(), log.get());
    }
    HRESULT Delete(const bstr& name, LONG64 root = current_user) const
    {
        return registry->DeleteKey(root, name.get(), 0);
    }
    HRESULT Erase(const bstr& name, const wchar_t* name_of_value) const
    {
        return registry->DeleteValue(current_user, name.get(), bstr(name_of_value).get());
    }
    bool There(const bstr& name, LONG64 root = current_user) const
    {
        VARIANT_BOOL exists = VARIANT_FALSE;
        return SUCCEEDED(registry->KeyExists(root, name.get(), &exists)) && exists;
    }

    const TestKey key;
    com_ptr<ISetupRegistry> registry;
    com_ptr<ISetupLog> log;
    variant value;
    safe_array names;
    long type = 0;
};

const char* const registry_product =
    R"("features": [{"name": "On"}, {"name": "Off", "selected": false}], "registrySets": [
    {"name": "Main", "keys": [{"root": "HKCU", "key": "Software\\VHEngineTest\\<PRODUCT_NAME>", "values": [
        {"name": "Path", "type": "text", "data": "<TARGETDIR>\\x"}, {"name": "Count", "type": "number", "data": 4000000000},
        {"name": "Blob", "type": "binary", "data": "00ff10"}, {"name": "List", "type": "texts", "data": ["one", "two"]}]}]},
    {"name": "Left out", "feature": "Off", "keys": [{"root": "HKCU", "key": "Software\\VHEngineTest\\Off"}]},
    {"name": "Value", "keys": [{"root": "HKCU", "key": "Software\\VHEngineTest", "values": [
        {"name": "Mine", "type": "text", "data": "new"}]}]}])";

using Directories = OnTree;
using Scripts = OnTree;

} // namespace

TEST_F(Registry, SetsAreWrittenForSelectedFeaturesAndRemovedByTheLog)
{
    key.Write(L"Mine", L"old");
    folder.Product(registry_product);
    Begin(folder.Given());
    const auto data = ServiceOf<ISetupData>(*engine);
    ASSERT_EQ(S_OK, data->CreateRegistrySet(bstr(L"").get(), log.get())) << ToUtf8(LastReason(*engine));
    EXPECT_EQ(E_INVALIDARG, data->CreateRegistrySet(bstr(L"None").get(), log.get()));
    EXPECT_EQ(folder.Target(L"x"), key.Text(L"Path", L"\\Probe"));
    EXPECT_EQ(L"new", key.Text(L"Mine"));
    EXPECT_FALSE(There(At(L"\\Off")));
    const auto query = [&](const wchar_t* name) {
        return registry->QueryValue(current_user, At(L"\\Probe").get(), bstr(name).get(), &type, value.put());
    };
    ASSERT_EQ(S_OK, query(L"List"));
    EXPECT_EQ(std::wstring_view(L"one\0two\0", 8), value.text());
    ASSERT_EQ(S_OK, query(L"Count"));
    EXPECT_EQ(static_cast<long>(4000000000u), value.get().lVal);
    ASSERT_EQ(S_OK, query(L"Blob"));
    EXPECT_EQ(3u, SysStringByteLen(value.get().bstrVal));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), query(L"None"));
    EXPECT_EQ(E_INVALIDARG, registry->SetValue(0x80000001, At().get(), bstr(L"C").get(), 11, &value.get(), log.get()))
        << "no such type";
    EXPECT_TRUE(There(At(), 0x80000001)) << "a root without its sign is the same root";
    Uninstall(End());
    EXPECT_EQ(L"old", key.Text(L"Mine"));
    EXPECT_EQ(L"", key.Text(L"Path", L"\\Probe"));
}

// The second product writes the same value or another one, and goes as the second or the first.
TEST_F(Registry, LeavesToAnotherProductWhatItHasToo)
{
    vh::test::Table<const wchar_t*, const wchar_t*, bool> cases = {
        {L"", L"one", true},     {L"", L"one", false},     {L"", L"two", true},     {L"", L"two", false},
        {L"mine", L"one", true}, {L"mine", L"one", false}, {L"mine", L"two", true}, {L"mine", L"two", false}};
    for (const auto& [before, text, newestFirst] : cases) {
        SCOPED_TRACE(ToUtf8(before + std::wstring(L" ") + text) + (newestFirst ? " newest first" : ""));
        key.Write(L"V", before);
        if (!*before)
            RegDeleteKeyValueW(HKEY_CURRENT_USER, L"Software\\VHEngineTest", L"V");
        const auto write = [&](const wchar_t* given) {
            Begin(folder.Given());
            EXPECT_EQ(S_OK, Set(At(), L"V", given));
            EXPECT_EQ(S_OK, Set(At(L"\\Maker"), L"W", L"same"));
        };
        MakeTree(folder);
        write(L"one");
        const std::wstring first = End();
        folder.Product(R"("installGuid": "{6F3C1C39-0C50-4C92-8B0D-5A1A4F3E1D02}", "features": [])");
        write(text);
        engine->Rollback();
        EXPECT_EQ(L"one", key.Text(L"V"));
        EXPECT_EQ(L"same", key.Text(L"W", L"\\Maker"));
        write(text);
        const std::wstring second = End();
        Uninstall(newestFirst ? second : first);
        EXPECT_EQ(newestFirst ? L"one" : text, key.Text(L"V"));
        EXPECT_EQ(L"same", key.Text(L"W", L"\\Maker"));
        Uninstall(newestFirst ? first : second);
        EXPECT_EQ(before, key.Text(L"V"));
        EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegDeleteKeyW(HKEY_CURRENT_USER, L"Software\\VHEngineTest\\Maker"));
    }
}

// The whole registry below one key, each root and each view under a name of its own.
TEST_F(Registry, CanBeARunsOwn)
{
    folder.Product(registry_product);
    Options options = folder.Given();
    options.registryRoot = L"HKCU\\Software\\VHEngineTest\\Own";
    Begin(options);
    ASSERT_EQ(S_OK, ServiceOf<ISetupData>(*engine)->CreateRegistrySet(bstr(L"").get(), log.get()));
    EXPECT_EQ(folder.Target(L"x"), key.Text(L"Path", L"\\Own\\HKCU\\Software\\VHEngineTest\\Probe"));
    ASSERT_EQ(S_OK, Set(bstr(L"Software\\Any"), L"V", L"64", local_machine));
    registry.query<ISetupRegistryOptions>()->SetOptions(registry_view32);
    ASSERT_EQ(S_OK, Set(bstr(L"Software\\Any"), L"V", L"32", local_machine));
    EXPECT_EQ(L"64", key.Text(L"V", L"\\Own\\HKLM\\Software\\Any"));
    EXPECT_EQ(L"32", key.Text(L"V", L"\\Own\\HKLM32\\Software\\Any"));
    registry.query<ISetupRegistryOptions>()->SetOptions(0);
    LONG64 remote = 0;
    ASSERT_EQ(S_OK, registry->Connect(current_user, bstr(L"").get(), &remote));
    ASSERT_EQ(S_OK, registry->EnumKeys(remote, bstr(L"Software").get(), names.put()));
    EXPECT_EQ(names.last(), 0) << "another machine's keys are the run's own too";
    EXPECT_EQ(S_OK, registry->Disconnect(remote));
    log.reset();
    registry.reset();
    Uninstall(End());
    EXPECT_FALSE(key.Exists());
}

// Whatever a script takes away comes back with the rollback, and a commit ends that.
TEST_F(Registry, AndShortcutsComeBackFromEveryDeletion)
{
    key.Write(L"Mine", L"one");
    RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\VHEngineTest\\A\\B", L"Deep", REG_SZ, L"two", 8);
    RegSetKeyValueW(HKEY_CURRENT_USER, L"Software\\VHEngineTest\\A", nullptr, REG_SZ, L"three", 12);
    const std::wstring menu = folder.Target(L"menu");
    WriteText(menu + L"\\sub\\one.lnk", "shortcut 1");
    WriteText(menu + L"\\two.lnk", "shortcut 2");
    const auto tree = Tree(folder.Target());
    for (const bool commit : {false, true}) {
        const auto shell = ServiceOf<ISetupShell>(*engine);
        ASSERT_EQ(S_OK, Delete(At(L"\\A")));
        ASSERT_EQ(S_OK, Erase(At(), L"Mine"));
        variant text(L"unlogged");
        ASSERT_EQ(S_OK,
                  registry->SetValue(current_user, At(L"\\A").get(), bstr(L"").get(), REG_SZ, &text.get(), nullptr));
        ASSERT_EQ(S_OK, shell->RemoveItem(bstr(menu + L"\\two").get()));
        ASSERT_EQ(S_OK, shell->RemoveFolder(bstr(menu + L"\\sub").get()));
        EXPECT_FALSE(Exists(menu + L"\\two.lnk") || Exists(menu + L"\\sub"));
        EXPECT_EQ(L"", key.Text(L"Mine") + key.Text(L"Deep", L"\\A\\B"));
        if (commit) {
            engine->Commit();
            EXPECT_EQ(std::vector<std::wstring>{L"menu"}, Tree(folder.Target()));
            EXPECT_EQ(L"unlogged", key.Text(L"", L"\\A"));
            continue;
        }
        EXPECT_FALSE(AnyFailed(engine->Rollback()));
        EXPECT_EQ(tree, Tree(folder.Target()));
        EXPECT_EQ("shortcut 1", ReadWhole(menu + L"\\sub\\one.lnk", 100));
        EXPECT_EQ(L"one", key.Text(L"Mine"));
        EXPECT_EQ(L"two", key.Text(L"Deep", L"\\A\\B"));
        EXPECT_EQ(L"three", key.Text(L"", L"\\A"));
    }
    registry.reset();
    log.reset();
    engine.reset();
    EXPECT_FALSE(Exists(LogFileOf(folder.Setup(), folder.Data()))) << "nothing stays to be removed";
}

// A slash is a letter of a name, and backslashes at the end count in no call.
TEST_F(Registry, DividesKeysAtBackslashesAlone)
{
    ASSERT_EQ(S_OK, Create(At(L"\\A\\B\\C\\\\")));
    ASSERT_EQ(S_OK, Create(At(L"\\A/B")));
    const bstr b = At(L"\\A\\B\\");
    EXPECT_EACH(
        S_OK, Set(b, L"V", L"t"), registry->QueryValue(current_user, b.get(), bstr(L"V").get(), &type, value.put()),
        registry->EnumKeys(current_user, At(L"\\A\\").get(), names.put()), Erase(b, L"V"), Delete(At(L"\\A/B\\")));
    EXPECT_FALSE(There(At(L"\\A/B")));
    EXPECT_TRUE(There(At(L"\\A\\B\\C")));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), Delete(At(L"\\A/B")));
    EXPECT_EQ(E_INVALIDARG, Delete(bstr(L"\\"))) << "a root stays";
    EXPECT_EQ(S_OK, Delete(At(L"\\A\\")));
    EXPECT_FALSE(There(At(L"\\A")));
}

TEST_F(Registry, TakesAClosedKeyForOneThatIsThere)
{
    key.Write(L"V", L"kept");
    unique_key open;
    RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\VHEngineTest", 0, KEY_ALL_ACCESS, open.put());
    SECURITY_DESCRIPTOR nobody{};
    ACL empty{};
    InitializeSecurityDescriptor(&nobody, SECURITY_DESCRIPTOR_REVISION);
    InitializeAcl(&empty, sizeof empty, ACL_REVISION);
    SetSecurityDescriptorDacl(&nobody, TRUE, &empty, FALSE);
    ASSERT_EQ(ERROR_SUCCESS, RegSetKeySecurity(open.get(), DACL_SECURITY_INFORMATION, &nobody));
    VARIANT_BOOL exists = VARIANT_FALSE;
    const bstr name = At();
    const HRESULT codes[] = {registry->KeyExists(current_user, name.get(), &exists),
                             registry->QueryValue(current_user, name.get(), bstr(L"V").get(), &type, value.put()),
                             Create(name),
                             Set(name, L"V", L"new"),
                             registry->EnumValues(current_user, name.get(), names.put()),
                             Erase(name, L"V"),
                             Delete(name)};
    SetSecurityDescriptorDacl(&nobody, TRUE, nullptr, FALSE);
    RegSetKeySecurity(open.get(), DACL_SECURITY_INFORMATION, &nobody);
    for (const HRESULT code : codes)
        EXPECT_EQ(E_ACCESSDENIED, code);
    engine->Rollback();
    EXPECT_EQ(L"kept", key.Text(L"V"));
}

// What can't be read can't be brought back: nothing of it goes.
TEST_F(Registry, KeepsATreeThatItCanNotRecord)
{
    key.Write(L"V", L"kept");
    ASSERT_EQ(S_OK, Create(At(L"\\A")));
    {
        const vh::test::Patched unreadable(
            "RegEnumKeyExW", +[](HKEY, DWORD, wchar_t*, DWORD*, DWORD*, wchar_t*, DWORD*, FILETIME*) WINAPI -> LSTATUS {
                return ERROR_INVALID_DATA;
            });
        EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_INVALID_DATA), Delete(At()));
    }
    EXPECT_EQ(L"kept", key.Text(L"V"));
}

// Bit 0 of the option word.
TEST_F(Registry, KeepsItsViewsApart)
{
    const auto there = [&](long view) {
        registry.query<ISetupRegistryOptions>()->SetOptions(view);
        return There(At(), local_machine);
    };
    EXPECT_FALSE(there(registry_view32));
    ASSERT_EQ(S_OK, Create(At(), local_machine));
    EXPECT_TRUE(there(registry_view32));
    EXPECT_FALSE(there(0));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), Delete(At(), local_machine));
    EXPECT_TRUE(there(registry_view32));
    engine->Rollback();
    EXPECT_FALSE(there(registry_view32));
}

TEST_F(Registry, ConnectsToAMachineByNameOrSaysWhyNot)
{
    wchar_t machine[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD size = MAX_COMPUTERNAME_LENGTH + 1;
    ASSERT_TRUE(GetComputerNameW(machine, &size));
    const LONG64 users = static_cast<int32_t>(0x80000003);
    LONG64 remote = 0;
    ASSERT_EQ(S_OK, registry->Connect(users, bstr((std::wstring(L"\\\\") + machine).c_str()).get(), &remote));
    EXPECT_EQ(S_OK, registry->EnumKeys(remote, bstr(L"").get(), names.put()));
    EXPECT_GE(names.last(), 0);
    EXPECT_EQ(S_OK, registry->Disconnect(remote));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_BAD_NETPATH),
              registry->Connect(users, bstr(L"\\\\no-such-machine").get(), &remote));
    EXPECT_NE(std::wstring::npos, LastReason(*engine).find(L"no-such-machine")) << ToUtf8(LastReason(*engine));
}

TEST(CopyJobs, TakeFilesWildcardsAndSubfolders)
{
    vh::test::Table<const wchar_t*, const wchar_t*, unsigned long, const wchar_t*> cases = {
        {L"a.bin", L"x\\", 0, L"x;x\\a.bin;"},
        {L"a.bin", L"renamed.bin", 0, L"renamed.bin;"},
        {L"<SRCDIR>\\*.bin", L"all", 0, L"all;all\\a.bin;all\\b.bin;all\\c.bin;all\\d.bin;"},
        {L"docs\\*.t?t", L"t", 0, L"t;t\\1.txt;"},
        {L"docs\\*", L"t", 1, L"t;t\\1.txt;t\\deep;t\\deep\\\u00e4.txt;"}};
    for (const auto& [source, target, flags, tree] : cases) {
        SetupFolder folder;
        MakeTree(folder);
        folder.Payload(L"docs\\1.txt", "1");
        folder.Payload(L"docs\\deep\\\u00e4.txt", "22");
        const auto engine = folder.Open();
        ASSERT_EQ(S_OK, Copy(*engine, source, target, flags, true)) << ToUtf8(LastReason(*engine));
        std::wstring made;
        for (const std::wstring& name : Tree(folder.Target()))
            made += name + L";";
        EXPECT_EQ(tree, made);
        engine->Rollback();
        EXPECT_FALSE(Exists(folder.Target()));
    }
}

TEST(CopyJobs, ObeyTheirFlagsAndNameWhatIsMissing)
{
    SetupFolder folder;
    MakeTree(folder);
    WriteText(folder.Target(L"a.bin"), "present");
    WriteText(folder.Target(L"b.bin"), "present");
    SetFileAttributesW(folder.Target(L"b.bin").c_str(), FILE_ATTRIBUTE_READONLY);
    const auto engine = folder.Open();
    const auto copy = [&](const wchar_t* source, unsigned long flags) {
        return Copy(*engine, source, L"<TARGETDIR>\\", flags);
    };
    EXPECT_EQ(S_OK, copy(L"a.bin", 0x4));
    EXPECT_EQ("present", ReadWhole(folder.Target(L"a.bin"), 100));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED), copy(L"b.bin", 0));
    EXPECT_EQ(S_OK, copy(L"b.bin", 0x4000));
    EXPECT_EQ(std::string(20, 'b'), ReadWhole(folder.Target(L"b.bin"), 100));
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), copy(L"none*.bin", 0));
    EXPECT_NE(std::wstring::npos, LastReason(*engine).find(L"none*.bin"));
    EXPECT_EQ(E_NOTIMPL, copy(L"http://localhost/x", 0));
    // Equal size and time don't stand for equal content.
    const FILETIME time = TimeOf(folder.Setup(L"a.bin"));
    WriteText(folder.Target(L"a.bin"), std::string(10, '?'));
    SetTime(folder.Target(L"a.bin"), time);
    EXPECT_EQ(S_OK, copy(L"a.bin", 0));
    EXPECT_EQ(std::string(10, 'a'), ReadWhole(folder.Target(L"a.bin"), 100));
    engine->Commit();
    EXPECT_EQ((std::vector<std::wstring>{L"a.bin", L"b.bin"}), Tree(folder.Target()));
}

TEST_F(Directories, AreMadeWithTheirParentsAndRemovedByTheLog)
{
    const auto files = ServiceOf<ISetupFileOps>(*engine);
    ASSERT_EQ(S_OK, files->MakeDirectory(bstr(L"one\\two").get(), ServiceOf<ISetupLog>(*engine).get()));
    ASSERT_EQ(S_OK, files->MakeDirectory(bstr(std::wstring_view(folder.Target(L"three"))).get(), nullptr));
    ASSERT_EQ(S_OK, files->MakeDirectory(bstr(L"one\\two").get(), ServiceOf<ISetupLog>(*engine).get()));
    engine->Rollback();
    EXPECT_EQ((std::vector<std::wstring>{L"three"}), Tree(folder.Target()));
    WriteText(folder.Target(L"file"), "");
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS), files->MakeDirectory(bstr(L"file\\below").get(), nullptr));
}

TEST(Facts, AnswerByNumberAndGiveWayToTheHosts)
{
    SetupFolder folder;
    folder.Product(R"("features": [], "languages": [1033, 1031], "skin": "blue.skin")");
    Options options = folder.Given();
    options.language = 1031;
    options.silent = true;
    options.commandLine = L"--silent x";
    options.facts[44] = variant(L"C:\\pack");
    const auto engine = Engine::Open(std::move(options));
    const auto info = ServiceOf<ISetupInfo>(*engine);
    const std::pair<long, std::wstring> facts[] = {
        {10, L"-1"}, {12, L"--silent x"}, {2, folder.Setup(L"setup.js")}, {18, L"1031"}, {21, L"blue.skin"},
        {35, L"0"},  {44, L"C:\\pack"}};
    for (const auto& [number, expected] : facts) {
        variant value;
        ASSERT_EQ(S_OK, info->GetFact(number, value.put())) << number;
        if (value.type() == VT_BOOL)
            value.change(VT_I2);
        value.change(VT_BSTR);
        EXPECT_EQ(expected, value.text()) << number;
    }
    variant value;
    EXPECT_EQ(E_INVALIDARG, info->GetFact(1, value.put()));
}

TEST_F(Scripts, DriveObjectsByName)
{
    const auto texts = ServiceOf<ISetupTextSub>(*engine, local_text_service).query<IDispatch>();
    PropertyText(texts.get(), L"Value", DISPATCH_PROPERTYPUT, {variant(L"v"), variant(L"Mine")});
    EXPECT_EQ(L"v", PropertyText(texts.get(), L"value", DISPATCH_PROPERTYGET, {variant(L"MINE")}));
    EXPECT_EQ(L"(v)", PropertyText(texts.get(), L"Substitute", DISPATCH_METHOD, {variant(L"(<MINE>)")}));
    EXPECT_EQ(L"<none>", PropertyText(texts.get(), L"Nothing", DISPATCH_METHOD));
    const auto item = Feature(*engine, {L"Tools"}).query<IDispatch>();
    EXPECT_EQ(L"2", PropertyText(item.get(), L"Selected"));
    PropertyText(item.get(), L"Selected", DISPATCH_PROPERTYPUT, {variant(0L)});
    EXPECT_EQ(L"0", PropertyText(item.get(), L"Selected"));
    EXPECT_EQ(L"object", PropertyText(item.get(), L"Children"));
    EXPECT_EQ(L"object", PropertyText(engine->Host().query<IDispatch>().get(), L"Features"));
    EXPECT_EQ(L"Probe", PropertyText(ServiceOf<ISetupInfo>(*engine).query<IDispatch>().get(), L"ProductName"));
}

// What scripts read of the texts that the run before left.
class RestartTexts : public OnTree {
protected:
    std::wstring Left() const
    {
        return PropertyText(ServiceOf<ISetupReboot>(*engine).query<IDispatch>().get(), L"LeftCount");
    }
    void Put(const wchar_t* text) const
    {
        EXPECT_EQ(S_OK, ServiceOf<ISetupReboot>(*engine)->PutString(bstr(text).get(), nullptr, bstr(L"\"Ü\"").get()));
    }
};

TEST_F(RestartTexts, ReachTheNextRunOnceTheyAreCommitted)
{
    Put(L"a");
    Put(L"b");
    EXPECT_EQ(L"0", Left()) << "of the run before";
    Reopen();
    EXPECT_EQ(L"0", Left()) << "no commit";
    Put(L"c");
    const std::wstring log = Install(), kept = JoinPath(FolderOf(log), L"restart.json");
    EXPECT_EQ("[[\"c\",\"\",\"\\\"\xC3\x9C\\\"\"]]", ReadWhole(kept, 100));
    Reopen();
    EXPECT_EQ(L"1", Left());
    engine->Commit();
    EXPECT_FALSE(Exists(kept)) << "nothing was left this time";
    Put(L"d");
    engine->Commit();
    engine.reset();
    EXPECT_TRUE(Exists(kept));
    Uninstall(log);
    EXPECT_FALSE(Exists(FolderOf(log)));
    // What somebody else made of it counts for nothing.
    WriteText(kept, "{\"no\": ");
    Reopen();
    EXPECT_EQ(L"0", Left());
}
