#include "header_comments.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include <windows.h>

#include "file_bytes.h"
#include "host/text.h"

namespace tools {

namespace {

bool IsWord(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

// The words of a comment, one blank between them; names of functions as scripts know them.
std::string PlainText(std::string_view comment)
{
    std::string text;
    for (std::size_t i = 0; i < comment.size(); ++i) {
        const char c = comment[i];
        const bool startsWord = i == 0 || !IsWord(comment[i - 1]);
        if (std::isspace(static_cast<unsigned char>(c))) {
            if (!text.empty() && text.back() != ' ')
                text += ' ';
        } else if (c != '_' || !startsWord) {
            text += c;
        } else {
            i = std::min(comment.find_first_not_of('_', i), comment.size()) - 1;
        }
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// The name of the function that is declared behind this place, which is that of its macro.
std::string NameBehind(std::string_view text, std::size_t at)
{
    const std::size_t closed = text.find(')', at);
    const std::size_t opened = closed == std::string_view::npos ? closed : text.find('(', closed);
    if (opened == std::string_view::npos)
        return {};
    std::size_t start = opened;
    while (start > closed && IsWord(text[start - 1]))
        --start;
    return std::string(text.substr(start, opened - start));
}

} // namespace

void AddHeader(std::string_view name, std::string_view text, HeaderComments& comments)
{
    HeaderFamily family{std::string(name), {}, {}};
    std::string last;
    for (std::size_t at = 0; at < text.size();) {
        const std::string_view rest = text.substr(at);
        if (rest.starts_with("/*")) {
            const std::size_t end = std::min(rest.find("*/"), rest.size());
            last = PlainText(rest.substr(2, end - 2));
            if (at == 0)
                family.about = last;
            at += end + 2;
        } else if (rest.starts_with("\nVHRT_FUNCTION(")) {
            if (at > 0 && text[at - 1] == '\n')
                last.clear();
            std::string function = NameBehind(text, at);
            comments.of[function] = last;
            family.functions.push_back(std::move(function));
            ++at;
        } else {
            // What is declared in between takes the comment above it; so does a blank line.
            if (rest.starts_with("\nenum") || rest.starts_with("\ntypedef") || rest.starts_with("\n#"))
                last.clear();
            ++at;
        }
    }
    if (!family.functions.empty())
        comments.families.push_back(std::move(family));
}

HeaderComments ReadHeaderComments(const std::wstring& folder)
{
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW found{};
    const vh::unique_find search(FindFirstFileW(host::LongPath(host::Join(folder, L"*.h")).c_str(), &found));
    if (search)
        do
            names.emplace_back(found.cFileName);
        while (FindNextFileW(search.get(), &found));
    std::sort(names.begin(), names.end());
    HeaderComments comments;
    for (const std::wstring& name : names) {
        const std::vector<std::byte> bytes = ReadBytes(host::Join(folder, name));
        std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        std::erase(text, '\r');
        AddHeader(host::Utf8(name.substr(0, name.find(L'.'))), text, comments);
    }
    if (comments.families.empty())
        throw std::runtime_error(host::Utf8(folder) + ": there are no headers of the library");
    return comments;
}

} // namespace tools
