#include "program_entry.h"

#include <algorithm>

#include "services/registry_access.h"
#include "transfer/take_away.h"

namespace vh::engine {

namespace {

constexpr const wchar_t* list_key = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

RegistryPlace EntryPlace(const Core& core)
{
    const Product& product = *core.product->product;
    const wchar_t* root = product.scope == Scope::machine ? L"HKLM\\" : L"HKCU\\";
    return Redirected(core, PlaceOf(root + std::wstring(list_key) + product.installGuid));
}

// Of what the product has in place, in units of 1,024 bytes.
DWORD EstimatedSize(const InstallLog& log)
{
    uint64_t bytes = 0;
    for (const LogRecord* file : log.Standing(LogKind::file))
        bytes += file->size;
    return static_cast<DWORD>(std::min<uint64_t>((bytes + 1023) / 1024, UINT32_MAX));
}

std::wstring Today()
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    return Number(now.wYear * 10000 + now.wMonth * 100 + now.wDay);
}

bool AnythingElseStands(const Core& core, const std::wstring& entry)
{
    const auto& records = core.log->Records();
    return std::any_of(records.begin(), records.end(), [&](const LogRecord& record) {
        return IsForRemoval(record) && record.kind != LogKind::key && !SameText(record.what, entry) &&
               !core.log->Undone(record);
    });
}

} // namespace

bool HasProgramEntry(const Core& core)
{
    return core.entry.uninstall.empty() || ReadValue(EntryPlace(core), L"UninstallString").has_value();
}

void WantProgramEntry(const Core& core)
{
    const std::wstring entry = EntryPlace(core).Name();
    for (const LogRecord& record : core.log->Records())
        if (SameText(record.what, entry))
            core.log->Want(record.what, record.name);
}

void WriteProgramEntry(Core& core, const std::wstring& target)
{
    const RegistryPlace place = EntryPlace(core);
    if (!AnythingElseStands(core, place.Name())) {
        TakeBack(core, Why::last,
                 [name = place.Name()](const LogRecord& record) { return SameText(record.what, name); });
        return;
    }
    const Product& product = *core.product->product;
    const ProgramEntry& entry = core.entry;
    if (entry.uninstall.empty())
        return;
    const Recording to{core.log.get()};
    const auto text = [&](const wchar_t* name, const std::wstring& value) {
        if (!value.empty())
            WriteValue(to, place, name, TextValue(REG_SZ, value), {});
    };
    const auto number = [&](const wchar_t* name, DWORD value) { WriteValue(to, place, name, NumberValue(value), {}); };
    text(L"DisplayName", product.name);
    text(L"DisplayVersion", product.version);
    text(L"Publisher", product.company);
    text(L"InstallLocation", target);
    number(L"EstimatedSize", EstimatedSize(*core.log));
    if (core.kind != RunKind::modify && core.kind != RunKind::repair)
        text(L"InstallDate", Today());
    text(L"UninstallString", entry.uninstall);
    text(L"QuietUninstallString", entry.quietUninstall);
    text(L"ModifyPath", entry.modify);
    if (entry.modify.empty())
        number(L"NoModify", 1);
    // The system's own button for a repair knows another kind of setup.
    number(L"NoRepair", 1);
}

} // namespace vh::engine
