// Reads JSON strictly: every wrong value is named by its place in the file.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "../messages.h"

namespace vh::engine {

inline constexpr std::size_t longest_text = 32767;
inline constexpr std::size_t longest_name = 200;
inline constexpr std::size_t longest_path = 1024;

// One value and where it stands. Copies are cheap; the document has to outlive them.
class JsonPlace {
public:
    JsonPlace(const nlohmann::json& value, const std::wstring& file, std::string path = {})
        : m_value(&value), m_file(&file), m_path(std::move(path))
    {
    }

    // Throws with "place: reason".
    [[noreturn]] void Fail(const std::wstring& reason) const;

    // The value has to be an object with no other keys than these.
    void Keys(std::initializer_list<const char*> known) const;
    bool Has(const char* key) const { return m_value->contains(key); }
    // A key that has to be there.
    JsonPlace At(const char* key) const;

    std::wstring Text(std::size_t longest = longest_text) const;
    // A text with at least one character.
    std::wstring Name(std::size_t longest = longest_name) const;
    bool Truth() const;
    int64_t Number(int64_t least, int64_t most) const;
    bool IsText() const { return m_value->is_string(); }

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
    const nlohmann::json* m_value;
    const std::wstring* m_file;
    std::string m_path;
};

// Parses UTF-8 with or without a byte order mark; bounds its size and depth and refuses a key that comes twice.
nlohmann::json ParseJson(const std::wstring& file);

} // namespace vh::engine
