#include "install_log.h"

#include <algorithm>
#include <set>

#include "../files.h"
#include "../product/json_reader.h"

namespace vh::engine {

namespace {

using nlohmann::json;

constexpr uint64_t largest_log = 1u << 30;

struct KindName {
    LogKind kind;
    const char* name;
};
constexpr KindName kind_names[] = {
    {LogKind::run, "run"},       {LogKind::commit, "commit"}, {LogKind::features, "features"},
    {LogKind::folder, "folder"}, {LogKind::file, "file"},     {LogKind::key, "key"},
    {LogKind::value, "value"},   {LogKind::set, "set"},       {LogKind::shell, "shell"},
    {LogKind::texts, "texts"},   {LogKind::undone, "undone"},
};

// The text fields of a record and their keys in the file.
struct TextField {
    const char* key;
    std::wstring LogRecord::*field;
};
constexpr TextField text_fields[] = {
    {"what", &LogRecord::what}, {"feature", &LogRecord::feature}, {"source", &LogRecord::source},
    {"temp", &LogRecord::temp}, {"backup", &LogRecord::backup},   {"version", &LogRecord::version},
    {"name", &LogRecord::name}, {"data", &LogRecord::data},       {"oldData", &LogRecord::oldData},
};

const char* NameOf(LogKind kind)
{
    return std::find_if(std::begin(kind_names), std::end(kind_names),
                        [&](const KindName& entry) { return entry.kind == kind; })
        ->name;
}

std::string ToLine(const LogRecord& record)
{
    json line{{"id", record.id}, {"run", record.run}, {"do", NameOf(record.kind)}};
    for (const TextField& field : text_fields)
        if (!(record.*field.field).empty())
            line[field.key] = ToUtf8(record.*field.field);
    if (IsFile(record.kind)) {
        line["size"] = record.size;
        line["time"] = record.time;
    }
    if (record.permanent)
        line["permanent"] = true;
    if (record.type != -1)
        line["type"] = record.type;
    if (record.oldType != -1)
        line["oldType"] = record.oldType;
    if (record.ref)
        line["ref"] = record.ref;
    for (const std::wstring& entry : record.list)
        line["list"].push_back(ToUtf8(entry));
    for (const auto& [name, value] : record.texts)
        line["texts"][ToUtf8(name)] = ToUtf8(value);
    return line.dump() + '\n';
}

LogRecord FromLine(std::string_view text)
{
    const json line = json::parse(text);
    LogRecord record;
    const std::string name = line.at("do").get<std::string>();
    const auto* known = std::find_if(std::begin(kind_names), std::end(kind_names),
                                     [&](const KindName& entry) { return name == entry.name; });
    if (known == std::end(kind_names))
        throw json::other_error::create(500, "unknown record \"" + name + '"', &line);
    record.kind = known->kind;
    record.id = line.at("id").get<long>();
    record.run = line.at("run").get<long>();
    for (const TextField& field : text_fields)
        record.*field.field = ToWide(line.value(field.key, ""));
    record.size = line.value("size", uint64_t{0});
    record.time = line.value("time", uint64_t{0});
    record.permanent = line.value("permanent", false);
    record.type = line.value("type", -1L);
    record.oldType = line.value("oldType", -1L);
    record.ref = line.value("ref", 0L);
    for (const json& entry : line.value("list", json::array()))
        record.list.push_back(ToWide(entry.get<std::string>()));
    // Named, because the items of a temporary would outlive it.
    const json texts = line.value("texts", json::object());
    for (const auto& [key, value] : texts.items())
        record.texts[ToWide(key)] = ToWide(value.get<std::string>());
    return record;
}

bool IsUndoable(LogKind kind)
{
    return kind == LogKind::folder || kind == LogKind::file || kind == LogKind::key || kind == LogKind::value ||
           kind == LogKind::shell;
}

} // namespace

InstallLog::InstallLog(std::wstring file) : m_file(std::move(file))
{
    if (FactsOf(m_file).exists())
        Read();
}

void InstallLog::Read()
{
    const std::string content = ReadWhole(m_file, largest_log);
    int64_t number = 0;
    for (std::size_t start = 0; start < content.size(); ++number) {
        const std::size_t end = content.find('\n', start);
        if (end == std::string::npos)
            break;
        try {
            m_records.push_back(FromLine(std::string_view(content).substr(start, end - start)));
        } catch (const json::exception& error) {
            throw engine_error(HRESULT_FROM_WIN32(ERROR_FILE_CORRUPT), m_file,
                               L"line " + Number(number + 1) + L" is damaged: " + ToWide(error.what()));
        }
        const LogRecord& record = m_records.back();
        if (record.kind == LogKind::undone)
            m_undone[record.ref] = record.id;
        start = end + 1;
        m_wholeBytes = start;
    }
}

long InstallLog::UnfinishedRun() const
{
    long run = 0;
    for (const LogRecord& record : m_records) {
        if (record.kind == LogKind::run)
            run = record.run;
        else if (record.kind == LogKind::commit && record.run == run)
            run = 0;
    }
    return run;
}

long InstallLog::Append(LogRecord record)
{
    if (!m_run && record.kind != LogKind::undone && record.kind != LogKind::run && record.kind != LogKind::commit) {
        LogRecord begin;
        long last = 0;
        for (const LogRecord& before : m_records)
            last = std::max(last, before.run);
        begin.run = m_run = last + 1;
        Append(begin);
    }
    record.id = LastId() + 1;
    if (!record.run)
        record.run = m_run;
    Write(record);
    if (record.kind == LogKind::commit)
        m_run = 0;
    m_records.push_back(std::move(record));
    return m_records.back().id;
}

void InstallLog::Claim()
{
    if (m_writer)
        return;
    MakeFolders(FolderOf(m_file), {});
    m_writer.reset(
        CreateFileW(LongPath(m_file).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr));
    if (!m_writer)
        ThrowFileError(m_file, L"can't write the install log", GetLastError());
    LARGE_INTEGER end{};
    end.QuadPart = static_cast<LONGLONG>(m_wholeBytes);
    if (!SetFilePointerEx(m_writer.get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(m_writer.get()))
        ThrowFileError(m_file, L"can't write the install log", GetLastError());
}

void InstallLog::Write(const LogRecord& record)
{
    Claim();
    const std::string line = ToLine(record);
    DWORD written = 0;
    if (!WriteFile(m_writer.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr) ||
        written != line.size())
        ThrowFileError(m_file, L"can't write the install log", GetLastError());
    m_wholeBytes += line.size();
}

void InstallLog::MarkUndone(long id)
{
    LogRecord record;
    record.kind = LogKind::undone;
    record.ref = id;
    m_undone[id] = Append(std::move(record));
}

const LogRecord* InstallLog::Newest(LogKind kind, std::wstring_view what) const
{
    const auto found = std::find_if(m_records.rbegin(), m_records.rend(), [&](const LogRecord& record) {
        return record.kind == kind && SameText(record.what, what) && !Undone(record);
    });
    return found == m_records.rend() ? nullptr : &*found;
}

std::vector<const LogRecord*> InstallLog::Standing(LogKind kind) const
{
    std::vector<const LogRecord*> standing;
    std::set<std::wstring> seen;
    for (auto record = m_records.rbegin(); record != m_records.rend(); ++record)
        if (record->kind == kind && !Undone(*record) && seen.insert(Upper(record->what + L'\n' + record->name)).second)
            standing.push_back(&*record);
    std::reverse(standing.begin(), standing.end());
    return standing;
}

bool InstallLog::AnythingStands() const
{
    return std::any_of(m_records.begin(), m_records.end(),
                       [&](const LogRecord& record) { return IsUndoable(record.kind) && !Undone(record); });
}

void InstallLog::Delete()
{
    m_writer.reset();
    m_records.clear();
    m_undone.clear();
    m_wholeBytes = 0;
    m_run = 0;
    RemoveFile(m_file);
    RemoveDirectoryW(LongPath(FolderOf(m_file)).c_str());
}

std::wstring InstallLog::Line(const LogRecord& record)
{
    std::wstring line = Number(record.id) + L" " + ToWide(NameOf(record.kind));
    if (!record.what.empty())
        line += L" " + record.what;
    if (!record.name.empty())
        line += L" [" + record.name + L"]";
    if (IsFile(record.kind))
        line += L" (" + Number(static_cast<int64_t>(record.size)) + L" bytes)";
    if (!record.feature.empty())
        line += L" of " + record.feature;
    if (record.ref)
        line += L" " + Number(record.ref);
    for (const std::wstring& entry : record.list)
        line += L" " + entry + L";";
    return line;
}

} // namespace vh::engine
