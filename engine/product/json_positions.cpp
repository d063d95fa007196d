#include "json_positions.h"

#include <set>

#include <nlohmann/json.hpp>

namespace vh::engine {

namespace {

constexpr std::string_view mark = "\xEF\xBB\xBF";
constexpr std::string_view between_values = " \t\r\n:,{}[]";

// Reads on while counting lines and columns.
class Cursor {
public:
    explicit Cursor(std::string_view text) : m_text(text), m_at(text.starts_with(mark) ? mark.size() : 0) {}

    bool AtEnd() const { return m_at >= m_text.size(); }
    char Here() const { return m_text[m_at]; }
    std::size_t Byte() const { return m_at; }
    JsonPosition Position() const { return m_position; }

    void Step()
    {
        const auto byte = static_cast<unsigned char>(m_text[m_at++]);
        if (byte == '\n')
            m_position = {m_position.line + 1, 1};
        else if ((byte & 0xC0) != 0x80)
            ++m_position.column;
    }

    // The text from the quotation mark here to the one that closes it.
    std::string_view Quoted()
    {
        const std::size_t start = m_at;
        do {
            if (Here() == '\\')
                Step();
            if (!AtEnd())
                Step();
        } while (!AtEnd() && Here() != '"');
        if (!AtEnd())
            Step();
        return m_text.substr(start, m_at - start);
    }

    // A number, or one of the three words.
    void SkipWord()
    {
        while (!AtEnd() && between_values.find(Here()) == std::string_view::npos && Here() != '"')
            Step();
    }

private:
    std::string_view m_text;
    std::size_t m_at;
    JsonPosition m_position{1, 1};
};

// An object or list that is open.
struct Level {
    bool object;
    // Length of the pointer to it.
    std::size_t pointer;
    std::size_t index = 0;
    bool expectsKey = true;
    std::set<std::string> keys;
};

std::string KeyOf(std::string_view quoted)
{
    if (quoted.find('\\') == std::string_view::npos)
        return std::string(quoted.substr(1, quoted.size() - 2));
    const auto parsed = nlohmann::json::parse(quoted, nullptr, false);
    return parsed.is_string() ? parsed.get<std::string>() : std::string(quoted);
}

class Scanner {
public:
    Scanner(std::string_view text, int deepest, std::map<std::string, JsonPosition>& wanted)
        : m_cursor(text), m_deepest(static_cast<std::size_t>(deepest)), m_wanted(wanted)
    {
    }

    JsonScan Run()
    {
        while (!m_cursor.AtEnd() && !m_result.tooDeep.line)
            Take(m_cursor.Here());
        return std::move(m_result);
    }

private:
    void Take(char c)
    {
        if (c == '"')
            return TakeText();
        if (between_values.find(c) == std::string_view::npos) {
            BeginValue();
            return m_cursor.SkipWord();
        }
        if (c == '{' || c == '[') {
            BeginValue();
            m_levels.push_back({c == '{', m_pointer.size(), 0, true, {}});
            if (m_levels.size() > m_deepest)
                m_result.tooDeep = m_cursor.Position();
        } else if ((c == '}' || c == ']') && !m_levels.empty()) {
            m_levels.pop_back();
        } else if (c == ',' && !m_levels.empty()) {
            ++m_levels.back().index;
            m_levels.back().expectsKey = true;
        }
        m_cursor.Step();
    }

    void TakeText()
    {
        const bool isKey = !m_levels.empty() && m_levels.back().object && m_levels.back().expectsKey;
        if (!isKey)
            BeginValue();
        const JsonPosition position = m_cursor.Position();
        const std::string_view quoted = m_cursor.Quoted();
        if (!isKey)
            return;
        Level& level = m_levels.back();
        level.expectsKey = false;
        std::string key = KeyOf(quoted);
        m_pointer.resize(level.pointer);
        m_pointer += '/' + PointerPart(key);
        if (!level.keys.insert(std::move(key)).second)
            m_result.twice.emplace_back(m_pointer, position);
    }

    void BeginValue()
    {
        if (m_levels.empty()) {
            m_pointer.clear();
        } else if (!m_levels.back().object) {
            m_pointer.resize(m_levels.back().pointer);
            m_pointer += '/' + std::to_string(m_levels.back().index);
        }
        if (const auto found = m_wanted.find(m_pointer); found != m_wanted.end())
            found->second = m_cursor.Position();
    }

    Cursor m_cursor;
    std::size_t m_deepest;
    std::map<std::string, JsonPosition>& m_wanted;
    std::vector<Level> m_levels;
    std::string m_pointer;
    JsonScan m_result;
};

} // namespace

std::string PointerPart(std::string_view key)
{
    std::string part;
    for (const char c : key) {
        if (c == '~')
            part += "~0";
        else if (c == '/')
            part += "~1";
        else
            part += c;
    }
    return part;
}

JsonPosition PositionOf(std::string_view text, std::size_t byte)
{
    Cursor cursor(text);
    while (!cursor.AtEnd() && cursor.Byte() < byte)
        cursor.Step();
    return cursor.Position();
}

JsonScan ScanJson(std::string_view text, int deepest, std::map<std::string, JsonPosition>& wanted)
{
    return Scanner(text, deepest, wanted).Run();
}

} // namespace vh::engine
