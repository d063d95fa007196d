#include "registration_script.h"

#include <algorithm>

namespace vh {

namespace {

enum class token { root, open, close, no_remove, force_remove, value, equals, text, number, line_end, end, name, bad };

struct keyword {
    std::string_view word;
    token kind;
    // Known behind an "=" on its line alone.
    bool behind_equals;
};
constexpr keyword keywords[] = {{"HKCR", token::root, false},
                                {"NoRemove", token::no_remove, false},
                                {"ForceRemove", token::force_remove, false},
                                {"val", token::value, false},
                                {"s", token::text, true},
                                {"d", token::number, true}};

// One token at a time, with its place.
class script_reader {
public:
    explicit script_reader(std::string_view text) : m_text(text)
    {
        SkipEmptyLines();
        Next();
    }

    token kind() const { return m_kind; }
    std::string_view name() const { return m_name; }
    script_fault FaultHere(const char* reason) const
    {
        return {m_reason ? m_reason : reason, m_line, m_start - m_line_start + 1};
    }

    void Next()
    {
        SkipBlanks();
        m_line = m_next_line;
        m_line_start = m_next_line_start;
        m_start = m_at;
        m_kind = Take();
    }
    bool Take(token wanted)
    {
        if (m_kind != wanted)
            return false;
        Next();
        return true;
    }

private:
    bool At(char wanted) const { return m_at < m_text.size() && m_text[m_at] == wanted; }
    void SkipBlanks()
    {
        while (At(' ') || At('\t'))
            ++m_at;
    }
    void SkipEmptyLines()
    {
        for (std::size_t line = m_at;; line = m_at) {
            SkipBlanks();
            if (!At('\r')) {
                m_at = line;
                return;
            }
            TakeLineEnd();
        }
    }
    void TakeLineEnd()
    {
        ++m_at;
        if (At('\n'))
            ++m_at;
        ++m_next_line;
        m_next_line_start = m_at;
        m_behind_equals = false;
    }
    token Bad(const char* reason)
    {
        m_reason = reason;
        return token::bad;
    }

    token Take()
    {
        if (m_at == m_text.size())
            return token::end;
        switch (m_text[m_at]) {
        case '\r':
            TakeLineEnd();
            SkipEmptyLines();
            return token::line_end;
        case '\n':
            return Bad("a line feed without a carriage return before it");
        case '\0':
            return Bad("a zero in the text");
        case '}':
            ++m_at;
            return token::close;
        case '=':
            ++m_at;
            m_behind_equals = true;
            return token::equals;
        case '\'':
            return TakeQuoted();
        case '{': {
            const std::size_t end = m_text.find_first_of("\r}", m_at);
            if (end != m_text.npos && m_text[end] == '\r') {
                ++m_at;
                return token::open;
            }
            break;
        }
        default:
            break;
        }
        return TakeWord();
    }

    token TakeQuoted()
    {
        const std::size_t end = m_text.find('\'', m_at + 1);
        if (end == m_text.npos)
            return Bad("a quote that is not closed");
        m_name = m_text.substr(m_at + 1, end - m_at - 1);
        if (m_name.find('\0') != m_name.npos)
            return Bad("a zero in the text");
        // A name may go over lines; each ends like any other.
        for (++m_at; m_at < end;) {
            if (m_text[m_at] != '\r') {
                ++m_at;
                continue;
            }
            const bool behind = m_behind_equals;
            TakeLineEnd();
            m_behind_equals = behind;
        }
        m_at = end + 1;
        return token::name;
    }

    token TakeWord()
    {
        const std::size_t end = std::min(m_text.find_first_of(" \t\r\n", m_at), m_text.size());
        m_name = m_text.substr(m_at, end - m_at);
        m_at = end;
        if (m_name.find('\0') != m_name.npos)
            return Bad("a zero in the text");
        for (const keyword& one : keywords)
            if (one.word == m_name && (!one.behind_equals || m_behind_equals))
                return one.kind;
        return token::name;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_next_line = 1;
    std::size_t m_next_line_start = 0;
    bool m_behind_equals = false;

    token m_kind = token::end;
    std::string_view m_name;
    const char* m_reason = nullptr;
    std::size_t m_line = 1;
    std::size_t m_line_start = 0;
    std::size_t m_start = 0;
};

// An empty name, or one with an empty part, is no key's: the registry would take it for the key around it.
bool IsKeyName(std::string_view name)
{
    return !name.empty() && name.front() != '\\' && name.back() != '\\' && name.find("\\\\") == name.npos;
}

class script_parser {
public:
    explicit script_parser(std::string_view text) : m_reader(text) {}

