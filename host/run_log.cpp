#include "run_log.h"

#include <algorithm>
#include <cwctype>
#include <stdexcept>

#include <windows.h>

#include "diagnostics/trace_text.h"
#include "text.h"

namespace host {

namespace {

constexpr std::wstring_view mask = L"***";
// Shorter ones would be found in words that have nothing to do with them.
constexpr std::size_t shortest_secret = 3;
constexpr std::size_t largest_wait = 16 * 1024;   // bytes
constexpr unsigned long long longest_wait = 1000; // milliseconds

struct SecretName {
    std::wstring_view part;
    bool at_end = false; // nowhere else in the name
};
constexpr SecretName secret_names[] = {
    {L"PASSWORD"},   {L"PASSWD"},    {L"PASSPHRASE"}, {L"PWD"},       {L"SECRET"}, {L"TOKEN"},
    {L"CREDENTIAL"}, {L"KEY", true}, {L"PASS", true}, {L"PIN", true}, {L"SERIAL"},
};

// In the order of the levels.
constexpr const wchar_t* level_words[] = {L"NOTE ", L"INFO ", L"WARN ", L"ERROR"};

std::wstring Now()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    const auto digits = [](unsigned number, std::size_t width) {
        const std::wstring text = std::to_wstring(number);
        return std::wstring(width - std::min(width, text.size()), L'0') + text;
    };
    return digits(now.wYear, 4) + L'-' + digits(now.wMonth, 2) + L'-' + digits(now.wDay, 2) + L' ' +
           digits(now.wHour, 2) + L':' + digits(now.wMinute, 2) + L':' + digits(now.wSecond, 2) + L'.' +
           digits(now.wMilliseconds, 3);
}

void ReplaceAll(std::wstring& text, std::wstring_view what)
{
    for (std::size_t at = 0; (at = text.find(what, at)) != std::wstring::npos; at += mask.size())
        text.replace(at, what.size(), mask);
}

} // namespace

bool IsSecretName(std::wstring_view name)
{
    std::wstring upper(name);
    std::ranges::transform(upper, upper.begin(),
                           [](wchar_t unit) { return static_cast<wchar_t>(std::towupper(unit)); });
    return std::ranges::any_of(secret_names, [&](const SecretName& secret) {
        return secret.at_end ? upper.ends_with(secret.part) : upper.find(secret.part) != std::wstring::npos;
    });
}

std::wstring MaskedWord(std::wstring_view word)
{
    constexpr std::wstring_view option = L"--var=";
    const std::size_t begin = word.starts_with(option) ? option.size() : 0;
    const std::size_t equals = word.find(L'=', begin);
    return equals != word.npos && IsSecretName(word.substr(begin, equals - begin))
               ? std::wstring(word.substr(0, equals + 1)).append(mask)
               : std::wstring(word);
}

RunLog::RunLog(const std::wstring& file)
    : m_file(CreateFileW(LongPath(file).c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                         OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr))
{
    const DWORD code = GetLastError();
    if (!m_file)
        throw std::runtime_error(Utf8(file + L": the log can't be written: " + SystemText(code)));
    if (code == ERROR_ALREADY_EXISTS)
        m_waiting = "\r\n";
}

void RunLog::Write(Level level, std::wstring_view text)
{
    const std::scoped_lock lock(m_lock);
    const std::wstring masked = Masked(text);
    std::wstring line = Now() + L' ' + level_words[static_cast<int>(level)] + L' ';
    for (const wchar_t unit : masked)
        if (unit == L'\n')
            line += L"\r\n    ";
        else if (unit != L'\r')
            line += unit;
    m_waiting += Utf8(line) + "\r\n";
    if (level >= Level::warning || m_waiting.size() >= largest_wait || GetTickCount64() - m_flushed >= longest_wait)
        Flush();
}

void RunLog::Hide(std::wstring_view name, std::wstring_view value)
{
    const std::scoped_lock lock(m_lock);
    if (!IsSecretName(name) || value.size() < shortest_secret || std::ranges::find(m_secrets, value) != m_secrets.end())
        return;
    m_secrets.emplace_back(value);
    // A secret that holds another one goes first.
    std::ranges::sort(m_secrets, std::greater(), &std::wstring::size);
}

void RunLog::Flush()
{
    DWORD written = 0;
    if (!m_waiting.empty())
        WriteFile(m_file.get(), m_waiting.data(), static_cast<DWORD>(m_waiting.size()), &written, nullptr);
    m_waiting.clear();
    m_flushed = GetTickCount64();
}

std::wstring RunLog::Masked(std::wstring_view text) const
{
    std::wstring masked = vh::WithoutPasswords(text, false);
    for (const std::wstring& secret : m_secrets)
        ReplaceAll(masked, secret);
    return masked;
}

} // namespace host
