// Media on engine data, through the component exports.
#include "../support/bare_context.h"
#include "../support/session.h"

namespace {

constexpr const wchar_t* data = L"DATA";

std::wstring Texts(ObjectContext* context, ListHandle list)
{
    std::wstring all = ListText(context, list);
    ListHandle handle = list;
    _ListDestroy(context, &handle);
    return all;
}

std::wstring Items(ObjectContext* context, const wchar_t* media, const wchar_t* parent)
{
    const ListHandle list = _ListCreate(context, ListTypeString);
    EXPECT_EQ(_ComponentListItems(context, media, parent, list), 0);
    return Texts(context, list);
}

TEST(UnknownMedia, AnswersTheMixtureThatScriptsKnow)
{
    const Session session;
    const wchar_t* const none = L"data";
    int32_t number = 0;
    wchar_t text[512];
    int64_t wide = 0;
    const ListHandle list = _ListCreate(session, ListTypeString);
    for (const int32_t code :
         {_ComponentGetData(session, none, L"Core", 8, &number, text, 64),
          _ComponentSetData(session, none, L"Core", 0, 0, L""), _ComponentSelectItem(session, none, L"Core", 1),
          _ComponentIsItemSelected(session, none, L"Core"), _ComponentListItems(session, none, L"", list),
          _ComponentGetCost(session, none, L"Core", L"C:\\", &number), _ComponentTransferData(session, none),
          _ComponentSetupTypeSet(session, none, L"x"), _ComponentFilterLanguage(session, none, 1033, 1),
          _CreateRegistrySet(session, none, L"x"), _ComponentGetItemSize(session, none, L"Core", &number)})
        EXPECT_EQ(code, -132);
    EXPECT_EQ(number, -1);
    EXPECT_EQ(_ComponentTotalSize(session, none, L"", 1, 1, 0), -132);
    for (const int32_t code : {_ComponentMoveData(session, none, 0), _ComponentValidate(session, none, L"Core", L"k"),
                               _ComponentFileEnum(session, none, L"Core", L"*", list, 0),
                               _ComponentFileEnum(session, none, L"Core", L"a\\*", list, 0),
                               _ComponentFileInfo(session, none, L"Core", L"", L"a\\b", 1, &wide, text)})
        EXPECT_EQ(code, -126);
    EXPECT_EQ(_FeatureAddCost(session, none, L"Core", L"C:\\", 1, 0), -1);
    EXPECT_EQ(_MediaGetFilteringInfo(session, none, 0, list), static_cast<int32_t>(0x8004F084)) << "not mapped";

    _ComponentGetData(session, L"lost", L"Core", 8, &number, text, 64);
    variant error;
    EXPECT_GIVES_TEXT(_ComponentErrorInfo(session, error.put(), text), -132, text, L"lost");
    wchar_t detail1[64] = L"x", detail2[64] = L"x";
    EXPECT_GIVES(_ComponentError(session, L"lost", text, 64, detail1, detail2, &number), 0, number, -132);
    EXPECT_STREQ(text, L"");
    EXPECT_STREQ(detail1, L"");
}

TEST(FileMedia, ListsItemsWithoutTheFirstDisk)
{
    const Session session;
    EXPECT_EQ(Items(session, data, L""), L"Core|Tools");
    EXPECT_EQ(Items(session, data, L"Tools"), L"Tools\\Extra|Tools\\Help");
    EXPECT_EQ(Items(session, data, L"Tools\\Extra"), L"");
    EXPECT_EQ(NumberAttribute(session, data, L"Disk<1>", 8) >= 0, true) << "hidden, but there";
    const ListHandle numbers = _ListCreate(session, ListTypeNumber);
    EXPECT_EQ(_ComponentListItems(session, data, L"", numbers), VHRT_WRONG_TYPE);
    EXPECT_EQ(_ComponentListItems(session, data, L"", 4711), VHRT_BAD_HANDLE);
    EXPECT_EQ(_ComponentListItems(session, data, L"Nothing", numbers), -105);
}

TEST(FileMedia, AsksTheEngineOnceForEachPath)
{
    const Session session;
    for (int i = 0; i < 5; ++i)
        EXPECT_GE(_ComponentIsItemSelected(session, data, L"Tools\\Extra"), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupItems.Item"), 2) << "one for each level";
    EXPECT_EQ(session.CallsOf(L"ISetupItem.GetChildren"), 2);
    // Other capitals are another path; a path that is not there is asked for anew.
    for (int i = 0; i < 2; ++i) {
        _ComponentIsItemSelected(session, data, L"TOOLS");
        EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Nothing"), -105);
    }
    EXPECT_EQ(session.CallsOf(L"ISetupItems.Item"), 2 + 1 + 2);
}

TEST(FileMedia, ReadsAndWritesAttributes)
{
    const Session session;
    const std::map<int32_t, const wchar_t*> texts = {{0, L"SetDescription"},  {1, L"SetLongText"}, {11, L"SetMiscText"},
                                                     {15, L"SetDisplayName"}, {17, L"SetText17"},  {18, L"SetText18"}};
    for (const auto& [code, method] : texts) {
        EXPECT_EQ(_ComponentSetData(session, data, L"Core", code, 0, L"one\\ntwo"), 0) << code;
        EXPECT_EQ(session.CallsOf(std::wstring(L"ISetupItem.") + method), 1) << code;
        EXPECT_EQ(TextAttribute(session, data, L"Core", code), code < 17 ? L"one\r\ntwo" : L"one\\ntwo") << code;
        EXPECT_EQ(_ComponentSetData(session, data, L"Core", code, 0, nullptr), 0);
        EXPECT_EQ(TextAttribute(session, data, L"Core", code), code == 15 ? L"Core" : L"") << code;
    }
    for (const int32_t code : {16, 19, 20, 21, 22, 23})
        EXPECT_EQ(TextAttribute(session, data, L"Core", code), L"") << code;

    EXPECT_EQ(NumberAttribute(session, data, L"Core", 2), 1);
    EXPECT_EQ(_ComponentSetData(session, data, L"Core", 2, 2, nullptr), 0) << "only 1 counts as true";
    EXPECT_EQ(NumberAttribute(session, data, L"Core", 2), 0);
    EXPECT_EQ(_ComponentSetData(session, data, L"Core", 2, 1, nullptr), 0);
    EXPECT_EQ(NumberAttribute(session, data, L"Core", 2), 1);
    EXPECT_EQ(NumberAttribute(session, data, L"Core", 5), 4);
    EXPECT_EQ(NumberAttribute(session, data, L"Core", 6), 0);

    Table<int32_t, int32_t, int32_t> odd = {{10, -126, -126}, {3, -137, -137}, {4, -137, -137}, {7, -137, -137},
                                            {5, 4, -137},     {6, 0, -140},    {9, -137, -137}, {12, -137, -137},
                                            {25, -137, -137}, {-1, -137, -137}};
    for (const auto& [code, get, set] : odd) {
        EXPECT_EQ(NumberAttribute(session, data, L"Core", code), get) << code;
        EXPECT_EQ(_ComponentSetData(session, data, L"Core", code, 0, L""), set) << code;
    }
    EXPECT_EACH(-105, NumberAttribute(session, data, L"Nothing", 8),
                NumberAttribute(session, data, L"Nothing\\Below", 8), NumberAttribute(session, data, L"", 8));
    wchar_t small[4];
    _ComponentSetData(session, data, L"Core", 0, 0, L"four");
    int32_t number = 0;
    EXPECT_EQ(_ComponentGetData(session, data, L"Core", 0, &number, small, 4), 5);
}

// A success of another kind is nothing that a script should meet.
TEST(FileMedia, GivesZeroForEverySuccessOfTheEngine)
{
    const Session session(R"(, "setupTypes": [{"name": "All", "features": ["*"]}])");
    int32_t number = 0;
    wchar_t text[64];
    const auto get = [&](int32_t code) { return _ComponentGetData(session, data, L"Core", code, &number, text, 64); };
    const auto set = [&](int32_t code) { return _ComponentSetData(session, data, L"Core", code, 1, L"x"); };
    Table<const wchar_t*, std::function<int32_t()>> others = {
        {L"ISetupItem.GetSize", [&] { return _ComponentGetItemSize(session, data, L"Core", &number); }},
        {L"ISetupData.FilterLanguage", [&] { return _ComponentFilterLanguage(session, data, 1, 1); }},
        {L"ISetupDataEx.FilterOS", [&] { return _ComponentFilterOS(session, data, 1, 1, 1); }},
        {L"ISetupFeatureModes.SelectNew", [&] { return _ComponentSelectNew(session, data, 1); }},
        {L"ISetupFeatureHost.SelectAll", [&] { return _ComponentSelectItem(session, data, L"", 1); }},
        {L"ISetupType.Activate", [&] { return _ComponentSetupTypeSet(session, data, L"All"); }}};
    const auto expect_zero = [&](const std::wstring& call, const std::function<int32_t()>& run) {
        session.calls().Reset();
        session.calls().FailCall(call, S_FALSE);
        EXPECT_EQ(run(), 0) << call;
        EXPECT_EQ(session.CallsOf(call), 1) << call;
    };
    std::wistringstream attributes(LR"(SetDescription 0 SetLongText 1 SetVisible 2 SetSelected 8 SetMiscText 11
        SetDisplayOrder 14 SetDisplayName 15 SetText17 17 SetText18 18 GetDescription 0 GetVisible 2 GetStatus 5
        GetNeedsValidation 6 GetFlags 13 GetDisplayOrder 14 GetFlags 24)");
    int32_t code = 0;
    for (std::wstring call; attributes >> call >> code;)
        expect_zero(L"ISetupItem." + call, [&] { return call[0] == L'S' ? set(code) : get(code); });
    for (const auto& [call, run] : others)
        expect_zero(call, run);
    // A checked key hands the engine's success on.
    session.calls().FailCall(L"ISetupItem.GetNeedsValidation", S_FALSE);
    session.calls().FailCall(L"ISetupItem.Validate", S_FALSE);
    EXPECT_EQ(_ComponentValidate(session, data, L"Core", L"x"), S_FALSE);
}

TEST(FileMedia, LooksDownPathsOfAnyDepth)
{
    const Session session;
    std::wstring deep = L"Tools";
    for (int i = 0; i < 9000; ++i)
        deep += L"\\x";
    EXPECT_EQ(_ComponentIsItemSelected(session, data, deep.c_str()), -105);
    EXPECT_EQ(session.CallsOf(L"ISetupItems.Item"), 2) << "no level below one that is not there";
    for (const wchar_t* path : {L"\\", L"\\Tools", L"Tools\\", L"Tools\\\\Extra"})
        EXPECT_EQ(_ComponentIsItemSelected(session, data, path), -105) << std::wstring(path);
    session.calls().FailCall(L"ISetupItem.GetChildren", E_INVALIDARG);
    EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Core\\x"), -105);
    EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Core"), E_INVALIDARG) << "the item itself is there";
    session.calls().FailCall(L"ISetupItem.GetName", E_INVALIDARG);
    EXPECT_EQ(_ComponentListItems(session, data, L"", 0), -105);
    session.calls().FailCall(L"ISetupItems.Item", E_ABORT);
    EXPECT_EQ(_ComponentListItems(session, data, L"", _ListCreate(session, ListTypeString)), E_ABORT);
}

TEST(FileMedia, ShiftsDisplayOrdersByTheBase)
{
    const Session session;
    // The base is the order of the collection's second item, which stands behind the first disk.
    const int32_t core = NumberAttribute(session, data, L"Core", 14);
    const int32_t tools = NumberAttribute(session, data, L"Tools", 14);
    EXPECT_EQ(core, 0);
    EXPECT_GT(tools, core);
    EXPECT_EQ(_ComponentSetData(session, data, L"Tools", 14, 40, nullptr), 0);
    EXPECT_EQ(NumberAttribute(session, data, L"Tools", 14), 40);
    EXPECT_EQ(_ComponentSetData(session, data, L"Tools", 14, -3, nullptr), 0);
    EXPECT_EQ(NumberAttribute(session, data, L"Tools", 14), -3) << "negative orders are absolute";
}

TEST(FileMedia, SelectsItemsAndKeepsTheRequiredOnes)
{
    const Session session;
    EXPECT_EACH(0, _ComponentSelectItem(session, data, L"Tools", 0),
                _ComponentIsItemSelected(session, data, L"Tools\\Extra"),
                _ComponentSelectItem(session, data, L"Tools\\Extra", 7));
    EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Tools\\Extra"), 1);
    EXPECT_EQ(_ComponentSelectItem(session, data, L"Core", 0), -103);
    EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Core"), 1);
    EXPECT_EQ(_ComponentSelectItem(session, data, L"Core", 1), 0) << "a refusal to come is no failure";

    const int32_t disk = NumberAttribute(session, data, L"Disk<1>", 8);
    EXPECT_EQ(_ComponentSelectItem(session, data, L"", 0), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupFeatureHost.SelectAll(0)"), 1);
    EXPECT_EQ(NumberAttribute(session, data, L"Disk<1>", 8), disk);
    EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Tools"), 0);
    EXPECT_EQ(_ComponentSelectItem(session, data, L"", 1), 0);
    EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Tools"), 1);
    EXPECT_EQ(_ComponentSelectNew(session, data, 1), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupFeatureModes.SelectNew(2)"), 1);
}

TEST(FileMedia, AddsUpSizesAndCosts)
{
    const Session session;
    int32_t size = 0;
    EXPECT_GIVES(_ComponentGetItemSize(session, data, L"Tools", &size), 0, size, 20);
    EXPECT_EQ(_ComponentTotalSize(session, data, L"Tools", 0, 0, 0), 20);
    EXPECT_GE(_ComponentTotalSize(session, data, L"Tools", 1, 1, 10), 50) << "the shift has no effect";
    EXPECT_GE(_ComponentTotalSize(session, data, L"", 1, 1, 0), 60);
    EXPECT_EQ(_ComponentTotalSize(session, data, L"Nothing", 1, 1, 0), -105);

    const std::wstring target = session.folder.Target();
    int32_t cost = -1;
    EXPECT_EQ(_ComponentGetTotalCost(session, data, target.c_str(), &cost), 0);
    EXPECT_GE(cost, 1);
    int32_t other = -1;
    EXPECT_GIVES(_ComponentGetTotalCost(session, data, L"Q:\\elsewhere", &other), 0, other, 0);
    EXPECT_EQ(_ComponentGetCost(session, data, L"Nothing", target.c_str(), &other), -105);
    EXPECT_EQ(_ComponentGetCost(session, data, L"Core", nullptr, &other), -1);
    int32_t high = -1, low = -1;
    EXPECT_GIVES(_FeatureGetCost(session, data, L"Core", target.c_str(), &high, &low), 0, high, 0);
    EXPECT_GE(low, 10);

    EXPECT_EQ(_FeatureAddUninstallCost(session, data, L"Core", 3, 1), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupItemUninstallCost.AddUninstallCost(\"Core\", 3, 1)"), 1);
    EXPECT_EQ(_FeatureAddUninstallCost(session, data, L"None", 3, 1), -1);
    EXPECT_EQ(_FeatureAddCost(session, data, L"None", L"C:\\", 3, 1), -1);
    wchar_t drive[MAX_PATH] = L"kept";
    EXPECT_GIVES(_ComponentCompareSizeRequired(session, data, drive, &size), 0, size, 0);
    EXPECT_STREQ(drive, L"kept");
    // Petabytes, as the engine's own cost of the product.
    EXPECT_EQ(_FeatureAddCost(session, data, L"Core", target.c_str(), 0, 0x7FFFFF), 0);
    EXPECT_EQ(_ComponentCompareSizeRequired(session, data, drive, &size), -108);
    EXPECT_EQ(std::wstring(drive), target.substr(0, 2));
    EXPECT_EQ(size, INT32_MAX);
}

// Both sides are cut to units of 1024 bytes before they are compared.
TEST(FileMedia, ComparesItsCostWithTheFreeSpace)
{
    static uint64_t available;
    const CallCounter<decltype(GetDiskFreeSpaceExW)> disk(
        "GetDiskFreeSpaceExW", [](const wchar_t*, ULARGE_INTEGER* caller, ULARGE_INTEGER* all, ULARGE_INTEGER* free) {
            caller->QuadPart = available;
            all->QuadPart = free->QuadPart = 1;
            return TRUE;
        });
    const Session session;
    // Two megabytes with the product's own 100 bytes.
    EXPECT_EQ(_FeatureAddCost(session, data, L"Core", session.folder.Target().c_str(), (2 << 20) - 100, 0), 0);
    Table<uint64_t, int32_t, int32_t> cases = {
        {2 << 20, 0, 0}, {(2 << 20) + 1, 0, 0}, {(2 << 20) - 1, -108, 2 << 20}, {0, -108, 2 << 20}};
    for (const auto& [room, result, wanted_size] : cases) {
        available = room;
        wchar_t drive[MAX_PATH] = L"";
        int32_t size = -1;
        EXPECT_EQ(_ComponentCompareSizeRequired(session, data, drive, &size), result) << available;
        EXPECT_EQ(size, wanted_size) << available;
    }
}

TEST(FileMedia, KnowsSetupTypesByName)
{
    const Session session(R"(, "setupTypes": [{"name": "All", "features": ["*"]},
        {"name": "Small", "displayName": "A small <PRODUCT_NAME>", "description": "Core alone", "features": ["Core"]},
        {"name": "Help", "features": ["Tools\\Help"]}, {"name": "Tools", "features": ["Tools"]}])");
    const ListHandle list = _ListCreate(session, ListTypeString);
    EXPECT_EQ(_ComponentSetupTypeEnum(session, data, list), 0);
    EXPECT_EQ(Texts(session, list), L"All|Small|Help|Tools");
    // A type's own name stands in for a display text.
    Table<const wchar_t*, int32_t, int32_t, int32_t, const wchar_t*> facts = {
        {L"Small", 1, 64, 0, L"Core alone"}, {L"Small", 2, 64, 0, L"A small Probe"},
        {L"All", 2, 64, 0, L"All"},          {L"Small", 2, 13, 14, L"#"},
        {L"Small", 3, 64, -5, L"#"},         {L"None", 1, 64, -3, L"#"}};
    for (const auto& [name, code, room, result, wanted] : facts) {
        wchar_t text[64] = L"#";
        int32_t number = 0;
        EXPECT_EQ(_ComponentSetupTypeGetData(session, data, name, code, &number, text, room), result) << name << code;
        EXPECT_STREQ(text, wanted);
    }
    EXPECT_EQ(_ComponentSetupTypeSet(session, data, L"None"), -3);
    Table<const wchar_t*, int32_t, int32_t, int32_t> states = {
        {L"Small", 0, 0, 0}, {L"Help", 1, 0, 1}, {L"Tools", 1, 1, 1}, {L"Help", 1, 0, 1}, {L"All", 1, 1, 1}};
    for (const auto& [name, tools, extra, help] : states) {
        EXPECT_EQ(_ComponentSetupTypeSet(session, data, name), 0);
        EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Tools"), tools) << name;
        EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Tools\\Extra"), extra) << name;
        EXPECT_EQ(_ComponentIsItemSelected(session, data, L"Tools\\Help"), help) << name;
    }
}

TEST(FileMedia, ChecksKeys)
{
    engine::test::SetupFolder folder;
    folder.Product(R"("key": "whole", "features": [{"name": "Locked", "key": "secret"}, {"name": "Open"}])");
    const Session session(folder.Given());
    EXPECT_EQ(NumberAttribute(session, data, L"Locked", 6), 1);
    EXPECT_EQ(_ComponentValidate(session, data, L"Locked", L"secret"), 0);
    EXPECT_EQ(_ComponentValidate(session, data, L"Locked", L"guess"), -139);
    EXPECT_EQ(_ComponentValidate(session, data, L"Open", L"x"), -141);
    EXPECT_EQ(_ComponentValidate(session, data, L"None", L"x"), -105);
    EXPECT_EQ(_ComponentValidate(session, data, L"", L"whole"), 0);
    EXPECT_EQ(_ComponentValidate(session, data, L"", nullptr), -139);
}

TEST(FileMedia, FiltersWithTheInvertedFlag)
{
    const Session session;
    EXPECT_GE(_ComponentFilterLanguage(session, data, 1031, 1), 0);
    EXPECT_GE(_ComponentFilterLanguage(session, data, 1033, 0), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupData.FilterLanguage(1031, 0)"), 1);
    EXPECT_EQ(session.CallsOf(L"ISetupData.FilterLanguage(1033, -1)"), 1);
    EXPECT_GE(_ComponentFilterOS(session, data, 1, 2, 5), 0);
    EXPECT_EQ(session.CallsOf(L"ISetupDataEx.FilterOS(1, 2, 0)"), 1);
    const ListHandle list = _ListCreate(session, ListTypeNumber);
    EXPECT_EQ(_MediaGetFilteringInfo(session, data, 0, list), 0);
    const Patched square(
        "SafeArrayGetDim", +[](SAFEARRAY*) WINAPI -> UINT { return 2; }, L"VHRT.dll");
    EXPECT_EQ(_MediaGetFilteringInfo(session, data, 0, list), DISP_E_TYPEMISMATCH);
}

// The files of an item that fit, or the code.
std::wstring Files(ObjectContext* context, const wchar_t* item, const wchar_t* pattern, int32_t flag)
{
    const ListHandle list = _ListCreate(context, ListTypeString);
    const int32_t code = _ComponentFileEnum(context, data, item, pattern, list, flag);
    const std::wstring files = Texts(context, list);
    return code ? std::to_wstring(code) + files : files;
}

TEST(FileMedia, EnumeratesFilesByPattern)
{
    const Session session;
    Table<const wchar_t*, const wchar_t*, const wchar_t*> cases = {
        {L"", L"none\\*", L"-105"},       {L"Tools\\Extra", L"none\\*", L"-105"},
        {L"", L"help\\*", L"d.bin"},      {L"Tools\\Extra", L"*.*", L"extra\\c.bin"},
        {L"No such", L"*", L"-105"},      {L"Tools\\Extra", L"EXTRA\\c.*", L"c.bin"},
        {L"", L"*h*", L"help\\d.bin"},    {L"", L"*", L"core\\a.bin|tools\\b.bin|extra\\c.bin|help\\d.bin"},
        {L"Tools\\Extra", L"*.none", L""}};
    for (const auto& [item, pattern, files] : cases)
        EXPECT_EQ(Files(session, item, pattern, 0), files) << item << " " << pattern;
    EXPECT_EQ(_ComponentFileEnum(session, data, L"Tools\\Extra", L"*", 99, 0), VHRT_BAD_HANDLE);
    const long asked = session.CallsOf(L"ISetupItems.Item");
    EXPECT_EQ(Files(session, std::wstring(300, L'x').c_str(), L"*", 0), L"-105");
    EXPECT_EQ(session.CallsOf(L"ISetupItems.Item") - asked, 2) << "a path behind its root may have any length";
}

// A moment in local time.
FILETIME LocalTime(WORD year, WORD month, WORD day, WORD hour, WORD minute)
{
    const SYSTEMTIME moment{year, month, 0, day, hour, minute, 0, 0};
    FILETIME local{}, written{};
    SystemTimeToFileTime(&moment, &local);
    LocalFileTimeToFileTime(&local, &written);
    return written;
}

TEST(FileMedia, TellsTheFactsOfItsFiles)
{
    engine::test::SetupFolder folder;
    folder.Payload(L"p\\one.txt", "abc");
    folder.Payload(L"q\\sub\\large.bin", "");
    std::filesystem::resize_file(folder.Setup(L"q\\sub\\large.bin"), (5ull << 30) + 7);
    engine::test::SetTime(folder.Setup(L"p\\one.txt"), LocalTime(2019, 11, 5, 16, 7));
    engine::test::SetTime(folder.Setup(L"q\\sub\\large.bin"), LocalTime(1999, 12, 31, 1, 59));
    SetFileAttributesW(folder.Setup(L"p\\one.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
    folder.Product(R"("languages": [1033, 1031, 9], "features": [{"name": "F", "languages": [1033, 1031],
        "systems": ["windows-7", "windows-10"], "files": [
        {"name": "docs", "target": "t", "flags": ["shared"], "files": [{"path": "p/one.txt", "version": "1.2.3.4"},
            {"path": "q/*", "recurse": true, "language": 1031, "flags": ["permanent", "never-overwrite"]}]},
        {"name": "rest", "systems": ["windows-8", "windows-11"], "languages": [9], "files": []}]}])");
    const Session session(folder.Given());
    const std::map<std::wstring, const wchar_t*> paths = {
        {L"small", L"docs\\one.txt"}, {L"large", L"docs\\sub\\large.bin"}, {L"group", L"docs"}, {L"rest", L"rest"}};
    const std::map<std::wstring, std::wstring> folders = {{L"SOURCE", folder.Setup(L"p\\one.txt")},
                                                          {L"FROM", folder.Setup(L"p")},
                                                          {L"TO", folder.Target(L"t")},
                                                          {L"BELOW", folder.Target(L"t\\sub")},
                                                          {L"NONE", L""}};
    // Code, number and text; -7 and "#" are those that stood there before.
    const std::wstring facts = LR"(small 1 3 # small 2 0 # small 3 20325 11-05-19 small 4 32992 16:07 small 6 -7 1.2.3.4
        small 7 -7 NONE small 8 -7 SOURCE small 9 20325 11-05-2019 small 11 -7 900150983CD24FB0D6963F7D28E17F72
        small 12 3 # small 13 0 # small 16 -7 TO small 21 1 # small 22 0 # small 23 0 # small 24 -7 # large 1 1073741831 #
        large 2 2 # large 3 10143 12-31-99 large 4 3936 01:59 large 7 -7 1031 large 9 10143 12-31-1999
        large 12 1073741831 # large 13 2 # large 16 -7 BELOW large 21 1 # large 22 1 # large 23 1 # group 14 2 #
        group 15 -7 docs group 17 -7 FROM group 18 1073741834 # group 19 -7 F group 20 2 # group 21 1 # rest 14 0 # small 5 )" +
                               std::to_wstring(GetFileAttributesW(folder.Setup(L"p\\one.txt").c_str())) + L" #";
    for (const wchar_t* item : {L"F", L""}) {
        std::wistringstream rows(facts);
        std::wstring path, wanted;
        int32_t code = 0;
        for (int64_t wanted_number = 0; rows >> path >> code >> wanted_number >> wanted;) {
            int64_t number = -7;
            wchar_t text[300] = L"#";
            EXPECT_EQ(_ComponentFileInfo(session, data, item, L"", paths.at(path), code, &number, text),
                      code == 24 ? E_INVALIDARG : 0)
                << path << " " << code;
            EXPECT_EQ(number, wanted_number) << path << " " << code;
            EXPECT_EQ(text, folders.contains(wanted) ? folders.at(wanted) : wanted) << path << " " << code;
        }
    }
    for (const wchar_t* item : {L"F", L""}) {
        EXPECT_EQ(Files(session, item, L"docs\\*", 0), L"one.txt");
        EXPECT_EQ(Files(session, item, L"docs\\*", 1), L"one.txt|sub\\large.bin");
        EXPECT_EQ(Files(session, item, L"*", 0), L"docs\\one.txt|docs\\sub\\large.bin");
    }
    // Facts that go to a list; 10 and 131072 give one element for each bit.
    Table<const wchar_t*, int32_t, std::vector<int32_t>> lists = {
        {L"docs\\one.txt", 10, {1, 8}},           {L"docs", 131072, {1, 8}}, {L"docs\\one.txt", 65536, {1033, 1031}},
        {L"docs\\sub\\large.bin", 65536, {1031}}, {L"rest", 10, {2, 16}},    {L"rest", 65536, {9}}};
    for (const auto& [path, code, wanted_numbers] : lists) {
        int64_t list = _ListCreate(session, ListTypeNumber);
        EXPECT_EQ(_ComponentFileInfo(session, data, L"F", L"", path, code, &list, nullptr), 0) << code;
        std::vector<int32_t> numbers;
        int32_t value = 0;
        for (int64_t more = _ListGetFirstItem(session, list, &value); more == 0;
             more = _ListGetNextItem(session, list, &value))
            numbers.push_back(value);
        EXPECT_EQ(numbers, wanted_numbers) << path << " " << code;
        list = _ListCreate(session, ListTypeString);
        EXPECT_EQ(_ComponentFileInfo(session, data, L"F", L"", path, code, &list, nullptr), VHRT_WRONG_TYPE);
    }
    for (const wchar_t* path : {L"docs", L"docs\\", L""})
        for (const int32_t code : {1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13})
            EXPECT_EQ(_ComponentFileInfo(session, data, L"F", L"", path, code, nullptr, nullptr), -1) << code;
    for (const wchar_t* path : {L"none", L"docs\\none"})
        EXPECT_EQ(_ComponentFileInfo(session, data, L"F", L"", path, 14, nullptr, nullptr), -105) << path;
    EXPECT_EQ(_ComponentFileInfo(session, data, L"None", L"", L"docs", 14, nullptr, nullptr), -105);
}

TEST(FileMedia, FailsEverywhereWithoutItsCollection)
{
    Session session;
    session.calls().FailCall(L"ISetupFeatureHost.GetFeatures", E_FAIL);
    session.Create();
    session.calls().Reset();
    int32_t number = 0;
    const ListHandle list = _ListCreate(session, ListTypeString);
    EXPECT_EACH(E_POINTER, NumberAttribute(session, data, L"Core", 8), _ComponentListItems(session, data, L"", list),
                _ComponentTotalSize(session, data, L"", 1, 1, 0),
                _ComponentGetItemSize(session, data, L"Core", &number));
}

TEST(FileMedia, GivesTheEnginesErrorToTheScript)
{
    engine::test::SetupFolder folder;
    folder.Payload(L"a.bin", "a");
    folder.Product(
        R"("features": [{"name": "Lost", "target": "<NOWHERE>", "files": [{"name": "g", "files": ["a.bin"]}]}])");
    const Session session(folder.Given());
    EXPECT_EQ(_ComponentMoveData(session, data, 0), E_INVALIDARG);
    variant error;
    wchar_t media[64] = L"";
    EXPECT_GIVES_TEXT(_ComponentErrorInfo(session, error.put(), media), 0, media, data);
    ASSERT_EQ(error.type(), VT_DISPATCH);
    const std::pair<const wchar_t*, const wchar_t*> properties[] = {
        {L"Code", L"-2147024809"}, {L"File", L"<NOWHERE>"}, {L"Reason", L"\"Lost\""}, {L"Text", L"\"Lost\""}};
    for (const auto& [name, part] : properties) {
        const std::wstring text = engine::test::PropertyText(error.get().pdispVal, name);
        EXPECT_NE(text.find(part), text.npos) << name << ": " << text;
    }
}

TEST(SupportMedia, MovesNothingAndTransfersNothing)
{
    const Session session(R"(, "support": [{"name": "Seen", "files": []}, {"name": "Unseen", "files": []}])");
    EXPECT_EQ(_ComponentMoveData(session, L"VHSUPPORTFILES", 1), 0);
    EXPECT_EQ(_ComponentTransferData(session, L"VHSUPPORTFILES"), -126);
    EXPECT_EQ(_ComponentSelectItem(session, L"VHSUPPORTFILES", L"", 1), 0);
    EXPECT_EQ(Items(session, L"VHSUPPORTFILES", L""), L"Seen|Unseen");
    EXPECT_EQ(_ComponentSetData(session, L"VHSUPPORTFILES", L"Unseen", 2, 0, nullptr), 0);
    EXPECT_EQ(NumberAttribute(session, L"VHSUPPORTFILES", L"Seen", 2), 1);
    EXPECT_EQ(NumberAttribute(session, L"VHSUPPORTFILES", L"Unseen", 2), 0);
    wchar_t text[64];
    variant error;
    int32_t number = 0;
    _ComponentGetData(session, L"VHSUPPORTFILES", L"x", 8, &number, text, 64);
    EXPECT_EQ(_ComponentErrorInfo(session, error.put(), text), -118);
}

TEST(MediaInfo, FillsTheRecordOfTheScript)
{
    const Session session(
        R"(, "media": {"texts": ["one", "two", "three"], "number": 77, "truths": [true, false, true]})");
    VHRTMediaInfo info;
    std::memset(&info, 0xEE, sizeof(info));
    EXPECT_GIVES(_MediaGetInfo(session, data, &info), 0, info.number, 77);
    EXPECT_STREQ(info.text1, L"one");
    EXPECT_STREQ(info.text3, L"three");
    EXPECT_STREQ(info.text14, L"");
    EXPECT_EQ(info.truths[0] * 100 + info.truths[1] * 10 + info.truths[2], 101);
    EXPECT_EQ(_MediaGetInfo(session, L"VHSUPPORTFILES", &info), static_cast<int32_t>(0x8004F07E)) << "not mapped";
}

} // namespace
