#include "exports_command.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <vector>

#include "exit_codes.h"
#include "export_table.h"
#include "file_bytes.h"
#include "host/call_signature.h"
#include "host/console.h"
#include "host/text.h"

namespace tools {

namespace {

using Table = std::map<std::string, uint32_t>;

std::map<std::string, host::CallRow> KnownFunctions()
{
    std::map<std::string, host::CallRow> known;
    for (const host::CallRow& row : host::CallTable())
        known.emplace(row.name, row);
    return known;
}

// What `read` makes of the file; its errors name it.
template <class Read>
Table TableOf(const std::wstring& file, Read read)
{
    try {
        return read(ReadBytes(file));
    } catch (const std::runtime_error& error) {
        const std::string text = error.what();
        const std::string name = host::Utf8(file);
        throw std::runtime_error(text.starts_with(name) ? text : name + ": " + text);
    }
}

void PrintByNumber(const Table& table, const std::map<std::string, host::CallRow>& known)
{
    std::vector<std::pair<uint32_t, std::string>> rows;
    for (const auto& [name, number] : table)
        rows.emplace_back(number, name);
    std::sort(rows.begin(), rows.end());
    for (const auto& [number, name] : rows) {
        std::wstring line = std::to_wstring(number);
        line.insert(0, line.size() < 4 ? 4 - line.size() : 0, L' ');
        line += L"  " + host::Wide(name);
        if (const auto row = known.find(name); row != known.end())
            line += L"(" + host::Wide(row->second.arguments) + L") -> " + host::Wide(row->second.result);
        host::Say(line);
    }
}

int CompareNames(const Table& table, const std::map<std::string, host::CallRow>& known)
{
    int differences = 0;
    for (const auto& [name, row] : known) {
        if (!table.contains(name)) {
            host::Complain(host::Wide(name) + L": not exported");
            ++differences;
        }
    }
    for (const auto& [name, number] : table) {
        if (!known.contains(name)) {
            host::Complain(host::Wide(name) + L": exported, but unknown");
            ++differences;
        }
    }
    return differences;
}

// What `wanted` has beyond the library is named by CompareNames, or unknown to both.
int CompareNumbers(const Table& table, const Table& wanted)
{
    int differences = 0;
    for (const auto& [name, number] : table) {
        const auto found = wanted.find(name);
        if (found != wanted.end() && found->second == number)
            continue;
        host::Complain(host::Wide(name) + L": number " + std::to_wstring(number) +
                       (found == wanted.end() ? L", which the definition file lacks"
                                              : L" instead of " + std::to_wstring(found->second)));
        ++differences;
    }
    return differences;
}

} // namespace

int ListExports(const std::wstring& library, const std::wstring& definition)
{
    const Table table = TableOf(library, ReadExportTable);
    const auto known = KnownFunctions();
    PrintByNumber(table, known);
    int differences = CompareNames(table, known);
    if (!definition.empty()) {
        const auto read = [](const std::vector<std::byte>& bytes) {
            return ReadDefinitionFile({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        };
        differences += CompareNumbers(table, TableOf(definition, read));
    }
    host::Say(std::to_wstring(table.size()) + L" exports, " + std::to_wstring(differences) + L" differences");
    return differences ? exit_found : exit_done;
}

} // namespace tools
