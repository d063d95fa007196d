// Servers, type libraries and scripts registered and unregistered, below roots of the test's own.
#include "../../system/registration.h"
#include "../../diagnostics/mapped_file.h"
#include "../../files/remove_tree.h"
#include "../../files/unicode_file.h"
#include "../../scriptdata/com_ptr.h"
#include "../../system/late_advapi32.h"
#include "../../system/pending_operations.h"
#include "../support/registry_root.h"
#include "../support/replaced.h"
#include "../support/temp_folder.h"

#include <oleauto.h>
#include <regex>

namespace {

using namespace vh;
using namespace vh::test;

class Registration : public testing::Test {
protected:
    RegistryRoot machine{HKEY_LOCAL_MACHINE};
    RegistryRoot user{HKEY_CURRENT_USER};
    TempFolder folder;
};

// A file beside the test program.
std::wstring Beside(const wchar_t* name)
{
    wchar_t own[MAX_PATH];
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    return std::wstring(own, std::wstring_view(own).rfind(L'\\') + 1).append(name);
}

constexpr const char* tree = "Software\nSoftware\\Classes\nSoftware\\Classes\\A\nSoftware\\Classes\\A>=d\n"
                             "Software\\Classes\\A>P=C:\\x\\y\nSoftware\\Classes\\A\\B\n";

TEST_F(Registration, OfAScriptMakesAndDeletesItsKeys)
{
    const stringx script(folder.Write(L"s.rgs",
                                      "HKCR\r\n{\r\nNoRemove A = s 'd'\r\n{\r\nval P = s '%MODULEPATH%\\y'\r\n"
                                      "B\r\n}\r\n}\r\n"));
    script_fault fault;
    for (const bool per_user : {false, true}) {
        const RegistryRoot& used = per_user ? user : machine;
        EXPECT_TRUE(RegisterFromScript(script, L"C:\\x\\", true, per_user, fault));
        EXPECT_EQ(used.Shown(), tree);
        EXPECT_EQ((per_user ? machine : user).Shown(), per_user ? "Software\nSoftware\\Classes\nSoftware\\Classes\\A\n"
                                                                  "Software\\Classes\\A>=d\n"
                                                                  "Software\\Classes\\A>P=C:\\x\\y\n"
                                                                : "");
        EXPECT_TRUE(RegisterFromScript(script, L"", false, per_user, fault));
        EXPECT_TRUE(RegisterFromScript(script, L"", false, per_user, fault)) << "not there any more";
        EXPECT_EQ(used.Shown().find("\\B"), std::string::npos);
        EXPECT_NE(used.Shown().find("Classes\\A>P"), std::string::npos) << "it stays, with its values";
    }
}

TEST_F(Registration, LeavesKeysOfOthersAndTellsFaults)
{
    script_fault fault;
    const stringx script(folder.Write(L"s.rgs", "HKCR\r\n{\r\nForceRemove A\r\n}"));
    EXPECT_TRUE(RegisterFromScript(script, L"", true, false, fault));
    RegSetKeyValueW(machine.key(), L"Software\\Classes\\A\\foreign", L"v", REG_SZ, L"", 2);
    EXPECT_TRUE(RegisterFromScript(script, L"", false, false, fault));
    EXPECT_NE(machine.Shown().find("A\\foreign>v="), std::string::npos);
    EXPECT_FALSE(
        RegisterFromScript(stringx(folder.Write(L"t", "HKCR\r\n{\r\nX\r\nA = d 1\r\n}")), L"", true, true, fault));
    EXPECT_EQ(std::pair(fault.line, fault.column), std::pair(std::size_t{4}, std::size_t{5}));
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(ERROR_INVALID_DATA));
    EXPECT_EQ(user.Shown(), "");
    for (const auto& [path, code] :
         {std::pair(std::wstring(), ERROR_INVALID_PARAMETER), std::pair(folder / L"none", ERROR_FILE_NOT_FOUND),
          std::pair(folder.Write(L"e", ""), ERROR_FILE_INVALID)}) {
        EXPECT_FALSE(RegisterFromScript(stringx(path), L"", true, true, fault));
        EXPECT_GIVES(last_file_failure().code, static_cast<DWORD>(code), fault.reason, nullptr);
    }
}