    const char* Script(script_key& root)
    {
        if (!m_reader.Take(token::root))
            return "HKCR has to come first";
        if (!m_reader.Take(token::line_end))
            return line_end_missing;
        if (m_reader.kind() != token::open)
            return "{ has to come here, at the end of its line";
        if (const char* reason = Block(root, 1))
            return reason;
        m_reader.Take(token::line_end);
        return m_reader.kind() == token::end ? nullptr : "nothing may stand behind the last }";
    }
    script_fault FaultHere(const char* reason) const { return m_reader.FaultHere(reason); }

private:
    static constexpr const char* line_end_missing = "the line has to end here";
    static constexpr const char* name_missing = "a name has to come here";

    // From its "{" on; as deep as the caller lets it.
    const char* Block(script_key& owner, std::size_t depth)
    {
        m_reader.Next();
        if (!m_reader.Take(token::line_end))
            return line_end_missing;
        while (!m_reader.Take(token::close)) {
            const bool value = m_reader.kind() == token::value;
            if (const char* reason = value ? Value(owner) : Key(owner, depth))
                return reason;
        }
        return nullptr;
    }

    const char* Key(script_key& owner, std::size_t depth)
    {
        if (m_reader.kind() == token::end)
            return "} is missing";
        if (m_reader.kind() == token::open)
            return "a block without a key";
        script_key key;
        key.no_remove = m_reader.Take(token::no_remove);
        key.force_remove = !key.no_remove && m_reader.Take(token::force_remove);
        if (m_reader.kind() != token::name)
            return name_missing;
        if (!IsKeyName(m_reader.name()))
            return "a key's name is empty, or a part of it is";
        if (depth > RegistrationScript::deepest)
            return "more keys in each other than the registry takes";
        key.name = m_reader.name();
        m_reader.Next();
        if (m_reader.kind() == token::equals)
            if (const char* reason = Data(key, {}))
                return reason;
        if (!m_reader.Take(token::line_end))
            return line_end_missing;
        if (m_reader.kind() == token::open) {
            if (const char* reason = Block(key, depth + 1))
                return reason;
            if (m_reader.kind() != token::close && !m_reader.Take(token::line_end))
                return line_end_missing;
        }
        owner.children.push_back(std::move(key));
        return nullptr;
    }

    const char* Value(script_key& owner)
    {
        m_reader.Next();
        if (m_reader.kind() != token::name)
            return name_missing;
        std::string name(m_reader.name());
        m_reader.Next();
        if (const char* reason = Data(owner, std::move(name)))
            return reason;
        return m_reader.Take(token::line_end) ? nullptr : line_end_missing;
    }

    const char* Data(script_key& owner, std::string name)
    {
        if (!m_reader.Take(token::equals))
            return "= has to come here";
        if (m_reader.kind() == token::number)
            return "numbers are not supported";
        if (!m_reader.Take(token::text))
            return "the type s has to come here";
        if (m_reader.kind() != token::name)
            return name_missing;
        owner.values.emplace_back(std::move(name), m_reader.name());
        m_reader.Next();
        return nullptr;
    }

    script_reader m_reader;
};

} // namespace

bool RegistrationScript::Parse(std::string_view text, script_fault& fault)
{
    root = {};
    fault = {};
    script_parser parser(text);
    const char* reason = parser.Script(root);
    if (!reason)
        return true;
    fault = parser.FaultHere(reason);
    root = {};
    return false;
}

std::string RegistrationScript::Replaced(const std::string& data) const
{
    const std::size_t first = data.find('%');
    const std::size_t second = first == data.npos ? first : data.find('%', first + 1);
    if (second == data.npos)
        return data;
    const auto found = replacements.find(std::string_view(data).substr(first + 1, second - first - 1));
    return found == replacements.end() ? data : data.substr(0, first) + found->second + data.substr(second + 1);
}

} // namespace vh
