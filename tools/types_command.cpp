#include "types_command.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "exit_codes.h"
#include "file_bytes.h"
#include "header_comments.h"
#include "host/call_record.h"
#include "host/call_signature.h"
#include "host/constants.h"
#include "host/host_object.h"
#include "host/text.h"

namespace tools {

namespace {

using host::Kind;

constexpr const char* head =
    R"(// Functions, values and constants of setup scripts that vhhost.exe runs. An editor takes them from here by a first line
// of the script: /// <reference path="vhrt.d.ts" />
// Made by "vhtool exports --types"; do not change it by hand.

declare namespace VHRT {
    /** A number; a truth counts as 1 or 0. */
    type Int = number | boolean;
    /** A number; beyond 2^53 a decimal text. */
    type Int64 = number | string;
    /** null and undefined pass a null pointer. */
    type Text = string | null | undefined;
    /** An array of the system, for new VBArray(...). */
    type SafeArrayValue = any;
)";

// What a script gives for an argument, and what it gets; null where it does neither.
struct KindTypes {
    Kind kind;
    const char* given;
    const char* got;
};
constexpr KindTypes kind_types[] = {
    {Kind::Int, "Int", nullptr},
    {Kind::Int64, "Int64", nullptr},
    {Kind::Text, "Text", nullptr},
    {Kind::Narrow, "Text", nullptr},
    {Kind::Variant, "any", nullptr},
    {Kind::Texts, "string[]", nullptr},
    {Kind::NarrowArray, "Int64", nullptr},
    {Kind::AtMost, "Int", nullptr},
    {Kind::InOutInt, "Int", "number"},
    {Kind::InOutInt64, "Int64", "Int64"},
    {Kind::InOutText, "Text", "string"},
    {Kind::InOutBstr, "Text", "string"},
    {Kind::Block, "string | number", "string"},
    {Kind::OutInt, nullptr, "number"},
    {Kind::OutInt64, nullptr, "Int64"},
    {Kind::OutText, nullptr, "string"},
    {Kind::OutVariant, nullptr, "any"},
    {Kind::OutTexts, "number", "SafeArrayValue"},
    {Kind::Buffer, nullptr, "string"},
    {Kind::BufferOf, "number", "string"},
    {Kind::BufferInOut, nullptr, "string"},
    {Kind::ValueOf, nullptr, "string"},
    {Kind::BytesInOut, nullptr, "string"},
};

std::string TypeOf(const host::Argument& argument, bool given)
{
    if (argument.kind == Kind::Record)
        return given ? "Partial<" + argument.detail + "> | null" : argument.detail;
    for (const KindTypes& row : kind_types)
        if (row.kind == argument.kind)
            return given ? row.given : row.got;
    throw std::logic_error("a kind without a type");
}

// A name that the language keeps for itself gets a line below.
std::string ParameterName(const std::string& name)
{
    static const std::set<std::string> kept = {"function", "default", "class", "new", "delete", "in", "with"};
    return kept.contains(name) ? name + "_" : name;
}

// "name: type" behind what stands there already.
void Append(std::string& list, const char* separator, const std::string& name, const std::string& type)
{
    list.append(list.empty() ? "" : separator).append(name).append(": ").append(type);
}

std::string Declaration(const host::Call& call)
{
    std::string given;
    std::string got = call.result == host::Result::None ? "void" : "number";
    if (call.HasOutputs())
        got = "{ result: " + got;
    for (const host::Argument& argument : call.arguments) {
        const host::KindInfo& info = host::InfoOf(argument.kind);
        if (info.from_script)
            Append(given, ", ", ParameterName(argument.name), TypeOf(argument, true));
        if (info.to_script)
            Append(got, "; ", argument.name, TypeOf(argument, false));
    }
    std::string text = "function ";
    text.append(call.ScriptName()).append("(").append(given).append("): ").append(got);
    return text.append(call.HasOutputs() ? " };" : ";");
}

// Lines that are no longer than people like to read them, each behind `prefix`.
std::vector<std::string> Lines(std::string_view text, const std::string& prefix)
{
    constexpr std::size_t longest = 120;
    std::vector<std::string> lines{prefix};
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        if (lines.back().size() > prefix.size() && lines.back().size() + 1 + word.size() > longest)
            lines.push_back(prefix);
        lines.back().append(lines.back().size() > prefix.size() ? " " : "").append(word);
        text.remove_prefix(std::min(word.size() + 1, text.size()));
    }
    return lines;
}

void AddLines(std::string& text, const std::vector<std::string>& lines)
{
    for (const std::string& line : lines)
        text.append(line).append("\n");
}

// What an editor shows with the declaration below it.
void AddComment(std::string& text, std::string_view comment)
{
    const std::vector<std::string> lines = Lines(comment, "     * ");
    if (comment.empty())
        return;
    if (lines.size() == 1)
        text.append("    /** ").append(comment).append(" */\n");
    else {
        text.append("    /**\n");
        AddLines(text, lines);
        text.append("     */\n");
    }
}

void AddTitle(std::string& text, const std::string& title)
{
    text.append("\n");
    AddLines(text, Lines(title, "    // "));
    text.append("\n");
}

void AddRecord(std::string& text, const std::string& name)
{
    using host::FieldKind;
    text.append("    interface ").append(name).append(" {\n");
    for (const host::RecordField& field : host::RecordNamed(name).fields) {
        const bool isText = field.kind == FieldKind::Chars || field.kind == FieldKind::Text;
        text.append("        ").append(host::Utf8(field.name));
        text.append(isText ? ": string;\n" : field.kind == FieldKind::Ints ? ": SafeArrayValue;\n" : ": number;\n");
    }
    text.append("    }\n");
}

std::string Hexadecimal(int64_t value) { return host::Utf8(host::ShortHex(static_cast<uint32_t>(value))); }

// A global name beside the member of VHRT. JScript has a GetObject of its own.
void AddGlobal(std::string& names, std::string_view name)
{
    if (name != "GetObject")
        names.append("import ").append(name).append(" = VHRT.").append(name).append(";\n");
}

std::string_view DeclaredName(std::string_view declaration)
{
    declaration.remove_prefix(declaration.find(' ') + 1);
    return declaration.substr(0, declaration.find_first_of("(:"));
}

std::map<std::string, host::Call> Calls()
{
    std::map<std::string, host::Call> calls;
    for (const host::CallRow& row : host::CallTable())
        calls.emplace(row.name, host::ParseCall(row));
    return calls;
}

std::set<std::string> RecordsOf(const std::map<std::string, host::Call>& calls)
{
    std::set<std::string> records;
    for (const auto& [name, call] : calls)
        for (const host::Argument& argument : call.arguments)
            if (argument.kind == Kind::Record)
                records.insert(argument.detail);
    return records;
}

void Write(const std::string& text) { WriteBytes(GetStdHandle(STD_OUTPUT_HANDLE), L"standard output", text); }

} // namespace

