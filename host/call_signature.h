// What the host knows of one exported function: its result and each argument's kind.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace host {

// How an argument crosses between a script value and 64-bit argument slots.
enum class Kind {
    // Given by the host.
    Context,
    Host,
    Services,
    Null,
    // The size of another argument's buffer.
    SizeOf,
    // Given by the script.
    Int,
    Int64,
    Text,
    Narrow,
    Variant,
    Texts,
    // An array of narrow texts, as an earlier call gave it.
    NarrowArray,
    // A count of what another argument holds; a larger one is cut.
    AtMost,
    // Given by the script and handed back as a property of the result.
    InOutInt,
    InOutInt64,
    InOutText,
    InOutBstr,
    Block,
    Record,
    // Handed back as a property of the result.
    OutInt,
    OutInt64,
    OutText,
    OutVariant,
    OutTexts,
    Buffer,
    BufferOf,
    BufferInOut,
    ValueOf,
    BytesInOut,
};

enum class Result { None, Int, Int64 };

// One row per kind: its word in the call table, the slots that it fills, who gives it and who gets it, and whether a
// second word says more.
struct KindInfo {
    Kind kind;
    std::string_view word;
    int slots;
    bool from_script;
    bool to_script;
    bool has_detail;
};

const KindInfo& InfoOf(Kind kind);

struct Argument {
    Kind kind;
    std::string name;
    // Of a Record its layout, of SizeOf, AtMost and ValueOf the argument that they go by.
    std::string detail;
};

struct CallRow {
    const char* name;
    const char* result;
    const char* arguments;
};

struct Call {
    std::string name;
    Result result = Result::None;
    std::vector<Argument> arguments;

    // The name that scripts use: without leading underscores.
    std::string_view ScriptName() const;
    int Slots() const;
    std::size_t ScriptArguments() const;
    bool HasOutputs() const;
};

// No exported function takes more 64-bit arguments than this.
constexpr int max_slots = 16;

// All exported functions, in the order of their names.
std::span<const CallRow> CallTable();

// Throws std::invalid_argument that says what is wrong with the row.
Call ParseCall(const CallRow& row);

} // namespace host
