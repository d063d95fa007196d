#include "call_signature.h"

#include <stdexcept>

namespace host {

namespace {

constexpr KindInfo kinds[] = {
    {Kind::Context, "context", 1, false, false, false},
    {Kind::Host, "host", 1, false, false, false},
    {Kind::Services, "services", 1, false, false, false},
    {Kind::Null, "null", 1, false, false, false},
    {Kind::SizeOf, "size_of", 1, false, false, true},
    {Kind::Int, "int", 1, true, false, false},
    {Kind::Int64, "int64", 1, true, false, false},
    {Kind::Text, "text", 1, true, false, false},
    {Kind::Narrow, "narrow", 1, true, false, false},
    {Kind::Variant, "variant", 1, true, false, false},
    {Kind::Texts, "texts", 1, true, false, false},
    {Kind::NarrowArray, "narrow_array", 1, true, false, false},
    {Kind::AtMost, "at_most", 1, true, false, true},
    {Kind::InOutInt, "inout_int", 1, true, true, false},
    {Kind::InOutInt64, "inout_int64", 1, true, true, false},
    {Kind::InOutText, "inout_text", 1, true, true, false},
    // A text that the function replaces by another one.
    {Kind::InOutBstr, "inout_bstr", 1, true, true, false},
    // Bytes that the function reads or writes in place.
    {Kind::Block, "block", 1, true, true, false},
    {Kind::Record, "record", 1, true, true, true},
    {Kind::OutInt, "out_int", 1, false, true, false},
    {Kind::OutInt64, "out_int64", 1, false, true, false},
    // A buffer whose size the function does not know.
    {Kind::OutText, "out_text", 1, false, true, false},
    {Kind::OutVariant, "out_variant", 1, false, true, false},
    // An array of buffers; the script says how many.
    {Kind::OutTexts, "out_texts", 1, true, true, false},
    // A buffer and its size; a result above the size asks for that size.
    {Kind::Buffer, "buffer", 2, false, true, false},
    // A buffer and its size, which the script gives.
    {Kind::BufferOf, "buffer_of", 2, true, true, false},
    // A buffer and a pointer to its size, which comes back larger when it does not suffice.
    {Kind::BufferInOut, "buffer_inout", 2, false, true, false},
    // The same for a registry value, whose type another output tells: a list of texts holds terminators inside.
    {Kind::ValueOf, "value_of", 2, false, true, true},
    {Kind::BytesInOut, "bytes_inout", 2, false, true, false},
};

std::string_view Trimmed(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

[[noreturn]] void Reject(const CallRow& row, std::string_view what)
{
    throw std::invalid_argument(std::string(row.name) + ": " + std::string(what));
}

Result ParseResult(const CallRow& row)
{
    const std::string_view word = row.result;
    if (word == "none")
        return Result::None;
    if (word == "int")
        return Result::Int;
    if (word == "int64")
        return Result::Int64;
    Reject(row, "unknown result " + std::string(word));
}

// "name:kind", "name:record Layout", "size_of name", or a kind alone when the host gives the argument.
Argument ParseArgument(const CallRow& row, std::string_view text)
{
    Argument argument{};
    const std::size_t colon = text.find(':');
    std::string_view word = Trimmed(text.substr(colon == std::string_view::npos ? 0 : colon + 1));
    if (colon != std::string_view::npos)
        argument.name = Trimmed(text.substr(0, colon));
    if (const std::size_t space = word.find(' '); space != std::string_view::npos) {
        argument.detail = Trimmed(word.substr(space));
        word = word.substr(0, space);
    }
    for (const KindInfo& info : kinds) {
        if (info.word != word)
            continue;
        argument.kind = info.kind;
        if (argument.name.empty() && (info.from_script || info.to_script))
            Reject(row, "an argument has no name: " + std::string(text));
        if (info.has_detail == argument.detail.empty())
            Reject(row, "a second word goes with record, size_of, at_most and value_of: " + std::string(text));
        return argument;
    }
    Reject(row, "unknown kind " + std::string(word));
}

} // namespace

const KindInfo& InfoOf(Kind kind)
{
    for (const KindInfo& info : kinds)
        if (info.kind == kind)
            return info;
    throw std::logic_error("a kind without a row");
}

std::string_view Call::ScriptName() const
{
    std::string_view text = name;
    while (!text.empty() && text.front() == '_')
        text.remove_prefix(1);
    return text;
}

int Call::Slots() const
{
    int slots = 0;
    for (const Argument& argument : arguments)
        slots += InfoOf(argument.kind).slots;
    return slots;
}

std::size_t Call::ScriptArguments() const
{
    std::size_t count = 0;
    for (const Argument& argument : arguments)
        count += InfoOf(argument.kind).from_script ? 1 : 0;
    return count;
}

bool Call::HasOutputs() const
{
    for (const Argument& argument : arguments)
        if (InfoOf(argument.kind).to_script)
            return true;
    return false;
}

Call ParseCall(const CallRow& row)
{
    Call call{row.name, ParseResult(row), {}};
    std::string_view rest = Trimmed(row.arguments);
    while (!rest.empty()) {
        const std::size_t comma = rest.find(',');
        call.arguments.push_back(ParseArgument(row, Trimmed(rest.substr(0, comma))));
        rest = comma == std::string_view::npos ? std::string_view() : Trimmed(rest.substr(comma + 1));
    }
    if (call.Slots() > max_slots)
        Reject(row, "more arguments than the host can pass");
    return call;
}

} // namespace host
