// Registration scripts, made by chance and found on the system, against what they have to do.
#include <numeric>
#include <regex>

#include "../../system/registration.h"
#include "../support/registry_root.h"

namespace {

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
        std::string shown = path + "\n";
        std::set<std::string> lines;
        for (const auto& [name, data] : values)
            lines.insert(path + ">" + name + "=" + data + "\n");
        shown = std::accumulate(lines.begin(), lines.end(), shown);
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
    // One of the texts, in quotes; the first `bare` can also stand without.
    template <class... Text>
    std::string Pick(std::string& words, std::size_t bare, Text... choices)
    {
        const char* const texts[] = {choices...};
        const std::size_t at = Below(sizeof...(choices));
        const char* quote = at < bare && Below(2) ? "" : "'";
        words.append(quote).append(texts[at]).append(quote);
        return texts[at];
    }
    std::string Name(std::string& words)
    {
        return Pick(words, 7, "a", "{0-1}", "x=y", "q", "x{y", "%a%", "noremove", "b c", "{", "}x", "val", "HKCR", "=");
    }
    std::string Data(std::string& words)
    {
        words += " = s ";
        return Pick(words, 3, "x", "%MODULEPATH%\\x", "{1}", "", "a b", "s", "two\r\nlines", "%O% %MODULEPATH%",
                    "50% {%MODULEPATH%", "a %MODULEPATH%%MODULEPATH%");
    }
    void Block(script_key& owner, int depth)
    {
        constexpr const char* marks[] = {"", "NoRemove ", "ForceRemove\t"};
        text += Line("{");
        for (std::size_t left = Below(4); left > 0; --left) {
            if (Below(3) == 0) {
                std::string words = "val ", name = Name(words);
                owner.values.emplace_back(name, Data(words));
                text += Line(words);
                continue;
            }
            const std::size_t mark = Below(3);
            std::string words = marks[mark], name = Name(words);
            script_key& child = owner.children.emplace_back(script_key{name, mark == 2, mark == 1, {}, {}});
            if (Below(2))
                child.values.emplace_back("", Data(words));
            text += Line(words);
            if (depth < 6 && Below(3))
                Block(child, depth + 1);
        }
        text += Line("}");
    }

    std::mt19937 m_random;
};

TEST(RegistrationScripts, OfAnyTreeMakeItAndTakeItAway)
{
    const TempFolder folder;
    const RegistryRoot machine(HKEY_LOCAL_MACHINE), user(HKEY_CURRENT_USER);
    for (unsigned seed = 0; seed < 300; ++seed) {
        Chance chance(seed);
        const script_key root = chance.Tree();
        RegistrationScript script;
        script_fault fault;
        ASSERT_TRUE(script.Parse(chance.text, fault)) << chance.text << fault.line << ": " << fault.reason;
        ASSERT_TRUE(script.root == root) << chance.text;
        const stringx file(folder.Write(L"s.rgs", chance.text));
        const bool per_user = seed % 2;
        const RegistryRoot& used = per_user ? user : machine;
        Model model;
        model.Write(root);
        for (const bool registers : {true, false, false}) {
            ASSERT_TRUE(RegisterFromScript(file, L"C:\\m\\", registers, per_user, fault)) << chance.text;
            if (!registers)
                model.Remove(root);
            ASSERT_EQ(used.Shown(), "Software\n" + model.Shown("Software\\Classes")) << chance.text;
        }
        RegDeleteTreeW(used.key(), nullptr);
    }
}

// The scripts that the system's own libraries bring along; there are none on some systems.
std::vector<std::string> ScriptsOfTheSystem()
{
    std::vector<std::string> scripts;
    for (const auto& entry : std::filesystem::directory_iterator(Filled(GetSystemDirectoryW))) {
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

} // namespace
