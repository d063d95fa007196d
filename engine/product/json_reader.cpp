#include "json_reader.h"

#include <algorithm>
#include <set>

#include "../files.h"

namespace vh::engine {

namespace {

constexpr uint64_t largest_file = 16u << 20;
// Room for features nested as deep as they may be, with their files.
constexpr int deepest = 48;

std::wstring Quoted(std::string_view key) { return L"\"" + ToWide(key) + L"\""; }

} // namespace

void JsonPlace::Fail(const std::wstring& reason) const
{
    throw engine_error(E_INVALIDARG, *m_file, ToWide(m_path.empty() ? "/" : m_path) + L": " + reason);
}

void JsonPlace::Keys(std::initializer_list<const char*> known) const
{
    if (!m_value->is_object())
        Fail(L"must be an object");
    for (const auto& [key, value] : m_value->items())
        if (std::none_of(known.begin(), known.end(), [&given = key](const char* name) { return given == name; }))
            Fail(L"unknown key " + Quoted(key));
}

JsonPlace JsonPlace::At(const char* key) const
{
    const auto found = m_value->find(key);
    if (found == m_value->end())
        Fail(Quoted(key) + L" is missing");
    return {*found, *m_file, m_path + '/' + key};
}

std::wstring JsonPlace::Text(std::size_t longest) const
{
    if (!m_value->is_string())
        Fail(L"must be a text");
    std::wstring text = ToWide(m_value->get_ref<const std::string&>());
    if (text.size() > longest)
        Fail(L"is longer than " + std::to_wstring(longest) + L" characters");
    if (text.find(L'\0') != std::wstring::npos)
        Fail(L"holds a null character");
    return text;
}

std::wstring JsonPlace::Name(std::size_t longest) const
{
    std::wstring name = Text(longest);
    if (name.empty())
        Fail(L"must not be empty");
    return name;
}

bool JsonPlace::Truth() const
{
    if (!m_value->is_boolean())
        Fail(L"must be true or false");
    return m_value->get<bool>();
}

int64_t JsonPlace::Number(int64_t least, int64_t most) const
{
    if (!m_value->is_number_integer())
        Fail(L"must be a whole number");
    const bool tooLarge = m_value->is_number_unsigned() && m_value->get<uint64_t>() > static_cast<uint64_t>(INT64_MAX);
    const int64_t number = tooLarge ? INT64_MAX : m_value->get<int64_t>();
    if (tooLarge || number < least || number > most)
        Fail(least == most ? L"must be " + std::to_wstring(least)
                           : L"must lie between " + std::to_wstring(least) + L" and " + std::to_wstring(most));
    return number;
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

void JsonPlace::Each(const char* key, std::size_t most, const std::function<void(const JsonPlace&)>& visit) const
{
    if (!Has(key))
        return;
    const JsonPlace list = At(key);
    if (!list.m_value->is_array())
        list.Fail(L"must be a list");
    if (list.m_value->size() > most)
        list.Fail(L"has more than " + std::to_wstring(most) + L" elements");
    for (std::size_t i = 0; i < list.m_value->size(); ++i)
        visit({(*list.m_value)[i], *m_file, list.m_path + '/' + std::to_string(i)});
}

void JsonPlace::Members(const char* key, std::size_t most,
                        const std::function<void(const std::string&, const JsonPlace&)>& visit) const
{
    if (!Has(key))
        return;
    const JsonPlace object = At(key);
    if (!object.m_value->is_object())
        object.Fail(L"must be an object");
    if (object.m_value->size() > most)
        object.Fail(L"has more than " + std::to_wstring(most) + L" members");
    for (const auto& [name, value] : object.m_value->items())
        visit(name, {value, *m_file, object.m_path + '/' + name});
}

nlohmann::json ParseJson(const std::wstring& file)
{
    const std::string content = ReadWhole(file, largest_file);
    if (content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF"))
        throw engine_error(E_INVALIDARG, file, L"must be UTF-8, and is UTF-16");
    std::vector<std::set<std::string>> keys;
    const auto check = [&](int depth, nlohmann::json::parse_event_t event, nlohmann::json& parsed) {
        using kind = nlohmann::json::parse_event_t;
        if (depth > deepest)
            throw engine_error(E_INVALIDARG, file, L"is nested deeper than " + Number(deepest) + L" levels");
        if (event == kind::object_start)
            keys.emplace_back();
        else if (event == kind::object_end)
            keys.pop_back();
        else if (event == kind::key && !keys.back().insert(parsed.get<std::string>()).second)
            throw engine_error(E_INVALIDARG, file, L"the key " + Quoted(parsed.get<std::string>()) + L" comes twice");
        return true;
    };
    try {
        return nlohmann::json::parse(content, check);
    } catch (const nlohmann::json::exception& error) {
        std::string_view reason = error.what();
        reason.remove_prefix(std::min(reason.size(), reason.find(']') + 2));
        throw engine_error(E_INVALIDARG, file, L"is no valid JSON: " + ToWide(reason));
    }
}

} // namespace vh::engine
