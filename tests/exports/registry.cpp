// The registry family on the embedded engine: what reaches it, what comes back, what the trace shows.
#include "../support/bare_context.h"
#include "../support/session.h"
#include "../support/traced_library.h"

namespace {

constexpr int64_t current_user = static_cast<int32_t>(0x80000001), local_machine = static_cast<int32_t>(0x80000002),
                  not_found = HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND);
constexpr const wchar_t* base = L"Software\\VHRegistryTest";

// A value as the registry holds it, read past the library: type and bytes.
std::pair<DWORD, std::string> Raw(const wchar_t* name)
{
    char bytes[256];
    DWORD size = sizeof(bytes), type = 0;
    if (RegGetValueW(HKEY_CURRENT_USER, base, name, RRF_RT_ANY | RRF_NOEXPAND, &type, bytes, &size) != ERROR_SUCCESS)
        return {};
    return {type, std::string(bytes, size)};
}

std::string Wide(std::wstring_view text)
{
    return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}

// A session with a key of its own, which goes with it.
struct Registry : testing::Test {
    Registry()
    {
        RegDeleteTreeW(HKEY_CURRENT_USER, base);
        const auto texts = engine::test::ServiceOf<ISetupTextSub>(*session.engine, local_text_service);
        texts->SetValue(bstr(L"SEVEN").get(), bstr(L"7").get());
        session.calls().Reset();
    }
    ~Registry() override { RegDeleteTreeW(HKEY_CURRENT_USER, base); }

    Session session;
    const ListHandle list = _ListCreate(session, ListTypeString);
};

TEST_F(Registry, KeysLoseOneLeadingBackslash)
{
    Table<const wchar_t*, const wchar_t*> cases = {{L"\\A\\B", L"A\\B"}, {L"A\\B", L"A\\B"}, {L"\\\\A", L"\\A"},
                                                   {L"\\", L""},         {L"", nullptr},     {nullptr, nullptr}};
    session.calls().FailCall(L"ISetupRegistry.", E_ABORT);
    for (const auto& [given, sent] : cases) {
        const long before = session.calls().Calls();
        int32_t type = 0, size = 0;
        EXPECT_EQ(_RegCreateKey(session, current_user, given, L"c", 5), sent ? E_ABORT : -1);
        EXPECT_EQ(_RegQueryKeyValue(session, current_user, given, L"n", &type, nullptr, &size), sent ? E_ABORT : -1);
        EXPECT_EQ(session.calls().Calls() - before, sent ? 2 : 0);
        if (sent) {
            EXPECT_EQ(
                session.CallsOf(L"ISetupRegistry.CreateKey(-2147483647, \"" + std::wstring(sent) + L"\", \"c\", -1)"),
                std::wstring(sent) == L"A\\B" && given[0] != L'\\' ? 2 : 1);
        }
    }
    EXPECT_EQ(_RegEnum(session, current_user, L"", RegEnumKeys, list), E_ABORT) << "listing a root needs no key";
}