TEST_F(Registration, OfALibraryCallsItsEntryPoint)
{
    const std::wstring server = Beside(L"vhrt_test_server.dll");
    const std::wstring control = folder / L"server.Ocx";
    ASSERT_TRUE(CopyFileW(server.c_str(), control.c_str(), FALSE));
    const RegistryRoot everybody(HKEY_CLASSES_ROOT);
    EXPECT_TRUE(RegisterModule(stringx(control), true, false));
    EXPECT_EQ(everybody.Shown(), "VHRTTestServer\nVHRTTestServer\\shell\nVHRTTestServer\\shell>a=b\n");
    EXPECT_TRUE(RegisterModule(stringx(server), false, false));
    EXPECT_EQ(everybody.Shown(), "");
    EXPECT_FALSE(RegisterModule(stringx(server), false, false)) << "it says that there was nothing";
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND)));
}

TEST_F(Registration, ForAUserLiftsTheOverride)
{
    const std::wstring server = Beside(L"vhrt_test_server.dll");
    static std::vector<bool> overrides;
    overrides.clear();
    const Replaced watched(
        late::override_root, +[](HKEY root, HKEY key) -> LSTATUS {
            overrides.push_back(key != nullptr);
            return RegOverridePredefKey(root, key);
        });
    EXPECT_TRUE(RegisterModule(stringx(server), true, true));
    EXPECT_NE(user.Shown().find("Software\\Classes\\VHRTTestServer\\shell>a=b"), std::string::npos);
    EXPECT_TRUE(RegisterModule(stringx(server), false, true));
    EXPECT_FALSE(RegisterModule(stringx(folder / L"none.dll"), true, true));
    EXPECT_FALSE(RegisterModule(stringx(folder.Write(L"no.tlb", "x")), true, true));
    EXPECT_EQ(overrides, (std::vector<bool>{true, false, true, false, true, false, true, false}));
    EXPECT_FALSE(RegisterModule(stringx(folder / L"a.exe"), true, true));
    EXPECT_FALSE(RegisterModule(stringx(folder / L"a.txt"), true, false));
    EXPECT_FALSE(RegisterModule(L"C:\\windows\\system32\\kernel32.dll", true, false));
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(ERROR_PROC_NOT_FOUND));
}

std::wstring MadeTypeLibrary(const std::wstring& path)
{
    com_ptr<ICreateTypeLib2> library;
    EXPECT_EQ(CreateTypeLib2(SYS_WIN64, path.c_str(), library.put()), S_OK);
    const GUID id{0x5D3CDA10, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};
    EXPECT_EQ(library->SetGuid(id), S_OK);
    EXPECT_EQ(library->SetVersion(3, 7), S_OK);
    EXPECT_EQ(library->SetLcid(9), S_OK);
    wchar_t name[] = L"Tested";
    EXPECT_EQ(library->SetName(name), S_OK);
    EXPECT_EQ(library->SaveAllChanges(), S_OK);
    return path;
}

TEST_F(Registration, OfATypeLibraryIsFoundByItsId)
{
    const std::wstring library = MadeTypeLibrary(folder / L"a b.TLB");
    const std::string narrow = std::filesystem::path(library).string();
    for (const bool per_user : {false, true}) {
        std::optional<RegistryRoot> everybody;
        if (!per_user)
            everybody.emplace(HKEY_CLASSES_ROOT);
        const RegistryRoot& used = per_user ? user : *everybody;
        EXPECT_TRUE(RegisterModule(stringx(library), true, per_user)) << last_file_failure().code;
        EXPECT_NE(used.Shown().find("\\{5D3CDA10-0001-0002-0304-05060708090A}\\3.7\\9\\win64>=" + narrow + "\n"),
                  std::string::npos)
            << used.Shown();
        EXPECT_TRUE(RegisterModule(stringx(library), false, per_user));
        EXPECT_EQ(used.Shown().find("5D3CDA10"), std::string::npos) << used.Shown();
    }
    EXPECT_FALSE(RegisterModule(stringx(library), false, true)) << "not there any more";
    EXPECT_TRUE(FAILED(static_cast<long>(last_file_failure().code)));
}