int PrintTypes(const std::wstring& headers)
{
    const HeaderComments comments = ReadHeaderComments(headers);
    const std::map<std::string, host::Call> calls = Calls();
    std::string text = head;
    std::string names;
    for (const std::string& record : RecordsOf(calls))
        AddRecord(text, record);
    AddTitle(text, "What the host adds.");
    for (const host::Service& service : host::ServiceTable()) {
        AddComment(text, service.meaning);
        text.append("    ").append(service.declaration).append(";\n");
        AddGlobal(names, DeclaredName(service.declaration));
    }
    for (const HeaderFamily& family : comments.families) {
        AddTitle(text, family.name + ".h: " + family.about);
        for (const std::string& function : family.functions) {
            const host::Call& call = calls.at(function);
            AddComment(text, comments.of.find(function)->second);
            text.append("    ").append(Declaration(call)).append("\n");
            AddGlobal(names, call.ScriptName());
        }
    }
    for (const host::ConstantGroup& group : host::ConstantTable()) {
        AddTitle(text, std::string(group.title) + ".");
        for (const host::Constant& constant : group.constants) {
            AddComment(text, constant.meaning);
            text.append("    const ").append(constant.name).append(": ");
            text.append(std::to_string(constant.value)).append(";\n");
            AddGlobal(names, constant.name);
        }
    }
    Write(text.append("}\n\n").append(names));
    return exit_done;
}

int PrintConstants()
{
    std::string text = "# Constants of scripts\n\n"
                       "Scripts know these numbers by name, and C by `vhrt.h`. The page is made by\n"
                       "`vhtool exports --constants`.\n";
    for (const host::ConstantGroup& group : host::ConstantTable()) {
        text += "\n## " + std::string(group.title) + "\n\n| Name | Value | Meaning |\n|---|---|---|\n";
        for (const host::Constant& constant : group.constants)
            text += "| `" + std::string(constant.name) + "` | " +
                    (group.hexadecimal ? Hexadecimal(constant.value) : std::to_string(constant.value)) + " | " +
                    constant.meaning + " |\n";
    }
    Write(text);
    return exit_done;
}

} // namespace tools