TEST_F(Registry, ValuesAreWrittenByTheirTypes)
{
    const std::wstring two(L"one\0two\0", 8);
    Table<int32_t, const wchar_t*, int32_t, int64_t, std::string> cases = {
        {REG_SZ, L"text", 1, 0, Wide(std::wstring(L"text\0", 5))},
        {REG_SZ, nullptr, 9, 0, Wide(std::wstring(1, L'\0'))},
        {REG_EXPAND_SZ, L"%TEMP%", 0, 0, Wide(std::wstring(L"%TEMP%\0", 7))},
        {REG_MULTI_SZ, two.c_str(), 8, 0, Wide(two + L'\0')},
        {REG_MULTI_SZ, two.c_str(), -1, -1, ""},
        {REG_MULTI_SZ, nullptr, 3, -1, ""},
        {REG_DWORD, L"12abc", 0, 0, std::string("\x0C\0\0\0", 4)},
        {REG_DWORD, L"-1", 0, 0, "\xFF\xFF\xFF\xFF"},
        {REG_DWORD, L"x", 0, 0, std::string(4, '\0')},
        {REG_DWORD, L"4<SEVEN>", 0, 0, std::string("\x2F\0\0\0", 4)},
        {REG_BINARY, L"x", 1, -10, ""},
        {REG_NONE, L"x", 1, -1, ""},
        {11, L"x", 1, -1, ""}};
    for (const auto& [type, value, size, result, bytes] : cases) {
        RegDeleteTreeW(HKEY_CURRENT_USER, base);
        EXPECT_EQ(_RegSetKeyValue(session, current_user, base, L"V", type, value, size), result) << type;
        EXPECT_EQ(Raw(L"V"), std::make_pair(result ? DWORD{0} : static_cast<DWORD>(type), bytes)) << type;
    }
    EXPECT_EQ(_RegSetKeyBinaryValue(session, current_user, base, L"B", "\0\1\2", 3), 0);
    EXPECT_EQ(Raw(L"B"), std::make_pair(DWORD{REG_BINARY}, std::string("\0\1\2", 3)));
    EXPECT_EQ(_RegSetKeyBinaryValue(session, current_user, base, L"B", nullptr, 0), 0);
    EXPECT_EQ(Raw(L"B"), std::make_pair(DWORD{REG_BINARY}, std::string()));
    EXPECT_EQ(_RegSetKeyBinaryValue(session, current_user, base, L"B", "x", -1), -1);
    EXPECT_EQ(_RegSetKeyBinaryValue(session, current_user, L"", L"B", "x", 1), -1);
}

