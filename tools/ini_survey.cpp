#include "ini_survey.h"

#include <map>

#include "files/ini_text.h"
#include "scriptdata/stringx.h"

namespace tools {

namespace {

using LineOfName = std::map<std::wstring, std::size_t, vh::text_less_i>;

std::wstring Quoted(std::wstring_view text)
{
    constexpr std::size_t shown = 60;
    return L"\"" + std::wstring(text.substr(0, shown)) + (text.size() > shown ? L"...\"" : L"\"");
}

std::wstring InLine(std::size_t line) { return L" in line " + std::to_wstring(line); }

// Counts lines, their ends and comments, and tells the line of a place in the text. Places are asked for in order.
class LineCounter {
public:
    explicit LineCounter(std::wstring_view text) : m_text(text) {}

    std::size_t LineOf(const wchar_t* place, IniSurvey& survey)
    {
        const std::size_t end = static_cast<std::size_t>(place - m_text.data());
        while (m_next <= end && m_next < m_text.size())
            TakeLine(survey);
        return survey.lines;
    }
    void TakeRest(IniSurvey& survey)
    {
        while (m_next < m_text.size())
            TakeLine(survey);
        for (const auto& [name, count] : m_ends)
            if (count)
                survey.line_ends += (survey.line_ends.empty() ? L"" : L", ") + std::wstring(name);
    }

private:
    void TakeLine(IniSurvey& survey)
    {
        ++survey.lines;
        survey.comments += m_text[m_next] == L';';
        m_next = m_text.find_first_of(L"\r\n", m_next);
        if (m_next == m_text.npos) {
            m_next = m_text.size();
            return;
        }
        const bool pair = m_text.substr(m_next, 2) == L"\r\n";
        ++m_ends[pair ? L"CR LF" : m_text[m_next] == L'\n' ? L"LF" : L"CR"];
        m_next += pair ? 2 : 1;
    }

    std::wstring_view m_text;
    std::size_t m_next = 0;
    std::map<std::wstring_view, std::size_t> m_ends;
};

} // namespace

IniSurvey SurveyIniText(std::wstring_view text, std::wstring_view separator)
{
    IniSurvey survey;
    LineCounter lines(text);
    LineOfName sections;
    std::map<std::wstring, LineOfName, vh::text_less_i> keys;
    LineOfName* current = nullptr;
    bool stray = false;
    const auto find = [&](std::size_t line, const std::wstring& what, bool fatal = false) {
        survey.findings.push_back({line, what, fatal});
    };
    vh::ini_reader<wchar_t> reader(text, separator);
    for (vh::ini_line kind; (kind = reader.next()) != vh::ini_line::end;) {
        const std::wstring name(reader.name());
        const std::size_t line = lines.LineOf(reader.name().data(), survey);
        if (kind == vh::ini_line::section) {
            const auto [before, is_new] = sections.emplace(name, line);
            if (!is_new)
                find(line, L"section " + Quoted(name) + L" continues the one" + InLine(before->second));
            current = &keys[name];
        } else if (kind == vh::ini_line::entry) {
            survey.bare_keys += reader.value().data() == nullptr;
            const auto [before, is_new] = current->emplace(name, line);
            if (!is_new)
                find(line, L"key " + Quoted(name) + L" is dropped, as it stands" + InLine(before->second));
        } else if (name.starts_with(L'[')) {
            find(line, L"section without \"]\": " + Quoted(name), true);
        } else if (!stray) {
            // One stands for all of them: a load ends here.
            stray = true;
            find(line, L"neither section nor comment before the first section: " + Quoted(name), true);
        }
    }
    lines.TakeRest(survey);
    survey.sections = sections.size();
    for (const auto& [name, own] : keys)
        survey.keys += own.size();
    return survey;
}

} // namespace tools
