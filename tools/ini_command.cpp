#include "ini_command.h"

#include <algorithm>
#include <stdexcept>
#include <windows.h>

#include "exit_codes.h"
#include "file_bytes.h"
#include "files/ini_encoding.h"
#include "files/ini_file.h"
#include "files/ini_text.h"
#include "host/console.h"
#include "host/text.h"
#include "ini_survey.h"
#include "scriptdata/exception.h"

namespace tools {

namespace {

struct IniContent {
    std::wstring text;
    UINT code_page = 0;
    bool marked = false;
    bool has_utf8 = false;
};

bool IsUtf8BeyondAscii(std::string_view bytes)
{
    return !bytes.empty() && std::ranges::any_of(bytes, [](char c) { return c < 0; }) &&
           MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), static_cast<int>(bytes.size()), nullptr, 0);
}

IniContent ReadIni(const std::wstring& file, const IniOptions& options)
{
    const std::vector<std::byte> read = ReadBytes(file);
    std::string_view bytes(reinterpret_cast<const char*>(read.data()), read.size());
    IniContent content;
    content.code_page = vh::CodePageOfMark(bytes);
    content.marked = content.code_page != CP_ACP;
    if (content.marked)
        bytes.remove_prefix(vh::MarkOf(content.code_page).size());
    else
        content.code_page = options.code_page;
    content.has_utf8 = !content.marked && IsUtf8BeyondAscii(bytes);
    try {
        content.text = vh::DecodeText(bytes, content.code_page);
    } catch (const vh::win32_exception& failure) {
        ThrowFor(file, failure.code());
    }
    return content;
}

void Report(const std::wstring& file, const IniFinding& finding)
{
    host::Complain(file + L": line " + std::to_wstring(finding.line) + L": " + finding.text);
}

// False, with a message, when the file's content is damaged.
bool Load(inifilex& document, const std::wstring& file, const IniOptions& options)
{
    document.set_code_page(options.code_page);
    if (document.load(file, options.separator, options.bare_keys))
        return true;
    if (document.get_last_error() != ERROR_INVALID_DATA)
        ThrowFor(file, document.get_last_error());
    for (const IniFinding& finding : SurveyIniText(ReadIni(file, options).text, options.separator).findings)
        if (finding.fatal)
            Report(file, finding);
    return false;
}

int Save(inifilex& document, const std::wstring& file, const IniOptions& options)
{
    const std::wstring& target = options.output.empty() ? file : options.output;
    if (document.save_as(target, 0, 0, false))
        return exit_done;
    throw std::runtime_error(
        host::Utf8(target + L": not saved, and left as it was: " + host::SystemText(document.get_last_error())));
}

// False, with a message, for what a later reader would not find as it was given.
bool ReadsBack(const std::wstring& section, const std::wstring& key, const std::wstring& value,
               const std::wstring& separator)
{
    const std::wstring text = L"[" + section + L"]\r\n" + key + separator + value;
    vh::ini_reader<wchar_t> reader(text, separator);
    if (reader.next() != vh::ini_line::section || reader.name() != section)
        host::Complain(L"\"" + section + L"\" can't be the name of a section");
    else if (reader.next() != vh::ini_line::entry || reader.name() != key)
        host::Complain(L"\"" + key + L"\" can't be a key");
    else if (reader.value() != value || reader.next() != vh::ini_line::end)
        host::Complain(L"a value can't have line ends");
    else
        return true;
    return false;
}

bool IsMissing(const std::wstring& file)
{
    if (GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES)
        return false;
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

void CheckCanBeEncoded(std::wstring_view text, UINT code_page)
{
    if (vh::DecodeText(vh::EncodeText(text, code_page), code_page) != text)
        throw std::runtime_error(
            host::Utf8(L"\"" + std::wstring(text) + L"\" has characters that the file's encoding lacks"));
}

std::wstring EncodingName(const IniContent& content)
{
    const struct {
        UINT code_page;
        const wchar_t* name;
    } names[] = {{1200, L"UTF-16"}, {1201, L"UTF-16, big-endian"}, {CP_UTF8, L"UTF-8"}};
    std::wstring name = L"code page " + std::to_wstring(content.code_page == CP_ACP ? GetACP() : content.code_page);
    for (const auto& one : names)
        if (one.code_page == content.code_page)
            name = one.name;
    if (content.marked)
        return name + L" with mark";
    if (content.has_utf8 && content.code_page != CP_UTF8)
        name += L", but it may be UTF-8 (--code-page 65001)";
    return name + L", no mark";
}

} // namespace

int GetIniValue(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                const IniOptions& options)
{
    inifilex document;
    if (!Load(document, file, options))
        return exit_found;
    const stringx* value = document.find_value(section, key);
    if (!value) {
        host::Complain(file +
                       (document.has_section(section) ? L": no key \"" + key + L"\" in section \"" + section
                                                      : L": no section \"" + section) +
                       L"\"");
        return exit_found;
    }
    host::Say(value->view());
    return exit_done;
}

int SetIniValue(const std::wstring& file, const std::wstring& section, const std::wstring& key,
                const std::wstring& value, const IniOptions& options)
{
    if (!ReadsBack(section, key, value, options.separator))
        return exit_usage;
    inifilex document;
    UINT code_page = options.code_page;
    if (IsMissing(file)) {
        document.assign(file, options.separator);
        document.set_code_page(options.code_page);
    } else if (Load(document, file, options)) {
        code_page = ReadIni(file, options).code_page;
    } else {
        return exit_found;
    }
    for (const std::wstring& text : {section, key, value})
        CheckCanBeEncoded(text, code_page);
    document.set_string(section, key, value);
    return Save(document, file, options);
}

int SortIniFile(const std::wstring& file, const IniOptions& options)
{
    inifilex document;
    if (!Load(document, file, options))
        return exit_found;
    document.sort();
    return Save(document, file, options);
}

int MergeIniFiles(const std::wstring& file, const std::wstring& other, const IniOptions& options)
{
    inifilex document;
    inifilex added;
    if (!Load(document, file, options) || !Load(added, other, options))
        return exit_found;
    const UINT code_page = ReadIni(file, options).code_page;
    for (const auto& [name, section] : added) {
        CheckCanBeEncoded(name.view(), code_page);
        for (const auto& [key, entry] : section) {
            CheckCanBeEncoded(key.view(), code_page);
            CheckCanBeEncoded(entry.value.view(), code_page);
        }
        document.set_section(name.view(), section);
    }
    return Save(document, file, options);
}

int CheckIniFile(const std::wstring& file, const IniOptions& options)
{
    const IniContent content = ReadIni(file, options);
    const IniSurvey survey = SurveyIniText(content.text, options.separator);
    host::Say(L"encoding: " + EncodingName(content));
    host::Say(L"lines: " + std::to_wstring(survey.lines) +
              (survey.line_ends.empty() ? std::wstring() : L", ended by " + survey.line_ends) + L"; " +
              std::to_wstring(survey.comments) + L" comments, which a save drops");
    host::Say(L"sections: " + std::to_wstring(survey.sections));
    host::Say(L"keys: " + std::to_wstring(survey.keys) + L", " + std::to_wstring(survey.bare_keys) + L" without \"" +
              options.separator + L"\"");
    for (const IniFinding& finding : survey.findings)
        Report(file, finding);
    return survey.findings.empty() ? exit_done : exit_found;
}

} // namespace tools