DWORD g_waited = 0;
bool g_impatient = false;
DWORD WINAPI Wait(HANDLE handle, DWORD limit)
{
    g_waited = limit;
    return OfSystem<decltype(WaitForSingleObject)>("WaitForSingleObject")(handle, g_impatient ? 0 : 60000);
}

TEST_F(Registration, OfAProgramIsItsExitCode)
{
    const Patched wait("WaitForSingleObject", &Wait);
    const unique_handle let_go(CreateEventW(nullptr, TRUE, FALSE, L"vhrt test server"));
    Table<const wchar_t*, bool, DWORD, const char*> cases = {{L"a b0.exe", true, 0, "/REGSERVER"},
                                                             {L"0.EXE", false, 0, "/UNREGSERVER"},
                                                             {L"3.exe", true, 3, "/REGSERVER"},
                                                             {L"9.exe", true, WAIT_TIMEOUT, nullptr}};
    for (const auto& [name, registers, code, said] : cases) {
        const std::wstring program = folder / name;
        ASSERT_TRUE(CopyFileW(Beside(L"vhrt_test_program.exe").c_str(), program.c_str(), FALSE));
        g_impatient = !said;
        EXPECT_EQ(RegisterModule(stringx(program), registers, false), code == 0);
        EXPECT_GIVES(last_file_failure().code, code, g_waited, 5000u);
        const std::string heard = said ? BytesOf(program + L".said") : "";
        EXPECT_EQ(heard.find(said ? said : ""), heard.size() - std::strlen(said ? said : "")) << heard;
    }
    SetEvent(let_go.get());
    EXPECT_FALSE(RegisterModule(stringx(folder / L"none.exe"), true, false));
    EXPECT_EQ(last_file_failure().code, static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

// What a registry has to hold, and how a script changes it.
struct Model {
    std::map<std::string, Model> keys;
    std::map<std::string, std::string> values;

    void Write(const script_key& record)
    {
        for (const auto& [name, data] : record.values)
            values[name] = std::regex_replace(data, std::regex("^([^%]*)%MODULEPATH%"), "$1C:\\m");
        for (const script_key& child : record.children)
            keys[child.name].Write(child);
    }
    void Remove(const script_key& record)
    {
        for (const script_key& child : record.children)
            if (const auto found = keys.find(child.name); found != keys.end()) {
                found->second.Remove(child);
                if (!child.no_remove && found->second.keys.empty())
                    keys.erase(found);
            }
    }
    std::string Shown(const std::string& path) const
    {
        std::set<std::string> lines;
        for (const auto& [name, data] : values)
            lines.insert(path + ">" + name + "=" + data + "\n");
        std::string shown = path + "\n";
        for (const std::string& line : lines)
            shown += line;
        for (const auto& [name, key] : keys)
            shown += key.Shown(path + "\\" + name);
        return shown;
    }
};

// A script and the tree that it says, by chance.
class Chance {
public:
    explicit Chance(unsigned seed) : m_random(seed) {}
    script_key Tree()
    {
        script_key root;
        text = Line("HKCR");
        Block(root, 0);
        return root;
    }
    std::string text;

private:
    std::size_t Below(std::size_t limit) { return m_random() % limit; }
    std::string Blanks() { return std::string(Below(3), Below(2) ? ' ' : '\t'); }
    std::string Line(const std::string& words)
    {
        return Blanks() + words + Blanks() + (Below(4) ? "\r\n" : "\r") + (Below(9) ? "" : " \r\n");
    }
    // In quotes where it has to be, or by chance.
    std::string Spelled(const std::string& name, bool bare) { return bare && Below(2) ? name : "'" + name + "'"; }
    std::string Name(std::string& spelled)
    {
        Table<const char*, bool> names = {{"a", true},       {"b c", false}, {"{0-1}", true}, {"{", false},
                                          {"}x", false},     {"val", false}, {"HKCR", false}, {"x=y", true},
                                          {"q}", true},      {"=", false},   {"x{y", true},   {"%a%", true},
                                          {"noremove", true}};
        const auto& [name, bare] = names[Below(std::size(names))];
        spelled = Spelled(name, bare);
        return name;
    }
    std::string Data(std::string& spelled)
    {
        Table<const char*, bool> all = {{"", false},
                                        {"x", true},
                                        {"a b", false},
                                        {"%MODULEPATH%\\x", true},
                                        {"s", false},
                                        {"two\r\nlines", false},
                                        {"%O% %MODULEPATH%", false},
                                        {"50% {%MODULEPATH%", false},
                                        {"{1}", true},
                                        {"a %MODULEPATH%%MODULEPATH%", false}};
        const auto& [data, bare] = all[Below(std::size(all))];
        spelled = " = s " + Spelled(data, bare);
        return data;
    }
    void Block(script_key& owner, int depth)
    {
        text += Line("{");
        for (std::size_t left = Below(4); left > 0; --left) {
            std::string name, data;
            const std::string taken = Name(name);
            if (Below(3) == 0) {
                owner.values.emplace_back(taken, Data(data));
                text += Line("val " + name + data);
                continue;
            }
            script_key child;
            child.name = taken;
            const std::size_t mark = Below(4);
            child.no_remove = mark == 1;
            child.force_remove = mark == 2;
            if (Below(2))
                child.values.emplace_back("", Data(data));
            text += Line((child.no_remove ? "NoRemove " : child.force_remove ? "ForceRemove\t" : "") + name + data);
            if (depth < 6 && Below(3))
                Block(child, depth + 1);
            owner.children.push_back(std::move(child));
        }
        text += Line("}");
    }

    std::mt19937 m_random;
};

TEST_F(Registration, OfAnyTreeIsWhatTheScriptSays)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        Chance chance(seed);
        const script_key root = chance.Tree();
        RegistrationScript script;
        script_fault fault;
        ASSERT_TRUE(script.Parse(chance.text, fault)) << chance.text << fault.line << ": " << fault.reason;
        ASSERT_TRUE(script.root == root) << chance.text;
        const stringx file(folder.Write(L"s.rgs", chance.text));
        Model model;
        model.Write(root);
        ASSERT_TRUE(RegisterFromScript(file, L"C:\\m\\", true, true, fault)) << chance.text;
        ASSERT_EQ(user.Shown(), "Software\n" + model.Shown("Software\\Classes")) << chance.text;
        model.Remove(root);
        ASSERT_TRUE(RegisterFromScript(file, L"", false, true, fault)) << chance.text;
        ASSERT_EQ(user.Shown(), "Software\n" + model.Shown("Software\\Classes")) << chance.text;
        RegDeleteTreeW(user.key(), nullptr);
    }
}

