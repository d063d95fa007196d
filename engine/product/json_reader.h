// Reads JSON strictly: every wrong value is named by its place in the file.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "../messages.h"

namespace vh::engine {

inline constexpr std::size_t longest_text = 32767;
inline constexpr std::size_t longest_name = 200;
inline constexpr std::size_t longest_path = 1024;

// Something wrong in a file. Line and column count from 1, columns in characters; 0 when unknown.
struct JsonFault {
    // A JSON pointer; empty for the whole file.
    std::string place;
    unsigned line = 0;
    unsigned column = 0;
    std::wstring reason;

    // "/features/2: reason".
    std::wstring Text() const;
};

class JsonPlace;

// A parsed file and what is wrong in it. The first fault throws, or all of them are collected and reading goes on.
class JsonFile {
public:
    enum class Faults { thrown, collected };

    // Parses UTF-8 with or without a byte order mark; bounds its size and depth and refuses a key that comes twice.
    // A file that can't be read throws in any case.
    JsonFile(std::wstring path, Faults faults);

    const std::wstring& path() const { return m_path; }
    JsonPlace Root() const;
    // Throws, or keeps the first fault of each place, up to 1,000 of them.
    void Fail(const std::string& place, const std::wstring& reason) const;
    // The faults in the order of their lines.
    std::vector<JsonFault> Found() const;

private:
    void Parse();
    void Keep(JsonFault fault) const;
    void Locate(std::vector<JsonFault>& faults) const;

    std::wstring m_path;
    Faults m_how;
    std::string m_text;
    nlohmann::json m_root;
    bool m_parsed = false;
    mutable std::set<std::string> m_places;
    mutable std::vector<JsonFault> m_faults;
};

// One value and where it stands. Copies are cheap; the file has to outlive them. Where faults are collected, a value
// that is missing or wrong reads as empty, 0 or false, and nothing below a missing one is a fault.
class JsonPlace {
public:
    // Null stands for a value that is not there.
    JsonPlace(const nlohmann::json* value, const JsonFile& file, std::string place = {})
        : m_value(value), m_file(&file), m_place(std::move(place))
    {
    }

    // A fault at this place; returns only where faults are collected.
    void Fail(const std::wstring& reason) const
    {
        if (m_value)
            m_file->Fail(m_place, reason);
    }
    const std::string& place() const { return m_place; }

    // The value has to be an object with no other keys than these.
    void Keys(std::initializer_list<const char*> known) const;
    bool Has(const char* key) const { return m_value && m_value->contains(key); }
    // A key that has to be there.
    JsonPlace At(const char* key) const;

    std::wstring Text(std::size_t longest = longest_text) const;
    // A text with at least one character.
    std::wstring Name(std::size_t longest = longest_name) const;
    bool Truth() const;
    int64_t Number(int64_t least, int64_t most) const;
    bool IsText() const { return m_value && m_value->is_string(); }
    bool IsTruth() const { return m_value && m_value->is_boolean(); }
    bool IsList() const { return m_value && m_value->is_array(); }
    bool IsNull() const { return m_value && m_value->is_null(); }

    // The same for keys that may be absent.
    std::wstring Text(const char* key, std::wstring_view absent = {}) const;
    bool Truth(const char* key, bool absent) const;
    int64_t Number(const char* key, int64_t absent, int64_t least, int64_t most) const;
    // The elements of a list; an absent list has none.
    void Each(const char* key, std::size_t most, const std::function<void(const JsonPlace&)>& visit) const;
    // The members of an object; an absent object has none.
    void Members(const char* key, std::size_t most,
                 const std::function<void(const std::string&, const JsonPlace&)>& visit) const;

private:
    JsonPlace Below(const nlohmann::json* value, std::string_view key) const;
    // False, with the fault noted, when the key's value is not of that kind or has too much in it.
    bool Holds(const JsonPlace& at, bool list, std::size_t most) const;

    const nlohmann::json* m_value;
    const JsonFile* m_file;
    std::string m_place;
};

} // namespace vh::engine
