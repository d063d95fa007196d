// Records that a few exported functions take by pointer, as named fields for scripts.
#pragma once

#include <cstddef>
#include <list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "named_values.h"

namespace host {

// How a field lies in its record.
enum class FieldKind {
    Int,
    // A fixed array of numbers, which only comes back.
    Ints,
    // A fixed array of 16-bit units inside the record.
    Chars,
    // A pointer to a text that the script gives, or null.
    Text,
};

struct RecordField {
    const wchar_t* name;
    FieldKind kind;
    std::size_t offset;
    // Numbers or units that lie in the record.
    std::size_t count;
};

struct RecordInfo {
    std::string_view name;
    std::size_t size;
    std::span<const RecordField> fields;
};

// Throws std::invalid_argument for a name that no record has.
const RecordInfo& RecordNamed(std::string_view name);

// One record for one call; it owns the texts that its pointers lead to.
class RecordBlock {
public:
    // Fields that the script's object does not have are zero; null gives an empty record.
    RecordBlock(const RecordInfo& info, IDispatch* given);

    void* data() { return m_block.data(); }
    vh::com_ptr<NamedValues> Values() const;

private:
    void Fill(const RecordField& field, const VARIANT& value);
    vh::variant Value(const RecordField& field) const;

    const RecordInfo* m_info;
    std::vector<std::byte> m_block;
    // A list, so that texts stay in their place.
    std::list<std::wstring> m_texts;
};

} // namespace host
