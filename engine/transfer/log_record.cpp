#include "log_record.h"

#include <algorithm>
#include <array>

#include "../product/json_reader.h"
#include "../services/registry_access.h"

namespace vh::engine {

namespace {

using nlohmann::json;

struct KindName {
    LogKind kind;
    const char* name;
};
constexpr KindName kind_names[] = {
    {LogKind::run, "run"},         {LogKind::commit, "commit"},     {LogKind::ended, "ended"},
    {LogKind::clean, "clean"},     {LogKind::features, "features"}, {LogKind::folder, "folder"},
    {LogKind::file, "file"},       {LogKind::placed, "placed"},     {LogKind::content, "content"},
    {LogKind::key, "key"},         {LogKind::value, "value"},       {LogKind::set, "set"},
    {LogKind::shell, "shell"},     {LogKind::texts, "texts"},       {LogKind::taken, "taken"},
    {LogKind::waiting, "waiting"}, {LogKind::unkey, "unkey"},       {LogKind::forgotten, "forgotten"},
    {LogKind::undone, "undone"},
};

// The fields of a record and their keys in the file; a field at its default is left out.
template <class Value>
struct Field {
    const char* key;
    Value LogRecord::*field;
};
constexpr Field<std::wstring> text_fields[] = {
    {"what", &LogRecord::what},           {"feature", &LogRecord::feature}, {"source", &LogRecord::source},
    {"temp", &LogRecord::temp},           {"backup", &LogRecord::backup},   {"version", &LogRecord::version},
    {"name", &LogRecord::name},           {"data", &LogRecord::data},       {"oldData", &LogRecord::oldData},
    {"firstData", &LogRecord::firstData},
};
constexpr Field<uint64_t> size_fields[] = {
    {"size", &LogRecord::size}, {"time", &LogRecord::time}, {"sourceTime", &LogRecord::sourceTime}};
constexpr Field<bool> truth_fields[] = {{"permanent", &LogRecord::permanent},
                                        {"found", &LogRecord::found},
                                        {"original", &LogRecord::original},
                                        {"shared", &LogRecord::shared},
                                        {"loose", &LogRecord::loose}};
constexpr Field<long> number_fields[] = {{"type", &LogRecord::type},
                                         {"oldType", &LogRecord::oldType},
                                         {"firstType", &LogRecord::firstType},
                                         {"ref", &LogRecord::ref}};

constexpr Field<std::vector<std::wstring>> list_fields[] = {{"list", &LogRecord::list}, {"others", &LogRecord::others}};

const char* NameOf(LogKind kind)
{
    return std::find_if(std::begin(kind_names), std::end(kind_names),
                        [&](const KindName& entry) { return entry.kind == kind; })
        ->name;
}

template <class Value, std::size_t Count>
void Put(json& line, const LogRecord& record, const Field<Value> (&fields)[Count])
{
    static const LogRecord plain;
    for (const Field<Value>& field : fields)
        if (record.*field.field != plain.*field.field) {
            if constexpr (std::is_same_v<Value, std::wstring>)
                line[field.key] = ToUtf8(record.*field.field);
            else
                line[field.key] = record.*field.field;
        }
}

template <class Value, std::size_t Count>
void Get(const json& line, LogRecord& record, const Field<Value> (&fields)[Count])
{
    for (const Field<Value>& field : fields) {
        if (const auto found = line.find(field.key); found == line.end())
            continue;
        else if constexpr (std::is_same_v<Value, std::wstring>)
            record.*field.field = ToWide(found->template get<std::string>());
        else
            record.*field.field = found->template get<Value>();
    }
}

// The check sum of IEEE 802.3.
uint32_t Crc32(std::string_view bytes)
{
    static constexpr auto table = [] {
        std::array<uint32_t, 256> made{};
        for (uint32_t i = 0; i < made.size(); ++i) {
            made[i] = i;
            for (int bit = 0; bit < 8; ++bit)
                made[i] = (made[i] >> 1) ^ (made[i] & 1 ? 0xEDB88320u : 0u);
        }
        return made;
    }();
    uint32_t sum = ~0u;
    for (const char byte : bytes)
        sum = (sum >> 8) ^ table[(sum ^ static_cast<unsigned char>(byte)) & 0xFF];
    return ~sum;
}

// The last member of each line: the check sum of the line without it.
std::string SumMember(std::string_view body)
{
    constexpr char digits[] = "0123456789abcdef";
    const uint32_t sum = Crc32(body);
    std::string member = ",\"sum\":\"";
    for (int shift = 28; shift >= 0; shift -= 4)
        member += digits[sum >> shift & 0xF];
    return member + "\"}";
}
constexpr std::size_t sum_member_size = 18;

// A full path without parts that lead elsewhere.
bool IsPlainPath(const std::wstring& path) { return !DriveOf(path).empty() && FullPath(path) == path; }

// Numbers count on from here without an end in sight.
constexpr long largest_number = 1'000'000'000;

// Names that only a forged record holds lead to files of others.
bool IsTrusted(const LogRecord& record)
{
    if (!record.temp.empty() && !IsAsideOf(record.temp, record.what))
        return false;
    if (!record.backup.empty() && !IsAsideOf(record.backup, record.what))
        return false;
    if (record.kind == LogKind::taken && record.backup.empty())
        return false;
    const bool place = record.kind == LogKind::key || record.kind == LogKind::value || record.kind == LogKind::unkey;
    if (place && !IsPlaceName(record.what))
        return false;
    const bool path = IsFile(record.kind) || record.kind == LogKind::folder || record.kind == LogKind::taken;
    if (path && !IsPlainPath(record.what))
        return false;
    return (record.oldData.empty() && record.firstData.empty()) || record.kind == LogKind::value ||
           (path && IsShortcutName(record.what));
}

} // namespace

std::string ToLine(const LogRecord& record)
{
    json line{{"id", record.id}, {"run", record.run}, {"do", NameOf(record.kind)}};
    Put(line, record, text_fields);
    Put(line, record, size_fields);
    Put(line, record, truth_fields);
    Put(line, record, number_fields);
    for (const auto& [key, field] : list_fields)
        for (const std::wstring& entry : record.*field)
            line[key].push_back(ToUtf8(entry));
    for (const auto& [name, value] : record.texts)
        line["texts"][ToUtf8(name)] = ToUtf8(value);
    std::string text = line.dump();
    const std::string sum = SumMember(text);
    text.pop_back();
    return text + sum;
}

std::optional<LogRecord> FromLine(std::string_view text)
{
    if (text.size() <= sum_member_size)
        return std::nullopt;
    const std::string body = std::string(text.substr(0, text.size() - sum_member_size)) + '}';
    if (text.substr(text.size() - sum_member_size) != SumMember(body))
        return std::nullopt;
    try {
        const json line = json::parse(body);
        LogRecord record;
        const std::string name = line.at("do").get<std::string>();
        const auto* known = std::find_if(std::begin(kind_names), std::end(kind_names),
                                         [&](const KindName& entry) { return name == entry.name; });
        if (known == std::end(kind_names))
            return std::nullopt;
        record.kind = known->kind;
        record.id = line.at("id").get<long>();
        record.run = line.at("run").get<long>();
        Get(line, record, text_fields);
        Get(line, record, size_fields);
        Get(line, record, truth_fields);
        Get(line, record, number_fields);
        for (const auto& [list, field] : list_fields)
            if (const auto found = line.find(list); found != line.end())
                for (const json& entry : *found)
                    (record.*field).push_back(ToWide(entry.get<std::string>()));
        if (const auto texts = line.find("texts"); texts != line.end())
            for (const auto& [key, value] : texts->items())
                record.texts[ToWide(key)] = ToWide(value.get<std::string>());
        if (record.id > 0 && record.id <= largest_number && record.run >= 0 && record.run <= largest_number &&
            IsTrusted(record))
            return record;
    } catch (const json::exception&) {
        // Well-formed by its sum, but no record.
    }
    return std::nullopt;
}

std::wstring Readable(const LogRecord& record)
{
    std::wstring line = Number(record.id) + L" " + ToWide(NameOf(record.kind));
    if (!record.what.empty())
        line += L" " + record.what;
    if (!record.name.empty())
        line += L" [" + record.name + L"]";
    if (IsFile(record.kind))
        line += L" (" + Number(static_cast<int64_t>(record.size)) + L" bytes)";
    if (record.found)
        line += L" (was there)";
    if (!record.feature.empty())
        line += L" of " + record.feature;
    if (record.ref)
        line += L" " + Number(record.ref);
    for (const std::wstring& entry : record.list)
        line += L" " + entry + L";";
    return line;
}

namespace {

constexpr std::wstring_view aside_mark = L".~vh";
constexpr std::wstring_view aside_endings[] = {L".new", L".old"};

} // namespace

std::wstring AsideName(const std::wstring& target, const std::wstring& token, long number, const wchar_t* ending)
{
    return JoinPath(FolderOf(target), std::wstring(aside_mark) + token + L"-" + Number(number) + L"." + ending);
}

bool IsAsideName(std::wstring_view name)
{
    if (!name.starts_with(aside_mark))
        return false;
    return std::any_of(std::begin(aside_endings), std::end(aside_endings), [&](std::wstring_view ending) {
        if (!name.ends_with(ending) || name.size() < aside_mark.size() + ending.size() + 3)
            return false;
        const std::wstring_view middle =
            name.substr(aside_mark.size(), name.size() - aside_mark.size() - ending.size());
        return middle.find_first_not_of(L"0123456789abcdef-") == middle.npos;
    });
}

bool IsShortcutName(std::wstring_view path)
{
    constexpr std::wstring_view extension = L".lnk";
    return path.size() > extension.size() && SameText(path.substr(path.size() - extension.size()), extension);
}

bool IsAsideOf(const std::wstring& aside, const std::wstring& target)
{
    return SameText(FolderOf(aside), FolderOf(target)) && IsAsideName(FileNameOf(aside));
}

} // namespace vh::engine
