// Program folders and shortcuts: what reaches the engine's shell service, and the real files that it makes.
#include <shlobj.h>

#include "../../engine/services/shell_link.h"
#include "../support/bare_context.h"
#include "../support/session.h"
#include "../support/traced_library.h"

namespace {

// A session whose program folders lie in a folder of the test's own.
struct Folders : testing::Test {
    Folders()
    {
        engine::test::MakeTree(m_folder);
        programs = m_folder.Root() + L"\\programs";
        session = std::make_unique<Session>(Given());
    }
    engine::Options Given() const
    {
        engine::Options options = m_folder.Given();
        options.variables.emplace_back(L"PROGRAMS", programs);
        options.silent = true;
        return options;
    }
    int64_t Add(const wchar_t* item, const wchar_t* command, int32_t flags = 0) const
    {
        return AddIcon(*session, L"Group\\", item, command, L"C:\\work", L"", 0, L"", flags);
    }
    std::wstring File(const wchar_t* item) const { return programs + L"\\Group\\" + item + L".lnk"; }
    const std::vector<std::wstring>& Lines() const { return session->calls().Lines(); }
    bool Called(const std::wstring& line) const
    {
        return std::find(Lines().begin(), Lines().end(), line) != Lines().end();
    }

    std::wstring programs;
    std::unique_ptr<Session> session;

private:
    engine::test::SetupFolder m_folder;
};

TEST_F(Folders, SplitCommandLines)
{
    Table<const wchar_t*, const wchar_t*, const wchar_t*> cases = {
        {L"C:\\a.exe", L"C:\\a.exe", L""},
        {L"C:\\a.exe /x \"y z\" ", L"C:\\a.exe", L"/x \"y z\""},
        {L"\"C:\\my app\\a.exe\" /x", L"C:\\my app\\a.exe", L"/x"},
        {L"\"C:\\my app\\a.exe", L"C:\\my app\\a.exe", L""},
        {L"C:\\my\" app\\\"a.exe b", L"C:\\my\" app\\\"a.exe", L"b"},
        {L"\t\n\"a\"\n \t b\t\n", L"a", L"b"},
        {L" a b", L"", L"a b"},
        {L"\"\"a\"\" b", L"\"a\"", L"b"},
        {L"\"", L"", L""},
        {L"", L"", L""}};
    session->calls().FailCall(L"ISetupShortcut.SetWorkingDir", E_ABORT);
    for (const auto& [line, target, arguments] : cases) {
        session->calls().Reset();
        session->calls().FailCall(L"ISetupShortcut.SetWorkingDir", E_ABORT);
        EXPECT_EQ(Add(L"I", line), E_ABORT);
        EXPECT_TRUE(Called(L"ISetupShortcut.SetTarget(\"" + std::wstring(target) + L"\")"));
        EXPECT_TRUE(Called(L"ISetupShortcut.SetArguments(\"" + std::wstring(arguments) + L"\")"));
    }
}

TEST_F(Folders, GetRealShortcuts)
{
    const wchar_t* const line = L"\"C:\\my app\\a.exe\" /x";
    EXPECT_EQ(AddIcon(*session, L"Group\\", L"First", line, L"C:\\work", L"C:\\i.ico", 3, L"Ctrl+Alt+F5", 0), 0);
    const engine::LinkData link = engine::ReadShellLink(File(L"First"));
    EXPECT_EQ(link.target + L"|" + link.arguments + L"|" + link.workingDir + L"|" + link.iconFile + L"|" + link.hotKey,
              L"C:\\my app\\a.exe|/x|C:\\work|C:\\i.ico|Ctrl+Alt+F5");
    EXPECT_EQ(link.iconIndex, 3);
    EXPECT_EQ(AddIcon(*session, L"Group\\", L"First", L"x", L"", L"", 0, L"", 0), -1) << "it is there already";
    EXPECT_EQ(engine::ReadShellLink(File(L"First")).arguments, L"/x");
    EXPECT_EQ(Add(L"First", L"C:\\b.exe", IconReplace), 0);
    EXPECT_EQ(engine::ReadShellLink(File(L"First")).target, L"C:\\b.exe");
    EXPECT_EQ(engine::ReadShellLink(File(L"First")).iconFile, L"C:\\b.exe") << "an icon comes from the target";
    EXPECT_TRUE(Called(L"ISetupShortcut.SetHotKey(\"None\")"));

    wchar_t command[32] = L"", directory[1024], icon[1024], key[1024];
    int32_t index = -7, flags = -7;
    const auto query = [&](const wchar_t* item, int32_t room = 32) {
        return QueryIcon(*session, L"Group\\", item, command, room, directory, icon, &index, key, &flags);
    };
    Add(L"Second", L"\"C:\\my app\\a.exe\" /x y");
    EXPECT_EQ(query(L"Second"), 0);
    EXPECT_STREQ(command, L"\"C:\\my app\\a.exe\" /x y");
    EXPECT_STREQ(directory, L"C:\\work");
    EXPECT_STREQ(icon, L"C:\\my app\\a.exe");
    EXPECT_STREQ(key, L"None");
    EXPECT_EQ(index, 0);
    EXPECT_EQ(flags, IconNormal);
    session->calls().Reset();
    EXPECT_EQ(query(L"Second", 22), 23);
    EXPECT_EQ(session->CallsOf(L"ISetupShortcut.GetWorkingDir"), 0) << "nothing is asked behind a refused command line";
    key[0] = 0;
    session->calls().FailCall(L"ISetupShortcut.GetShowCommand", E_ABORT);
    EXPECT_EQ(query(L"Second"), E_ABORT);
    EXPECT_STREQ(key, L"None") << "the texts are there before the show command is asked for";
    session->calls().FailCall(L"ISetupShortcut.GetIcon", E_FAIL);
    EXPECT_EQ(query(L"Second"), E_FAIL);
    session->calls().FailCall(L"ISetupShell.OpenItem", S_FALSE);
    EXPECT_EQ(query(L"Second"), E_POINTER) << "a success without a shortcut";
    session->calls().Reset();
    EXPECT_EQ(query(L"Third"), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(query(L""), -1);
}

TEST_F(Folders, TakeFlagsInTheirOrder)
{
    Table<int32_t, int, const wchar_t*> cases = {
        {0, 0, L""},       {1, 7, L""},       {4, 1, L""},       {5, 7, L""},
        {9, 3, L""},       {8, 3, L""},       {13, 3, L""},      {32 | 64 | 128, 0, L"9=-1 8=-1 12=1 "},
        {32, 0, L"12=1 "}, {64, 0, L"9=-1 "}, {128, 0, L"8=-1 "}};
    for (const auto& [flags, command, properties] : cases) {
        session->calls().Reset();
        EXPECT_EQ(Add(L"Flags", L"C:\\a.exe", flags | IconReplace), 0) << flags;
        EXPECT_EQ(session->CallsOf(L"ISetupShortcut.SetShowCommand"), command ? 1 : 0) << flags;
        EXPECT_TRUE(!command || Called(L"ISetupShortcut.SetShowCommand(" + std::to_wstring(command) + L")")) << flags;
        std::wstring set;
        const std::wstring start = L"ISetupShortcutProperties.SetProperty(\"{9F4C2855-9F79-4B39-A8D0-E1D42DE1D5F3}, ";
        for (std::wstring line : Lines()) {
            if (!line.starts_with(start))
                continue;
            line = line.substr(start.size());
            set += line.substr(0, line.find(L'"')) + L"=" + line.substr(line.find(L", \"") + 3);
            set.replace(set.size() - 2, 2, L" ");
        }
        EXPECT_EQ(set, properties) << flags;
    }
    session->calls().FailCall(L"IUnknown.QueryInterface(ISetupShortcutProperties)", E_NOINTERFACE);
    EXPECT_EQ(Add(L"Plain", L"C:\\a.exe", IconNoPin), 0) << "properties are no condition";
}

TEST_F(Folders, StopAtTheFirstFailingStep)
{
    for (const wchar_t* step : {L"IServiceProvider.QueryService(ISetupShell)", L"ISetupShell.ItemExists",
                                L"ISetupShell.NewItem", L"ISetupShortcut.SetTarget", L"ISetupShortcut.SetArguments",
                                L"ISetupShortcut.SetWorkingDir", L"ISetupShortcut.SetHotKey", L"ISetupShortcut.SetIcon",
                                L"ISetupShortcut.SetShowCommand", L"ISetupShortcut.Save"}) {
        session->calls().FailCall(step, E_ABORT);
        EXPECT_EQ(Add(L"None", L"C:\\a.exe", IconNormal), E_ABORT);
        EXPECT_EQ(ReplaceIcon(*session, L"Group\\", L"None", L"New", L"a", L"", L"", 0, L"", IconNormal), E_ABORT);
        EXPECT_EQ(session->CallsOf(L"ISetupShortcut.Save"), std::wstring(step) == L"ISetupShortcut.Save" ? 2 : 0);
        EXPECT_EQ(session->CallsOf(L"ISetupShell.RemoveItem"), 0);
        session->calls().FailCall(step, S_OK);
    }
    EXPECT_EQ(AddIcon(*session, L"", L"I", L"a", L"", L"", 0, L"", 0), -1);
    EXPECT_EQ(AddIcon(*session, L"F\\", nullptr, L"a", L"", L"", 0, L"", 0), -1);
    EXPECT_EQ(AddIcon(*session, L"Group\\", L"Bad key", L"a", L"", L"", 0, L"Ctrl+Nothing", 0), E_INVALIDARG);
    EXPECT_FALSE(engine::test::Exists(programs));
}

TEST_F(Folders, ReplaceShortcutsAlsoUnderANewName)
{
    const auto replace = [&](const wchar_t* item, const wchar_t* name, const wchar_t* command) {
        return ReplaceIcon(*session, L"Group\\", item, name, command, L"", L"", 0, L"", IconNoPin);
    };
    const auto target_of = [&](const wchar_t* item) { return engine::ReadShellLink(File(item)).target; };
    EXPECT_EQ(replace(L"One", L"", L"C:\\1.exe"), 0) << "it need not be there";
    EXPECT_GIVES(replace(L"One", nullptr, L"C:\\2.exe"), 0, target_of(L"One"), L"C:\\2.exe");
    EXPECT_GIVES(replace(L"One", L"Two", L"C:\\3.exe"), 0, target_of(L"Two"), L"C:\\3.exe");
    EXPECT_FALSE(engine::test::Exists(File(L"One")));
    EXPECT_GIVES(replace(L"Two", L"TWO", L"C:\\4.exe"), 0, target_of(L"Two"), L"C:\\4.exe");
    EXPECT_EQ(session->CallsOf(L"ISetupShortcutProperties.SetProperty"), 0);
    // A description is nothing that a script says, and stays with its shortcut.
    const Apartment apartment;
    const auto on_link = [&](const wchar_t* item, bool save, wchar_t(&description)[20]) {
        com_ptr<IShellLinkW> link;
        com_ptr<IPersistFile> file;
        CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void());
        link->QueryInterface(IID_IPersistFile, file.put_void());
        file->Load(File(item).c_str(), STGM_READ);
        if (save) {
            link->SetDescription(description);
            file->Save(File(item).c_str(), TRUE);
        }
        link->GetDescription(description, 20);
    };
    wchar_t description[20] = L"says what it is";
    on_link(L"Two", true, description);
    SetFileAttributesW(File(L"Two").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_GIVES(replace(L"Two", L"Three", L"C:\\5.exe"), 0, target_of(L"Three"), L"C:\\5.exe");
    wchar_t kept[20] = L"";
    on_link(L"Three", false, kept);
    EXPECT_STREQ(kept, description);
}

TEST_F(Folders, LoseNothingWhenTheyStay)
{
    Add(L"A", L"C:\\a.exe");
    Add(L"B", L"C:\\b.exe");
    const std::wstring group = programs + L"\\Group";
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(group);
    for (const std::wstring& drive : {group.substr(0, 2), group.substr(0, 3), group.substr(0, 3) + L"\\"}) {
        EXPECT_LT(DeleteFolder(*session, drive.c_str()), 0) << "not the current folder";
        EXPECT_EQ(CreateFolder(*session, drive.c_str()), 0);
    }
    EXPECT_EQ(DeleteFolder(*session, (group.substr(0, 2) + L"x").c_str()), E_INVALIDARG);
    std::filesystem::current_path(before);
    for (const std::wstring& path : {File(L"B"), group}) {
        const unique_file held = engine::test::Hold(path, FILE_SHARE_READ | (path == group ? FILE_SHARE_WRITE : 0));
        EXPECT_EQ(DeleteFolder(*session, L"Group"), HRESULT_FROM_WIN32(ERROR_SHARING_VIOLATION));
    }
    EXPECT_EQ(engine::test::Tree(group), (std::vector<std::wstring>{L"A.lnk", L"B.lnk"}));
    EXPECT_EQ(DeleteFolder(*session, L"Group/"), 0);
}

TEST_F(Folders, ShowWhatTheSystemSays)
{
    engine::Options options = Given();
    options.silent = false;
    session.reset();
    session = std::make_unique<Session>(options);
    CreateFolder(*session, L"Group");
    static INT_PTR answer;
    const auto execute = +[](HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT)
                              WINAPI -> HINSTANCE { return reinterpret_cast<HINSTANCE>(answer); };
    const Patched patch("ShellExecuteW", execute);
    const std::pair<INT_PTR, int32_t> answers[] = {
        {0, E_OUTOFMEMORY}, {5, E_ACCESSDENIED}, {32, HRESULT_FROM_WIN32(32)}, {33, 0}};
    for (const auto& [given, expected] : answers) {
        answer = given;
        EXPECT_EQ(ShowFolder(*session, L"Group", 1), expected) << given;
    }
}

TEST_F(Folders, AreMadeListedAndRemoved)
{
    EXPECT_EQ(CreateFolder(*session, L"Group\\Sub\\"), 0);
    EXPECT_EQ(CreateFolder(*session, L""), -1);
    EXPECT_EACH(0, Add(L"B", L"C:\\b.exe"), Add(L"A", L"C:\\a.exe"));
    engine::test::WriteText(programs + L"\\Group\\readme.txt", "x");
    const ListHandle items = _ListCreate(*session, ListTypeString), folders = _ListCreate(*session, ListTypeString);
    EXPECT_EQ(EnumFoldersItems(*session, L"Group", items, folders), 0);
    EXPECT_EQ(ListText(*session, items), L"A|B");
    EXPECT_EQ(ListText(*session, folders), L"Sub");
    EXPECT_EACH(-1, EnumFoldersItems(*session, L"Group", 12345, folders),
                EnumFoldersItems(*session, L"Group", items, 12345), EnumFoldersItems(*session, L"", items, folders));
    EXPECT_EQ(EnumFoldersItems(*session, L"Group\\Sub", 12345, 12345), 0) << "nothing to add";
    EXPECT_EQ(EnumFoldersItems(*session, L"None", items, folders), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));

    {
        const Patched square(
            "SafeArrayGetDim", +[](SAFEARRAY*) WINAPI -> UINT { return 2; }, L"VHRT.dll");
        EXPECT_EQ(EnumFoldersItems(*session, L"Group", items, folders), DISP_E_TYPEMISMATCH);
    }
    EXPECT_EQ(DeleteFolder(*session, L"Group"), HRESULT_FROM_WIN32(ERROR_DIR_NOT_EMPTY));
    EXPECT_TRUE(engine::test::Exists(File(L"A"))) << "a folder that can't go keeps its shortcuts";
    EXPECT_EQ(DeleteIcon(*session, L"Group\\A"), 0);
    EXPECT_EACH(-1, DeleteIcon(*session, L"Group\\A"), DeleteIcon(*session, L""));
    EXPECT_EQ(DeleteFolder(*session, L"Group\\Sub"), 0);
    engine::RemoveFile(programs + L"\\Group\\readme.txt");
    EXPECT_EQ(DeleteFolder(*session, L"Group"), 0);
    EXPECT_FALSE(engine::test::Exists(programs + L"\\Group"));
    EXPECT_EQ(ShowFolder(*session, L"Group", 1), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    CreateFolder(*session, L"Group");
    EXPECT_EQ(ShowFolder(*session, L"Group", 5), 0);
    EXPECT_TRUE(Called(L"ISetupShell.OpenFolderWindow(\"Group\", 5)"));
}

TEST_F(Folders, TakeShellPropertiesOfTheirShortcuts)
{
    const wchar_t* const app_id = L"{9F4C2855-9F79-4B39-A8D0-E1D42DE1D5F3}, 5";
    Add(L"P", L"C:\\p.exe /keep");
    EXPECT_EQ(_SetShortcutProperty(*session, L"Group\\P", app_id, L"Sample.App"), 0);
    // Wine takes shell properties and forgets them, so the calls are looked at.
    const std::vector<std::wstring> last(Lines().end() - 3, Lines().end());
    EXPECT_EQ(last, (std::vector<std::wstring>{
                        L"ISetupShortcutProperties.SetProperty(\"" + std::wstring(app_id) + L"\", \"Sample.App\")",
                        L"ISetupShortcutProperties.SaveAs(0, \"Group\\P\")", L"ISetupShortcutProperties.Commit()"}));
    EXPECT_EQ(engine::ReadShellLink(File(L"P")).arguments, L"/keep");
    EXPECT_EQ(_SetShortcutProperty(*session, L"Group\\Q", app_id, L"x"), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(_SetShortcutProperty(*session, L"", app_id, L"x"), -1);
    EXPECT_EQ(_SetShortcutProperty(*session, L"Group\\P", L"no key", L"x"), E_INVALIDARG);
    for (const wchar_t* step :
         {L"ISetupShell.ItemExists", L"ISetupShell.OpenItem", L"ISetupShortcutProperties.SetProperty",
          L"ISetupShortcutProperties.SaveAs", L"ISetupShortcutProperties.Commit"}) {
        session->calls().FailCall(step, E_ABORT);
        EXPECT_EQ(_SetShortcutProperty(*session, L"Group\\P", app_id, L"Other"), E_ABORT);
        session->calls().FailCall(step, S_OK);
    }
    session->calls().FailCall(L"IUnknown.QueryInterface(ISetupShortcutProperties)", E_FAIL);
    EXPECT_EQ(_SetShortcutProperty(*session, L"Group\\P", app_id, L"Other"), E_NOINTERFACE);
    EXPECT_EQ(_SetShortcutProperty(nullptr, L"Group\\P", app_id, L"x"), -1);
}

TEST_F(Folders, GoWithTheRunAndGiveBackWhatWasThere)
{
    engine::LinkData own;
    own.target = L"C:\\own.exe";
    engine::MakeFolders(programs + L"\\Group");
    engine::WriteShellLink(own, File(L"Own"));
    EXPECT_EQ(Add(L"Own", L"C:\\new.exe", IconReplace), 0);
    EXPECT_EQ(AddIcon(*session, L"Other\\", L"New", L"C:\\new.exe", L"", L"", 0, L"", 0), 0);
    session->engine->Rollback();
    EXPECT_EQ(engine::ReadShellLink(File(L"Own")).target, L"C:\\own.exe");
    EXPECT_EQ(engine::test::Tree(programs), (std::vector<std::wstring>{L"Group", L"Group\\Own.lnk"}));

    EXPECT_EQ(AddIcon(*session, L"Other\\", L"New", L"C:\\new.exe", L"", L"", 0, L"", 0), 0);
    session->engine->Commit();
    EXPECT_TRUE(engine::test::Exists(programs + L"\\Other\\New.lnk"));
    const std::wstring log = session->engine->LogFile();
    session.reset();
    engine::Uninstall(log);
    EXPECT_EQ(engine::test::Tree(programs), (std::vector<std::wstring>{L"Group", L"Group\\Own.lnk"}));
}

TEST_F(Folders, TraceTheirChanges)
{
    session.reset();
    const auto engine = engine::Engine::Open(Given());
    const std::string text =
        TracedCalls(engine->Host().get(), engine->Services().get(), [](auto& library, ObjectContext* context) {
            const auto add = VHRT_GET(library, AddIcon);
            const auto replace = VHRT_GET(library, ReplaceIcon);
            add(context, L"G\\", L"I", L"a b", L"w", L"f", 1, L"F2", 4);
            add(context, L"G\\", L"", L"a", L"", L"", 0, nullptr, 0);
            replace(context, L"G\\", L"I", L"J", L"c", L"w", L"f", 2, L"", 0);
            replace(context, L"", L"I", L"", L"c", L"w", L"f", 2, L"", 0);
            for (const wchar_t* icon : {L"G\\J", L"G\\J", static_cast<const wchar_t*>(nullptr)})
                VHRT_GET(library, DeleteIcon)(context, icon);
            VHRT_GET(library, CreateFolder)(context, L"F");
            for (int i = 0; i < 2; ++i)
                VHRT_GET(library, DeleteFolder)(context, L"F");
            VHRT_GET(library, CreateFolder)(nullptr, L"N");
        });
    const std::string rest = "CommandLine=c\tWorkingDir=w\tIconPath=f\tIcon=2\tShortcutKey=\tFlags=0";
    EXPECT_EQ(text, Record("AddFolderIcon",
                           "ProgramFolder=G\\\tItemName=I\tCommandLine= a b\tWorkingDir=w\tIconFile=f\tIconIndex=1\t"
                           "ShortcutKey=F2\tFlags=4",
                           success) +
                        Record("AddFolderIcon",
                               "ProgramFolder=G\\\tItemName=\tCommandLine= a\tWorkingDir=\tIconFile=\tIconIndex=0\t"
                               "ShortcutKey=\tFlags=0",
                               "Failure\t\tError=0xffffffff\t\t") +
                        Record("ReplaceFolderIcon", "ProgramFolder=G\\\tItemName=I\tNewItemName=J\t" + rest, success) +
                        Record("ReplaceFolderIcon", "ProgramFolder=\tItemName=I\tNewItemName=\t" + rest, failure) +
                        Record("DeleteFolderIcon", "Icon=G\\J", success) + Record("DeleteFolderIcon", "Icon=G\\J") +
                        Record("DeleteFolderIcon", "Icon=", failure) +
                        Record("CreateProgramFolder", "Folder=F", success) +
                        Record("DeleteProgramFolder", "Folder=F", success) +
                        Record("DeleteProgramFolder", "Folder=F", "Failure\t\tError=0x80070002\t") +
                        Record("CreateProgramFolder", "Folder=N"));
}

} // namespace