// The scripts that the system's own libraries bring along; there are none on some systems.
std::vector<std::string> ScriptsOfTheSystem()
{
    std::vector<std::string> scripts;
    wchar_t system[MAX_PATH];
    GetSystemDirectoryW(system, MAX_PATH);
    for (const auto& entry : std::filesystem::directory_iterator(system)) {
        const unique_module module(LoadLibraryExW(entry.path().c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
        EnumResourceNamesW(
            module.get(), L"WINE_REGISTRY",
            [](HMODULE library, const wchar_t* type, wchar_t* name, LONG_PTR all) -> BOOL {
                HRSRC found = FindResourceW(library, name, type);
                const auto* text = static_cast<const char*>(LockResource(LoadResource(library, found)));
                reinterpret_cast<std::vector<std::string>*>(all)->emplace_back(text, SizeofResource(library, found));
                return TRUE;
            },
            reinterpret_cast<LONG_PTR>(&scripts));
    }
    return scripts;
}

TEST(RegistrationScripts, OfTheSystemAreReadOrRefusedWhereTheyAreWrong)
{
    const std::vector<std::string> scripts = ScriptsOfTheSystem();
    if (scripts.empty())
        GTEST_SKIP() << "this system has none";
    // What stands at the place of a refusal.
    const std::map<std::string, std::regex> wrong = {
        {"a line feed without a carriage return before it", std::regex("")},
        {"the line has to end here", std::regex("\\{.*\\}\r?")},
        {"HKCR has to come first", std::regex("HK(LM|CU)\r?")},
        {"nothing may stand behind the last }", std::regex("HK(LM|CU|CR)\r?")},
        {"numbers are not supported", std::regex("d .*")},
        {"the type s has to come here", std::regex("b .*")}};
    int read = 0;
    const auto is_read = [&](const std::string& text) {
        RegistrationScript parsed;
        script_fault fault;
        if (parsed.Parse(text, fault))
            return true;
        std::istringstream lines(text);
        std::string line;
        for (std::size_t i = 0; i < fault.line; ++i)
            std::getline(lines, line);
        const auto found = wrong.find(fault.reason);
        EXPECT_TRUE(found != wrong.end() && std::regex_match(line.substr(fault.column - 1), found->second))
            << fault.reason << ": " << line.substr(fault.column - 1);
        return false;
    };
    for (const std::string& script : scripts) {
        EXPECT_FALSE(is_read(script));
        read += is_read(std::regex_replace(script, std::regex("\n"), "\r\n"));
    }
    EXPECT_GT(read, 0);
    RecordProperty("scripts", static_cast<int>(scripts.size()));
    RecordProperty("read", read);
}

DWORD OpenHandles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

TEST_F(Registration, AndItsNeighboursLeaveNothingOpen)
{
    const stringx good(folder.Write(L"good.rgs", "HKCR\r\n{\r\nA\r\n{\r\nB\r\n}\r\n}")), bad(folder.Write(L"bad", "x"));
    const stringx library(MadeTypeLibrary(folder / L"a.tlb")), server(Beside(L"vhrt_test_server.dll"));
    const stringx text(folder.Write(L"text", std::string("\xFF\xFE"
                                                         "a\0b\0",
                                                         6)));
    ASSERT_TRUE(CopyFileW(Beside(L"vhrt_test_program.exe").c_str(), (folder / L"0.exe").c_str(), FALSE));
    script_fault fault;
    DWORD before = 0;
    for (int run = 0; run <= 100; ++run) {
        for (const bool registers : {true, false}) {
            EXPECT_TRUE(RegisterFromScript(good, L"", registers, false, fault));
            EXPECT_FALSE(RegisterFromScript(bad, L"", registers, false, fault));
            EXPECT_TRUE(RegisterModule(library, registers, true));
            EXPECT_TRUE(RegisterModule(server, registers, true));
        }
        EXPECT_TRUE(run % 5 || RegisterModule(stringx(folder / L"0.exe"), true, false));
        EXPECT_TRUE(ConvertUnicodeFile(text, stringx(folder / L"out"), 1252));
        EXPECT_FALSE(ConvertUnicodeFile(bad, stringx(folder / L"out"), 1252));
        RecordPendingOperation((folder / L"out").c_str(), (folder / L"tree\\a").c_str());
        EXPECT_NE(ApplyPendingOperations(), S_OK) << "no folder";
        folder.Write(L"tree\\b\\c", "");
        RemoveTree(stringx(folder / L"tree"), false);
        if (run == 0)
            before = OpenHandles();
    }
    EXPECT_LE(OpenHandles(), before + 10);
}

} // namespace
