#include "json_reader.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>

#include "../files.h"
#include "json_positions.h"

namespace vh::engine {

namespace {

constexpr uint64_t largest_file = 16u << 20;
// Room for features nested as deep as they may be, with their files.
constexpr int deepest = 48;
constexpr std::size_t most_faults = 1000;

std::wstring Quoted(std::string_view key) { return L"\"" + ToWide(key) + L"\""; }

std::string ParentOf(const std::string& pointer) { return pointer.substr(0, pointer.find_last_of('/')); }

std::wstring TwiceText(const std::string& pointer)
{
    const std::string key = pointer.substr(pointer.find_last_of('/') + 1);
    return L"the key " + Quoted(key) + L" comes twice";
}

bool ComesBefore(const JsonFault& a, const JsonFault& b)
{
    return a.line != b.line ? a.line < b.line : a.column < b.column;
}

// JSON knows numbers, no kinds of them: 2.0 is 2. What is beyond 63 bits reads as the nearest number that is not.
std::optional<int64_t> WholeNumber(const nlohmann::json& value)
{
    if (value.is_number_unsigned())
        return static_cast<int64_t>(std::min<uint64_t>(value.get<uint64_t>(), INT64_MAX));
    if (value.is_number_integer())
        return value.get<int64_t>();
    const double number = value.is_number_float() ? value.get<double>() : 0.5;
    if (number != std::floor(number))
        return std::nullopt;
    constexpr double beyond = 9223372036854775808.0;
    if (number >= beyond || number < -beyond)
        return number > 0 ? INT64_MAX : INT64_MIN;
    return static_cast<int64_t>(number);
}

// Stops the parser; what is wrong is worked out on the text.
struct broken_rule {};

} // namespace

std::wstring JsonFault::Text() const
{
    // A fault of the whole text has no place but its line.
    return place.empty() ? reason : ToWide(place) + L": " + reason;
}

JsonFile::JsonFile(std::wstring path, Faults faults) : m_path(std::move(path)), m_how(faults)
{
    m_text = ReadWhole(m_path, largest_file);
    if (m_text.starts_with("\xFF\xFE") || m_text.starts_with("\xFE\xFF"))
        Keep({{}, 1, 1, L"must be UTF-8, and is UTF-16"});
    else
        Parse();
}

void JsonFile::Parse()
{
    std::vector<std::set<std::string>> keys;
    const auto check = [&](int depth, nlohmann::json::parse_event_t event, nlohmann::json& parsed) {
        using kind = nlohmann::json::parse_event_t;
        if (event == kind::object_start)
            keys.emplace_back();
        else if (event == kind::object_end)
            keys.pop_back();
        if (depth > deepest || (event == kind::key && !keys.back().insert(parsed.get_ref<const std::string&>()).second))
            throw broken_rule();
        return true;
    };
    try {
        m_root = nlohmann::json::parse(m_text, check);
        m_parsed = true;
    } catch (const nlohmann::json::parse_error& error) {
        const JsonPosition at = PositionOf(m_text, error.byte ? error.byte - 1 : 0);
        std::string_view reason = error.what();
        reason.remove_prefix(std::min(reason.size(), reason.find(": ") + 2));
        Keep({{}, at.line, at.column, L"is no valid JSON: " + ToWide(reason)});
    } catch (const nlohmann::json::exception& error) {
        Keep({{}, 0, 0, L"is no valid JSON: " + ToWide(error.what())});
    } catch (const broken_rule&) {
        std::map<std::string, JsonPosition> none;
        const JsonScan scan = ScanJson(m_text, deepest, none);
        for (const auto& [pointer, at] : scan.twice)
            Keep({ParentOf(pointer), at.line, at.column, TwiceText(pointer)});
        if (scan.tooDeep.line)
            Keep(
                {{}, scan.tooDeep.line, scan.tooDeep.column, L"is nested deeper than " + Number(deepest) + L" levels"});
    }
}

JsonPlace JsonFile::Root() const { return {m_parsed ? &m_root : nullptr, *this}; }

void JsonFile::Fail(const std::string& place, const std::wstring& reason) const
{
    if (m_places.insert(place).second)
        Keep({place, 0, 0, reason});
}

void JsonFile::Keep(JsonFault fault) const
{
    if (m_faults.size() < most_faults)
        m_faults.push_back(std::move(fault));
    if (m_how == Faults::collected)
        return;
    Locate(m_faults);
    const JsonFault& first = m_faults.front();
    const std::wstring at =
        first.line ? L"line " + Number(first.line) + L", column " + Number(first.column) + L": " : std::wstring();
    throw engine_error(E_INVALIDARG, m_path, at + first.Text());
}

// A key that is missing stands where its object does.
void JsonFile::Locate(std::vector<JsonFault>& faults) const
{
    std::map<std::string, JsonPosition> wanted;
    for (const JsonFault& fault : faults)
        if (!fault.line) {
            wanted[fault.place];
            wanted[ParentOf(fault.place)];
        }
    if (wanted.empty() || !m_parsed)
        return;
    ScanJson(m_text, deepest, wanted);
    for (JsonFault& fault : faults) {
        if (fault.line)
            continue;
        const JsonPosition own = wanted[fault.place];
        const JsonPosition at = own.line ? own : wanted[ParentOf(fault.place)];
        fault.line = at.line;
        fault.column = at.column;
    }
}

std::vector<JsonFault> JsonFile::Found() const
{
    std::vector<JsonFault> faults = m_faults;
    Locate(faults);
    std::stable_sort(faults.begin(), faults.end(), ComesBefore);
    return faults;
}

JsonPlace JsonPlace::Below(const nlohmann::json* value, std::string_view key) const
{
    return {value, *m_file, m_place + '/' + PointerPart(key)};
}

void JsonPlace::Keys(std::initializer_list<const char*> known) const
{
    if (!m_value)
        return;
    if (!m_value->is_object())
        return Fail(L"must be an object");
    for (const auto& [key, value] : m_value->items())
        if (std::none_of(known.begin(), known.end(), [&given = key](const char* name) { return given == name; }))
            Below(&value, key).Fail(L"unknown key " + Quoted(key));
}

JsonPlace JsonPlace::At(const char* key) const
{
    if (!m_value || !m_value->is_object())
        return Below(nullptr, key);
    const auto found = m_value->find(key);
    const JsonPlace at = Below(found == m_value->end() ? nullptr : &*found, key);
    if (!at.m_value)
        m_file->Fail(at.m_place, Quoted(key) + L" is missing");
    return at;
}

std::wstring JsonPlace::Text(std::size_t longest) const
{
    std::wstring text;
    if (!m_value)
        return text;
    if (m_value->is_string())
        text = ToWide(m_value->get_ref<const std::string&>());
    else
        Fail(L"must be a text");
    if (text.size() > longest)
        Fail(L"is longer than " + std::to_wstring(longest) + L" characters");
    if (text.find(L'\0') != std::wstring::npos)
        Fail(L"holds a null character");
    return text;
}

std::wstring JsonPlace::Name(std::size_t longest) const
{
    std::wstring name = Text(longest);
    if (name.empty() && m_value)
        Fail(L"must not be empty");
    return name;
}

bool JsonPlace::Truth() const
{
    if (!m_value)
        return false;
    if (!m_value->is_boolean()) {
        Fail(L"must be true or false");
        return false;
    }
    return m_value->get<bool>();
}

int64_t JsonPlace::Number(int64_t least, int64_t most) const
{
    if (!m_value)
        return least;
    const std::optional<int64_t> number = WholeNumber(*m_value);
    if (!number)
        Fail(L"must be a whole number");
    else if (*number < least || *number > most)
        Fail(least == most ? L"must be " + std::to_wstring(least)
                           : L"must lie between " + std::to_wstring(least) + L" and " + std::to_wstring(most));
    return std::clamp(number.value_or(least), least, most);
}

std::wstring JsonPlace::Text(const char* key, std::wstring_view absent) const
{
    return Has(key) ? At(key).Text() : std::wstring(absent);
}

bool JsonPlace::Truth(const char* key, bool absent) const { return Has(key) ? At(key).Truth() : absent; }

int64_t JsonPlace::Number(const char* key, int64_t absent, int64_t least, int64_t most) const
{
    return Has(key) ? At(key).Number(least, most) : absent;
}

bool JsonPlace::Holds(const JsonPlace& at, bool list, std::size_t most) const
{
    if (list ? !at.m_value->is_array() : !at.m_value->is_object())
        at.Fail(list ? L"must be a list" : L"must be an object");
    else if (at.m_value->size() > most)
        at.Fail(L"has more than " + std::to_wstring(most) + (list ? L" elements" : L" members"));
    else
        return true;
    return false;
}

void JsonPlace::Each(const char* key, std::size_t most, const std::function<void(const JsonPlace&)>& visit) const
{
    if (!Has(key))
        return;
    const JsonPlace list = At(key);
    if (!Holds(list, true, most))
        return;
    std::size_t index = 0;
    for (const nlohmann::json& element : *list.m_value)
        visit(list.Below(&element, std::to_string(index++)));
}

void JsonPlace::Members(const char* key, std::size_t most,
                        const std::function<void(const std::string&, const JsonPlace&)>& visit) const
{
    if (!Has(key))
        return;
    const JsonPlace object = At(key);
    if (!Holds(object, false, most))
        return;
    for (const auto& [name, value] : object.m_value->items())
        visit(name, object.Below(&value, name));
}

} // namespace vh::engine
