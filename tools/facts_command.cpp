#include "facts_command.h"

#include <algorithm>
#include <vector>

#include <nlohmann/json.hpp>

#include "exit_codes.h"
#include "exports/vhrt/facts.h"
#include "host/console.h"
#include "host/library.h"
#include "host/text.h"
#include "system/operating_system.h"

namespace tools {

namespace {

// One fact: a truth, a number or a text. The key is its name in JSON, unit included.
struct Fact {
    std::wstring title;
    std::string key;
    nlohmann::json value;
    std::wstring unit;
};

// Exports that take nothing and answer with one number.
enum class Kind { number, truth };
struct SimpleRow {
    const wchar_t* title;
    const char* key;
    const char* name;
    Kind kind;
    const wchar_t* unit;
};
constexpr SimpleRow simple_rows[] = {
    {L"Processor type known to scripts", "cpuType", "GetCPUType", Kind::number, L""},
    {L"ARM64 machine", "arm64", "_IsArm64", Kind::truth, L""},
    {L"Virtual machine", "virtualMachine", "_IsVirtualMachine", Kind::truth, L""},
    {L"Kind of virtual machine", "virtualMachineType", "_GetVirtualMachineType", Kind::number, L""},
    {L"Resolution of the screen", "dpi", "_GetSystemDpi", Kind::number, L"dots per inch"},
    {L"System of the NT line", "ntLine", "IsOSTypeNT", Kind::truth, L""},
    {L"Windows Me", "windowsMe", "_IsWindowsME", Kind::truth, L""},
    {L"32-bit process on a 64-bit system", "wow64", "_IsWow64", Kind::truth, L""},
    {L"Administrator", "administrator", "IsNTAdmin", Kind::truth, L""},
    {L"Member of the administrators", "administratorsMember", "_IsInAdminGroup", Kind::truth, L""},
    {L"Power user", "powerUser", "IsPowerUser", Kind::truth, L""},
};

void AddProcessor(const host::Library& library, std::vector<Fact>& facts)
{
    VHRTProcessorInfo info{};
    if (library.Entry<decltype(_GetProcessorInfo)>("_GetProcessorInfo")(&info) != 0)
        return;
    facts.push_back({L"Processor architecture", "processorArchitecture", info.architecture, L""});
    facts.push_back({L"Processors", "processors", info.processorCount, L""});
    facts.push_back({L"Processor type", "processorType", info.processorType, L""});
    facts.push_back({L"Processor level", "processorLevel", info.processorLevel, L""});
    facts.push_back({L"Processor revision", "processorRevision", info.processorRevision, L""});
}

void AddMemory(const host::Library& library, std::vector<Fact>& facts)
{
    constexpr int32_t to_mebibytes = 20;
    uint32_t high = 0;
    uint32_t low = 0;
    const auto query = library.Entry<decltype(_GetGlobalMemorySize)>("_GetGlobalMemorySize");
    if (query(&high, &low, to_mebibytes, 0, 0) == 0)
        facts.push_back({L"Physical memory", "memoryMiB", uint64_t{high} << 32 | low, L"MiB"});
}

void AddPorts(const host::Library& library, std::vector<Fact>& facts)
{
    int32_t printers = 0;
    int32_t serial = 0;
    if (library.Entry<decltype(GetPorts)>("GetPorts")(&printers, &serial) != 0)
        return;
    facts.push_back({L"Printer ports", "printerPorts", printers, L""});
    facts.push_back({L"Serial ports", "serialPorts", serial, L""});
}

std::vector<Fact> Collect(const host::Library& library)
{
    std::vector<Fact> facts;
    if (const std::wstring name = vh::GetOsNameText(0, 0); !name.empty())
        facts.push_back({L"System", "system", host::Utf8(name), L""});
    AddProcessor(library, facts);
    AddMemory(library, facts);
    AddPorts(library, facts);
    for (const SimpleRow& row : simple_rows) {
        const int32_t answer = library.Entry<int32_t()>(row.name)();
        facts.push_back({row.title, row.key,
                         row.kind == Kind::truth ? nlohmann::json(answer != 0) : nlohmann::json(answer), row.unit});
    }
    return facts;
}

std::wstring Shown(const nlohmann::json& value)
{
    if (value.is_boolean())
        return value.get<bool>() ? L"yes" : L"no";
    return host::Wide(value.is_string() ? value.get<std::string>() : value.dump());
}

void SayTable(const std::vector<Fact>& facts)
{
    std::size_t width = 0;
    for (const Fact& fact : facts)
        width = std::max(width, fact.title.size());
    for (const Fact& fact : facts) {
        std::wstring line = fact.title + std::wstring(width - fact.title.size() + 2, L' ') + Shown(fact.value);
        if (!fact.unit.empty())
            line += L" " + fact.unit;
        host::Say(line);
    }
}

} // namespace

int PrintFacts(const std::wstring& library, bool json)
{
    const std::vector<Fact> facts = Collect(host::Library(library));
    if (!json) {
        SayTable(facts);
        return exit_done;
    }
    nlohmann::ordered_json object;
    for (const Fact& fact : facts)
        object[fact.key] = fact.value;
    host::Say(host::Wide(object.dump(2)));
    return exit_done;
}

} // namespace tools
