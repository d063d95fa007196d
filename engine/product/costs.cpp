#include "costs.h"

namespace vh::engine {

namespace {

unsigned long Low(uint64_t bytes) { return static_cast<unsigned long>(bytes & 0xFFFFFFFF); }
unsigned long High(uint64_t bytes) { return static_cast<unsigned long>(bytes >> 32); }

} // namespace

std::wstring TargetOf(const Core& core, const Item& item)
{
    std::wstring pattern = L"<TARGETDIR>";
    for (const Item* at = &item; at; at = at->parent)
        if (!at->target.empty()) {
            pattern = at->target;
            break;
        }
    const std::wstring folder = core.Substitute(pattern);
    const bool relative = DriveOf(folder).empty();
    if (relative || folder.find_first_of(L"<>|\"*?") != std::wstring::npos)
        throw engine_error(E_INVALIDARG, folder,
                           L"the target of \"" + item.Path() + L"\" (" + pattern + L") " +
                               (relative ? L"is no absolute path"
                                         : L"holds an unknown variable or a character that names can't have"));
    return FullPath(folder);
}

void AddCosts(const Core& core, const DataSet& data, const Item& item, CostOf what, DriveCosts& costs)
{
    if (item.pseudo || !data.Admits(item.audience))
        return;
    const bool counts = what == CostOf::wanted || (item.selected && !item.installed);
    if (counts) {
        if (const uint64_t own = data.Size(item, false))
            costs[DriveOf(TargetOf(core, item))] += own;
        for (const ExtraCost& extra : item.costs) {
            const std::wstring drive = DriveOf(core.Substitute(extra.path));
            costs[drive.empty() ? DriveOf(TargetOf(core, item)) : drive] += extra.bytes;
        }
    }
    for (const auto& child : item.children)
        if (what == CostOf::selected || !item.selected || child->selected)
            AddCosts(core, data, *child, what, costs);
}

uint64_t CostsObject::Total() const
{
    uint64_t total = 0;
    for (const auto& [drive, bytes] : m_costs)
        total += bytes;
    return total;
}

uint64_t CostsObject::On(BSTR drive) const
{
    const auto found = m_costs.find(Upper(DriveOf(TextOf(drive))));
    return found == m_costs.end() ? 0 : found->second;
}

HRESULT CostsObject::GetTotalLow(unsigned long* low)
{
    return Call("ISetupCosts.GetTotalLow")([&] { return Give(low, Low(Total())); });
}

HRESULT CostsObject::GetTotalHigh(unsigned long* high)
{
    return Call("ISetupCosts.GetTotalHigh")([&] { return Give(high, High(Total())); });
}

HRESULT CostsObject::GetDrives(VARIANT* drives)
{
    return Call("ISetupCosts.GetDrives")([&] {
        std::vector<std::wstring> names;
        for (const auto& [drive, bytes] : m_costs)
            names.push_back(drive);
        return GiveTexts(drives, names);
    });
}

HRESULT CostsObject::GetDriveLow(BSTR drive, unsigned long* low)
{
    return Call("ISetupCosts.GetDriveLow", drive)([&] { return Give(low, Low(On(drive))); });
}

HRESULT CostsObject::GetDriveHigh(BSTR drive, unsigned long* high)
{
    return Call("ISetupCosts.GetDriveHigh", drive)([&] { return Give(high, High(On(drive))); });
}

} // namespace vh::engine