TEST_F(Registry, TextSubsReachBothTheEngineAndNumbers)
{
    const auto write = [&](int32_t type) {
        EXPECT_EQ(_RegSetKeyValue(session, current_user, base, L"V", type, L"<SEVEN>", 0), 0);
        return Raw(L"V").second;
    };
    EXPECT_EQ(_RegEnableTextSubs(session, 0), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupSiteAware.EnableTextSubs(0)"), 1);
    EXPECT_EQ(write(REG_SZ), Wide(std::wstring(L"<SEVEN>\0", 8)));
    EXPECT_EQ(write(REG_DWORD), std::string(4, '\0'));
    EXPECT_EQ(_RegEnableTextSubs(session, 1), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupSiteAware.EnableTextSubs(-1)"), 1);
    EXPECT_EQ(write(REG_SZ), Wide(std::wstring(L"7\0", 2)));
    EXPECT_EQ(write(REG_DWORD), std::string("\7\0\0\0", 4));
    session.calls().FailCall(L"ISetupTextSub.Substitute", E_ABORT);
    EXPECT_EQ(write(REG_DWORD), std::string(4, '\0')) << "the text stands as it came back";
    session.calls().FailCall(L"ISetupTextSub.Substitute", S_OK);

    session.calls().FailCall(L"IUnknown.QueryInterface(ISetupSiteAware)", E_NOINTERFACE);
    EXPECT_EQ(_RegEnableTextSubs(session, 0), -1);
    EXPECT_EQ(write(REG_DWORD), std::string(4, '\0')) << "the flag is kept all the same";
    session.calls().FailCall(L"IUnknown.QueryInterface(ISetupRegistryOptions)", E_NOINTERFACE);
    int32_t options = 0;
    EXPECT_EACH(-1, _RegGetOptions(session, &options), _RegSetOptions(session, 1));
}

TEST_F(Registry, ValuesComeBackAsText)
{
    _RegSetKeyValue(session, current_user, base, L"text", REG_SZ, L"four", 0);
    _RegSetKeyValue(session, current_user, base, L"none", REG_SZ, L"", 0);
    _RegSetKeyValue(session, current_user, base, L"list", REG_MULTI_SZ, L"a\0b\0", 4);
    _RegSetKeyValue(session, current_user, base, L"number", REG_DWORD, L"-12", 0);
    _RegSetKeyBinaryValue(session, current_user, base, L"bytes", "\1\2\3", 3);
    Table<const wchar_t*, int32_t, int64_t, int32_t, int32_t, std::wstring> cases = {
        {L"text", 4, -5, 5, REG_SZ, L"#######"},       {L"text", 5, 0, 4, REG_SZ, std::wstring(L"four\0##", 7)},
        {L"text", 0, -5, 5, REG_SZ, L"#######"},       {L"none", 1, 0, 0, REG_SZ, std::wstring(L"\0######", 7)},
        {L"none", 0, -5, 1, REG_SZ, L"#######"},       {L"list", 5, 0, 4, REG_MULTI_SZ, std::wstring(L"a\0b\0\0##", 7)},
        {L"bytes", 9, -10, 9, REG_BINARY, L"#######"}, {L"number", 0, 0, 4, REG_DWORD, std::wstring(L"-12\0###", 7)},
        {L"missing", 9, not_found, 9, -7, L"#######"}};
    for (const auto& [name, room, result, size_back, wanted_type, units] : cases) {
        wchar_t buffer[] = L"#######";
        int32_t type = -7, size = room;
        EXPECT_EQ(_RegQueryKeyValue(session, current_user, base, name, &type, buffer, &size), result);
        EXPECT_EQ(size, size_back);
        EXPECT_EQ(type, wanted_type);
        EXPECT_EQ(std::wstring(buffer, 7), units);
    }
    Table<const wchar_t*, int32_t, int64_t, int32_t, std::string> binary = {
        {L"bytes", 4, 0, 3, std::string("\1\2\3\0#", 5)},
        {L"bytes", 3, -5, 4, "#####"},
        {L"text", 9, -1, 9, "#####"},
        {L"number", 9, -1, 9, "#####"},
        {L"missing", 9, not_found, 9, "#####"}};
    for (const auto& [name, room, result, size_back, bytes] : binary) {
        char buffer[] = "#####";
        int32_t size = room;
        EXPECT_EQ(_RegQueryKeyBinaryValue(session, current_user, base, name, buffer, &size), result);
        EXPECT_EQ(size, size_back);
        EXPECT_EQ(std::string(buffer, 5), bytes);
    }
}

TEST_F(Registry, KeysAreFoundListedAndDeleted)
{
    const std::wstring sub = std::wstring(L"\\") + base + L"\\Sub";
    EXPECT_EQ(_RegExistsKey(session, current_user, sub.c_str()), 0);
    EXPECT_EQ(_RegDeleteKey(session, current_user, sub.c_str()), -1);
    EXPECT_EQ(session.CallsOf(L"ISetupRegistry.DeleteKey"), 0);
    EXPECT_EQ(_RegCreateKey(session, current_user, sub.c_str(), nullptr, 0), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupRegistry.CreateKey(-2147483647, \"Software\\VHRegistryTest\\Sub\", \"\", 0)"), 1);
    EXPECT_EQ(_RegExistsKey(session, current_user, sub.c_str()), 1);
    _RegSetKeyValue(session, current_user, base, L"V", REG_SZ, L"", 0);
    _RegSetKeyValue(session, current_user, base, L"W", REG_SZ, L"", 0);

    const ListHandle numbers = _ListCreate(session, ListTypeNumber);
    EXPECT_EQ(_RegEnum(session, current_user, base, RegEnumKeys, list), 0);
    EXPECT_EQ(ListText(session, list), L"Sub");
    EXPECT_EQ(_RegEnum(session, current_user, base, RegEnumValues, list), 0);
    EXPECT_EQ(ListText(session, list), L"Sub|V|W");
    EXPECT_EACH(-1, _RegEnum(session, current_user, base, 3, list),
                _RegEnum(session, current_user, base, RegEnumKeys, numbers),
                _RegEnum(session, current_user, base, RegEnumKeys, 12345));
    EXPECT_EQ(_RegEnum(session, current_user, sub.c_str(), RegEnumKeys, 12345), 0) << "nothing to add";
    EXPECT_EQ(_RegEnum(session, current_user, (sub + L"\\none").c_str(), RegEnumKeys, list), not_found);

    EXPECT_EQ(_RegDeleteValue(session, current_user, base, L"V"), 0);
    EXPECT_EQ(_RegDeleteValue(session, current_user, base, L"V"), not_found);
    EXPECT_EQ(_RegDeleteValue(session, current_user, (sub + L"\\none").c_str(), L"V"), -1);
    EXPECT_EQ(_RegDeleteKey(session, current_user, sub.c_str()), 0);
    EXPECT_EQ(_RegExistsKey(session, current_user, sub.c_str()), 0);
    {
        const Patched square(
            "SafeArrayGetDim", +[](SAFEARRAY*) WINAPI -> UINT { return 2; }, L"VHRT.dll");
        for (const int32_t kind : {RegEnumKeys, RegEnumValues})
            EXPECT_EQ(_RegEnum(session, current_user, base, kind, list), DISP_E_TYPEMISMATCH);
    }
    session.calls().FailCall(L"ISetupRegistry.KeyExists", E_ABORT);
    EXPECT_EQ(_RegExistsKey(session, current_user, base), -1);
    EXPECT_EQ(_RegDeleteKey(session, current_user, base), -1) << "a key that is not seen is not deleted";
}

TEST_F(Registry, WritesAreUndoneWithTheRun)
{
    RegSetKeyValueW(HKEY_CURRENT_USER, base, L"Old", REG_SZ, L"before", 14);
    EXPECT_EQ(_RegSetKeyValue(session, current_user, base, L"Old", REG_SZ, L"after", 0), 0);
    EXPECT_EQ(_RegSetKeyBinaryValue(session, current_user, (std::wstring(base) + L"\\New").c_str(), L"B", "x", 1), 0);
    session.engine->Rollback();
    EXPECT_EQ(Raw(L"Old").second, Wide(std::wstring(L"before\0", 7)));
    EXPECT_EQ(_RegExistsKey(session, current_user, (std::wstring(base) + L"\\New").c_str()), 0);
}

TEST_F(Registry, OptionsChooseTheView)
{
    for (const int32_t wanted : {0, 1, 0}) {
        int32_t options = -7;
        EXPECT_EQ(_RegSetOptions(session, wanted), 0);
        EXPECT_GIVES(_RegGetOptions(session, &options), 0, options, wanted);
        EXPECT_EQ(_RegGetOptions(nullptr, &options), -1);
    }
    EXPECT_EQ(_RegSetOptions(nullptr, 1), -1);
}

TEST_F(Registry, OfAnotherMachineIsConnectedOnceAndTakesThePlaceOfRoots)
{
    EXPECT_EACH(0, _RegIsRemoteRegConnected(session), _RegDisConnectRegistry(session));
    for (const int64_t root : {current_user, int64_t{0x80000002},
                               static_cast<int64_t>(static_cast<int32_t>(0x80000005)), int64_t{0}, int64_t{-1}})
        EXPECT_EQ(_RegConnectRegistry(session, root, L""), -1) << root;
    EXPECT_EQ(session.CallsOf(L"ISetupRegistry.Connect"), 0);
    const std::pair<HRESULT, int64_t> failures[] = {
        {HRESULT_FROM_WIN32(123), -3},
        {HRESULT_FROM_WIN32(1009), -4},
        {HRESULT_FROM_WIN32(1114), -2},
        {HRESULT_FROM_WIN32(5), HRESULT_FROM_WIN32(5)},
        {static_cast<HRESULT>(0x8004007B), static_cast<HRESULT>(0x8004007B)}};
    for (const auto& [code, result] : failures) {
        session.calls().FailCall(L"ISetupRegistry.Connect", code);
        EXPECT_EQ(_RegConnectRegistry(session, local_machine, L"\\\\there"), result);
        EXPECT_EQ(_RegIsRemoteRegConnected(session), 0);
    }
    EXPECT_EQ(session.calls().Lines().back(), L"ISetupRegistry.Connect(-2147483646, \"\\\\there\")");
    session.calls().FailCall(L"ISetupRegistry.Connect", S_OK);

    ASSERT_EQ(_RegConnectRegistry(session, local_machine, nullptr), 0) << "this machine";
    EXPECT_EQ(_RegIsRemoteRegConnected(session), 1);
    EXPECT_EQ(_RegConnectRegistry(session, local_machine, L""), -6);
    EXPECT_EQ(_RegExistsKey(session, current_user, L"Software"), 1);
    EXPECT_EQ(session.CallsOf(L"ISetupRegistry.KeyExists(-2147483647"), 0) << "the given root is not used";
    session.calls().FailCall(L"ISetupRegistry.Disconnect", E_ABORT);
    EXPECT_EQ(_RegDisConnectRegistry(session), E_ABORT);
    EXPECT_EQ(_RegIsRemoteRegConnected(session), 1);
    session.calls().FailCall(L"ISetupRegistry.Disconnect", S_OK);
    EXPECT_EACH(0, _RegDisConnectRegistry(session), _RegIsRemoteRegConnected(session),
                _RegIsRemoteRegConnected(nullptr));

    ASSERT_EQ(_RegConnectRegistry(session, local_machine, L""), 0);
    session.calls().Reset();
    session.Release();
    EXPECT_EQ(session.CallsOf(L"ISetupRegistry.Disconnect"), 1) << "a context's end closes its connection";
}

TEST_F(Registry, TracedWritesBeginAndEndWithItsFields)
{
    session.Release();
    const std::string text = TracedCalls(
        session.engine->Host().get(), session.engine->Services().get(), [](auto& library, ObjectContext* context) {
            const auto set = VHRT_GET(library, _RegSetKeyValue);
            const auto create = VHRT_GET(library, _RegCreateKey);
            const auto erase_value = VHRT_GET(library, _RegDeleteValue);
            const auto erase = VHRT_GET(library, _RegDeleteKey);
            create(context, current_user, L"", L"c", 1);
            create(context, current_user, L"\\Software\\VHRegistryTest", nullptr, 3);
            set(context, current_user, base, L"N", 4, L"12", 9);
            set(context, current_user, base, L"N", 3, L"b", 1);
            set(context, current_user, base, L"N", 11, nullptr, 0);
            set(context, current_user, L"", L"N", 1, L"x", 0);
            VHRT_GET(library, _RegSetKeyBinaryValue)(context, current_user, base, L"B", "xyz", 3);
            erase_value(context, current_user, base, L"N");
            erase_value(context, current_user, nullptr, L"N");
            for (const wchar_t* key : {base, base, L""})
                erase(context, current_user, key);
            erase(nullptr, 1, L"k");
            set(nullptr, 1, L"k", L"n", 3, L"v", 2);
        });
    const std::string root = "RootKey=-2147483647\tKey=", key = root + "Software\\VHRegistryTest";
    const char* const set = "RegDBSetKeyValueEx";
    EXPECT_EQ(text, Record("RegDBCreateKeyEx", root + "\tClass=c\tShared=1") +
                        Record("RegDBCreateKeyEx", root + "\\Software\\VHRegistryTest\tClass=\tShared=3", success) +
                        Record(set, key + "\tValueName=N\tValueType=4\tValue=12\tValueSize=9", success) +
                        Record(set, key + "\tValueName=N\tValueType=3\tValue=b\tValueSize=1",
                               "Failure\t\tError=0xfffffff6\t") +
                        Record(set, key + "\tValueName=N\tValueType=11\tValue=\tValueSize=0", failure) +
                        Record(set, root + "\tValueName=N\tValueType=1\tValue=x\tValueSize=0") +
                        Record(set, key + "\tValueName=B\tValueType=3\tValue=\tValueSize=3", success) +
                        Record("RegDBDeleteValue", key + "\tValue=N", success) +
                        Record("RegDBDeleteValue", root + "\tValue=N", failure) +
                        Record("RegDBDeleteKey", key, success) + Record("RegDBDeleteKey", key, failure) +
                        Record("RegDBDeleteKey", root, failure) + Record("RegDBDeleteKey", "RootKey=1\tKey=k") +
                        Record(set, "RootKey=1\tKey=k\tValueName=n\tValueType=3\tValue=v\tValueSize=2"));
}

} // namespace
