#include "script_site.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "scriptdata/bstr.h"
#include "scriptdata/exception.h"
#include "scriptdata/unique.h"
#include "text.h"

namespace vh {

template <>
inline constexpr GUID iid_of<IActiveScriptSite> = Guid("{DB01A1E3-A42B-11CF-8F20-00805F2CD064}");
template <>
inline constexpr GUID iid_of<IActiveScript> = Guid("{BB1A2AE1-A4F9-11CF-8F20-00805F2CD064}");
template <>
inline constexpr GUID iid_of<IActiveScriptParse64> = Guid("{C7EF7658-E1EE-480E-97EA-D52CB4D76D17}");

} // namespace vh

namespace host {

namespace {

constexpr GUID jscript_class = vh::Guid("{F414C260-6AC0-11CF-B6D1-00AA00BBBB58}");
constexpr const wchar_t* global_name = L"VHRT";
constexpr LONGLONG largest_script = 64 << 20;

void Require(HRESULT code, const char* step)
{
    if (FAILED(code))
        throw std::runtime_error(std::string("the script engine failed at ") + step + ": " +
                                 Utf8(Hex(static_cast<uint32_t>(code))));
}

std::wstring LineOf(const std::wstring& source, unsigned line)
{
    std::size_t start = 0;
    for (unsigned i = 1; i < line && start != std::wstring::npos; ++i) {
        start = source.find(L'\n', start);
        start = start == std::wstring::npos ? start : start + 1;
    }
    if (line == 0 || start == std::wstring::npos)
        return {};
    const std::wstring text = source.substr(start, source.find(L'\n', start) - start);
    return text.substr(0, text.find(L'\r'));
}

// What a script threw that made no Error object of it. The engine keeps the value to itself; a plain text is read
// from the place where it was thrown.
constexpr HRESULT thrown_value = static_cast<HRESULT>(0x800A139E);

// The text of a literal, which ends the statement; empty for anything else.
std::wstring LiteralText(std::wstring_view code)
{
    const wchar_t quote = code.empty() ? L'\0' : code.front();
    if (quote != L'"' && quote != L'\'')
        return {};
    std::wstring text;
    std::size_t at = 1;
    for (; at < code.size() && code[at] != quote; ++at) {
        if (code[at] != L'\\') {
            text += code[at];
            continue;
        }
        constexpr std::wstring_view letters = L"ntrbfv";
        constexpr std::wstring_view meanings = L"\n\t\r\b\f\v";
        const wchar_t letter = ++at < code.size() ? code[at] : quote;
        const std::size_t digits = letter == L'u' ? 4 : letter == L'x' ? 2 : 0;
        if (digits) {
            text += static_cast<wchar_t>(wcstoul(std::wstring(code.substr(at + 1, digits)).c_str(), nullptr, 16));
            at += digits;
        } else {
            const std::size_t place = letters.find(letter);
            text += place == std::wstring_view::npos ? letter : meanings[place];
        }
    }
    const std::size_t behind = code.find_first_not_of(L" \t", std::min(at + 1, code.size()));
    return behind == std::wstring_view::npos || code[behind] == L';' || code[behind] == L'}' ? text : std::wstring();
}

std::wstring ThrownText(const std::wstring& line, LONG column)
{
    constexpr std::wstring_view word = L"throw";
    // The column is that of the statement, or of something in it.
    const std::size_t at = line.rfind(word, static_cast<std::size_t>(std::max<LONG>(column, 0)));
    std::wstring text;
    if (at != std::wstring::npos) {
        const std::size_t value = line.find_first_not_of(L" \t", at + word.size());
        text = LiteralText(std::wstring_view(line).substr(std::min(value, line.size())));
    }
    return text.empty() ? L"the script threw a value that is no Error object" : text;
}

} // namespace

std::wstring ReadTextFile(const std::wstring& file)
{
    const vh::unique_file handle(CreateFileW(LongPath(file).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                             OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size{};
    DWORD code = handle && GetFileSizeEx(handle.get(), &size) ? ERROR_SUCCESS : GetLastError();
    if (code == ERROR_SUCCESS && size.QuadPart > largest_script)
        code = ERROR_FILE_TOO_LARGE;
    std::string bytes(code == ERROR_SUCCESS ? static_cast<std::size_t>(size.QuadPart) : 0, '\0');
    DWORD read = 0;
    if (code == ERROR_SUCCESS &&
        !::ReadFile(handle.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
        code = GetLastError();
    if (code != ERROR_SUCCESS)
        throw std::runtime_error(Utf8(file + L": " + SystemText(code)));
    bytes.resize(read);
    if (bytes.starts_with("\xFF\xFE")) {
        std::wstring text((bytes.size() - 2) / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), bytes.data() + 2, text.size() * sizeof(wchar_t));
        return text;
    }
    return Wide(bytes.starts_with("\xEF\xBB\xBF") ? std::string_view(bytes).substr(3) : std::string_view(bytes));
}

std::wstring ScriptFailure::Text() const
{
    std::wstring place = file;
    if (line)
        place += L"(" + std::to_wstring(line) + L"," + std::to_wstring(column) + L")";
    return place + L": " + text + (source.empty() ? L"" : L"\n    " + source);
}

ScriptSite::ScriptSite(IDispatch* global) : m_global(global) {}

HRESULT ScriptSite::QueryMore(REFIID id, void** object)
{
    if (id != vh::iid_of<IActiveScriptSite>)
        return E_NOINTERFACE;
    *object = static_cast<IActiveScriptSite*>(this);
    AddRef();
    return S_OK;
}

bool ScriptSite::Load(const std::vector<std::wstring>& files, SCRIPTSTATE state)
{
    m_files = files;
    for (const std::wstring& file : files)
        m_sources.push_back(ReadTextFile(file));

    vh::com_ptr<IActiveScript> script;
    Require(
        CoCreateInstance(jscript_class, nullptr, CLSCTX_INPROC_SERVER, vh::iid_of<IActiveScript>, script.put_void()),
        "its creation");
    const auto parser = script.query<IActiveScriptParse64>();
    Require(parser ? S_OK : E_NOINTERFACE, "its parser");
    Require(script->SetScriptSite(this), "its site");
    Require(parser->InitNew(), "its start");
    if (m_global)
        Require(script->AddNamedItem(global_name, SCRIPTITEM_ISVISIBLE | SCRIPTITEM_GLOBALMEMBERS), "the host's names");
    if (state != SCRIPTSTATE_INITIALIZED)
        Require(script->SetScriptState(state), "the connected state");
    SetRunning(script.get());
    for (std::size_t i = 0; i < m_sources.size() && !m_failed; ++i) {
        EXCEPINFO exception{};
        const HRESULT code = parser->ParseScriptText(m_sources[i].c_str(), nullptr, nullptr, nullptr, i, 1,
                                                     SCRIPTTEXT_ISVISIBLE, nullptr, &exception);
        if (FAILED(code) && !m_failed) {
            m_failed = true;
            m_failure = {m_files[i], 0, 0, SystemText(static_cast<uint32_t>(code)), {}};
        }
    }
    SetRunning(nullptr);
    script->Close();
    return !m_failed;
}

void ScriptSite::SetRunning(IActiveScript* script)
{
    const std::scoped_lock lock(m_lock);
    m_running = script;
}

void ScriptSite::Interrupt()
{
    const std::scoped_lock lock(m_lock);
    EXCEPINFO none{};
    if (m_running)
        m_running->InterruptScriptThread(SCRIPTTHREADID_BASE, &none, 0);
}

HRESULT ScriptSite::GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** item, ITypeInfo** type)
{
    if (type)
        *type = nullptr;
    if (std::wstring_view(name) != global_name)
        return TYPE_E_ELEMENTNOTFOUND;
    if (mask & SCRIPTINFO_IUNKNOWN) {
        *item = m_global.get();
        (*item)->AddRef();
    }
    return S_OK;
}

HRESULT ScriptSite::OnScriptError(IActiveScriptError* error)
{
    if (m_failed)
        return S_OK;
    m_failed = true;
    EXCEPINFO exception{};
    error->GetExceptionInfo(&exception);
    if (exception.pfnDeferredFillIn)
        exception.pfnDeferredFillIn(&exception);
    vh::bstr source;
    vh::bstr description;
    vh::bstr help;
    source.attach(exception.bstrSource);
    description.attach(exception.bstrDescription);
    help.attach(exception.bstrHelpFile);

    DWORD file = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetSourcePosition(&file, &line, &column);
    m_failure.file = file < m_files.size() ? m_files[file] : std::wstring();
    m_failure.line = line;
    m_failure.column = static_cast<unsigned>(column + 1);
    m_failure.source = file < m_sources.size() ? LineOf(m_sources[file], line) : std::wstring();
    if (exception.scode == thrown_value)
        m_failure.text = ThrownText(m_failure.source, column);
    else
        m_failure.text =
            description ? std::wstring(description.view()) : L"error " + Hex(static_cast<uint32_t>(exception.scode));
    return S_OK;
}

} // namespace host
