// Registration scripts: what they say, and where they are refused.
#include "../../system/registration_script.h"
#include "../support/test.h"

namespace {

// "name", "!name" for one that stays, "~name" for one that is removed by force; values and keys in brackets.
std::string Shown(const vh::script_key& key)
{
    std::string shown = key.no_remove ? "!" : key.force_remove ? "~" : "";
    shown += key.name + "(";
    for (const auto& [name, data] : key.values)
        shown += name + "=" + data + ";";
    for (const vh::script_key& child : key.children)
        shown += Shown(child);
    return shown + ")";
}

// "|" ends a line.
std::string Lines(std::string text)
{
    for (std::size_t at = 0; (at = text.find('|', at)) != text.npos; at += 2)
        text.replace(at, 1, "\r\n");
    return text;
}

TEST(RegistrationScript, IsATreeOfKeys)
{
    Table<const char*, const char*> cases = {
        {"HKCR|{|}", "()"},
        {"HKCR\r{\rA\r}\r", "(A())"},
        {" \t||HKCR || {|\t| A | |} | |", "(A())"},
        {"HKCR|{|NoRemove A|{|ForceRemove B = s c|{|val D = s 'e f'|}|}|G|}|", "(!A(~B(=c;D=e f;))G())"},
        {"HKCR|{|A|{|B|{|}}|C|}", "(A(B())C())"},
        {"HKCR|{|{0-1} = s {x}|{|val '' = s ''|}|}", "({0-1}(={x};=;))"},
        {"HKCR|{|'val'|s|d|'a b' = s 's'|a=b|A\\B|}", "(val()s()d()a b(=s;)a=b()A\\B())"},
        {"HKCR|{|a =s 'x|y'|}", "(a(=x\r\ny;))"}};
    for (const auto& [text, shown] : cases) {
        vh::RegistrationScript script;
        vh::script_fault fault;
        EXPECT_TRUE(script.Parse(Lines(text), fault)) << text << fault.reason << fault.line << ":" << fault.column;
        EXPECT_EQ(Shown(script.root), shown);
    }
}

TEST(RegistrationScript, IsRefusedWhereItIsWrong)
{
    const std::string deep = [] {
        std::string text = "HKCR|{|";
        for (int i = 0; i < 513; ++i)
            text += "a|{|";
        return text;
    }();
    Table<std::string, const char*, std::size_t, std::size_t> cases = {
        {"", "HKCR has to come first", 1, 1},
        {"HKLM|{|}", "HKCR has to come first", 1, 1},
        {"hkcr|{|}", "HKCR has to come first", 1, 1},
        {"HKCR {|}", "the line has to end here", 1, 6},
        {"HKCR\n{\n}", "a line feed without a carriage return before it", 1, 5},
        {"HKCR|A", "{ has to come here, at the end of its line", 2, 1},
        {"HKCR|{", "{ has to come here, at the end of its line", 2, 1},
        {"HKCR|{ A|}", "the line has to end here", 2, 3},
        {"HKCR|{|A", "the line has to end here", 3, 2},
        {"HKCR|{|A|", "} is missing", 4, 1},
        {"HKCR|{|// no comment|}", "the line has to end here", 3, 4},
        {"HKCR|{|; |}", "", 0, 0},
        {"HKCR|{|A = d 1|}", "numbers are not supported", 3, 5},
        {"HKCR|{|A = b 1|}", "the type s has to come here", 3, 5},
        {"HKCR|{|A = s|}", "a name has to come here", 3, 6},
        {"HKCR|{|A = s s|}", "a name has to come here", 3, 7},
        {"HKCR|{|A = s b c|}", "the line has to end here", 3, 9},
        {"HKCR|{|A = s 'b''c'|}", "the line has to end here", 3, 10},
        {"HKCR|{|A = s 'b|}", "a quote that is not closed", 3, 7},
        {"HKCR|{|||val B = s a b|}", "the line has to end here", 5, 13},
        {"HKCR|{|val B|}", "= has to come here", 3, 6},
        {"HKCR|{|NoRemove ForceRemove A|}", "a name has to come here", 3, 10},
        {"HKCR|{|'' = s x|}", "a key's name is empty, or a part of it is", 3, 1},
        {"HKCR|{|A\\\\B|}", "a key's name is empty, or a part of it is", 3, 1},
        {"HKCR|{|val B = s c|{|}|}", "a block without a key", 4, 1},
        {"HKCR|{|}|HKCR|", "nothing may stand behind the last }", 4, 1},
        {std::string("HKCR|{|A\0B|}", 12), "a zero in the text", 3, 1},
        {deep, "more keys in each other than the registry takes", 1027, 1}};
    for (const auto& [text, reason, line, column] : cases) {
        vh::RegistrationScript script;
        vh::script_fault fault;
        const bool refused = line != 0;
        EXPECT_EQ(script.Parse(Lines(text), fault), !refused) << text;
        if (!refused)
            continue;
        EXPECT_STREQ(fault.reason, reason) << text;
        EXPECT_EQ(std::pair(fault.line, fault.column), std::pair(line, column)) << text;
        EXPECT_EQ(Shown(script.root), "()");
    }
}

TEST(RegistrationScript, ReplacesOneVariable)
{
    vh::RegistrationScript script;
    script.replacements = {{"MODULEPATH", "C:\\x"}, {"", "none"}};
    Table<const char*, const char*> cases = {
        {"50%", "50%"}, {"%MODULEPATH%\\y", "C:\\x\\y"},  {"a %MODULEPATH% %MODULEPATH%", "a C:\\x %MODULEPATH%"},
        {"%%", "none"}, {"%modulepath%", "%modulepath%"}, {"%OTHER%%MODULEPATH%", "%OTHER%%MODULEPATH%"},
        {"", ""}};
    for (const auto& [data, replaced] : cases)
        EXPECT_EQ(script.Replaced(data), replaced);
}

} // namespace
