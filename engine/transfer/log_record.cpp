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

// Fills a record while a line is read. Members that it does not know are passed over; one of another type than it
// should have ends the reading.
class LineReader : public nlohmann::json_sax<json> {
public:
    LogRecord& record() { return m_record; }
    // What no record is without.
    bool IsWhole() const { return m_named && m_numbered && m_ofRun; }

    bool key(std::string& name) override
    {
        (m_depth == 1 ? m_key : m_inner) = name;
        return true;
    }
    bool string(std::string& value) override
    {
        if (m_depth > 1)
            return StringWithin(value);
        if (m_key == "do")
            return Kind(value);
        if (auto* text = Named(text_fields))
            return *text = ToWide(value), true;
        return IsUnknown();
    }
    bool number_unsigned(std::uint64_t value) override
    {
        if (m_depth == 1)
            if (auto* size = Named(size_fields))
                return *size = value, true;
        return value > LONG_MAX ? IsUnknown() : number_integer(static_cast<std::int64_t>(value));
    }
    bool number_integer(std::int64_t value) override
    {
        if (m_depth > 1)
            return IsUnknown();
        long* number = m_key == "id" ? &m_record.id : m_key == "run" ? &m_record.run : Named(number_fields);
        if (!number || value < LONG_MIN || value > LONG_MAX)
            return IsUnknown();
        m_numbered |= number == &m_record.id;
        m_ofRun |= number == &m_record.run;
        return *number = static_cast<long>(value), true;
    }
    bool boolean(bool value) override
    {
        if (auto* truth = m_depth == 1 ? Named(truth_fields) : nullptr)
            return *truth = value, true;
        return IsUnknown();
    }
    bool number_float(double, const std::string&) override { return IsUnknown(); }
    bool null() override { return IsUnknown(); }
    bool binary(json::binary_t&) override { return false; }
    bool start_object(std::size_t) override { return ++m_depth == 1 || m_key == "texts" ? m_depth <= 2 : IsUnknown(); }
    bool start_array(std::size_t) override { return ++m_depth == 2 && Named(list_fields) ? true : IsUnknown(); }
    bool end_object() override { return --m_depth >= 0; }
    bool end_array() override { return --m_depth >= 0; }
    bool parse_error(std::size_t, const std::string&, const json::exception&) override { return false; }

private:
    bool Kind(const std::string& name)
    {
        const auto* known = std::find_if(std::begin(kind_names), std::end(kind_names),
                                         [&](const KindName& entry) { return name == entry.name; });
        m_named = known != std::end(kind_names);
        return m_named && (m_record.kind = known->kind, true);
    }
    bool StringWithin(const std::string& value)
    {
        if (m_key == "texts")
            m_record.texts[ToWide(m_inner)] = ToWide(value);
        else if (auto* list = Named(list_fields))
            list->push_back(ToWide(value));
        return true;
    }
    // The field of the member in hand; null when it is not among these.
    template <class Value, std::size_t Count>
    Value* Named(const Field<Value> (&fields)[Count])
    {
        for (const Field<Value>& field : fields)
            if (m_key == field.key)
                return &(m_record.*field.field);
        return nullptr;
    }
    // Not one of the members that have a type of their own.
    bool IsUnknown()
    {
        return m_key != "do" && m_key != "id" && m_key != "run" && m_key != "texts" && !Named(text_fields) &&
               !Named(size_fields) && !Named(truth_fields) && !Named(number_fields) && !Named(list_fields);
    }

    LogRecord m_record;
    std::string m_key;
    std::string m_inner; // in an object within
    int m_depth = 0;
    bool m_named = false;
    bool m_numbered = false;
    bool m_ofRun = false;
};

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
    std::string body(text.substr(0, text.size() - sum_member_size));
    body += '}';
    if (text.substr(text.size() - sum_member_size) != SumMember(body))
        return std::nullopt;
    LineReader reader;
    if (!json::sax_parse(body, &reader) || !reader.IsWhole())
        return std::nullopt;
    LogRecord& record = reader.record();
    if (record.id <= 0 || record.id > largest_number || record.run < 0 || record.run > largest_number ||
        !IsTrusted(record))
        return std::nullopt;
    return std::move(record);
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

} // namespace vh::engine
