// What stands in an INI file, line by line, beyond what a loaded document shows.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

struct IniFinding {
    std::size_t line;
    std::wstring text;
    // A load ends here.
    bool fatal = false;
};

struct IniSurvey {
    std::size_t lines = 0;
    std::size_t comments = 0;
    std::size_t sections = 0;
    std::size_t keys = 0;
    // Keys without a separator.
    std::size_t bare_keys = 0;
    // "CR LF", "LF", "CR", several of them joined by ", ", or empty.
    std::wstring line_ends;
    std::vector<IniFinding> findings;
};

IniSurvey SurveyIniText(std::wstring_view text, std::wstring_view separator);

} // namespace tools
