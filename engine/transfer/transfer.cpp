#include "transfer.h"

#include <set>

#include "../maintenance.h"
#include "../product/costs.h"
#include "../product/pack.h"
#include "file_writer.h"
#include "take_away.h"
#include "transfer_sink.h"

namespace vh::engine {

namespace {

struct Plan {
    std::vector<Item*> items;
    std::vector<FileToWrite> files;
};

FileToWrite PlanFile(const Item& item, const std::wstring& root, const FileGroup& group, const ProductFile& file)
{
    const std::wstring target = FullPath(JoinPath(JoinPath(root, group.target), file.path));
    if (!LiesIn(target, root))
        throw engine_error(E_INVALIDARG, target, L"lies outside of the target " + root);
    FileToWrite planned;
    planned.source = file.source;
    planned.packed = file.packed;
    planned.target = target;
    planned.size = file.size;
    planned.time = file.time;
    planned.attributes = file.attributes;
    planned.version = file.version;
    planned.feature = item.Path();
    planned.flags = file.flags;
    return planned;
}

// Everything that is to be written, with full paths, before anything is touched.
Plan PlanItems(const Core& core, const DataSet& data, const std::vector<Item*>& items)
{
    Plan plan;
    for (Item* top : items)
        ForEachItem(*top, [&](Item& item) {
            if (item.pseudo || !item.selected || item.installed || !data.Admits(item))
                return;
            plan.items.push_back(&item);
            const std::wstring root = item.groups.empty() ? std::wstring() : TargetOf(core, item);
            data.EachFile(item, [&](const FileGroup& group, const ProductFile& file) {
                plan.files.push_back(PlanFile(item, root, group, file));
            });
        });
    return plan;
}

// Costs that scripts announced count too.
void CheckSpace(const Core& core, const DataSet& data, const std::vector<Item*>& items)
{
    DriveCosts costs;
    for (const Item* item : items)
        AddCosts(core, data, *item, CostOf::selected, costs);
    for (const auto& [drive, needed] : costs) {
        ULARGE_INTEGER free{};
        if (GetDiskFreeSpaceExW((drive + L'\\').c_str(), &free, nullptr, nullptr) && free.QuadPart < needed)
            throw engine_error(HRESULT_FROM_WIN32(ERROR_DISK_FULL), drive + L'\\',
                               L"not enough space: " + Number(static_cast<int64_t>(needed)) + L" bytes are needed, " +
                                   Number(static_cast<int64_t>(free.QuadPart)) + L" are free");
    }
}

// A damaged pack is found out before anything is touched.
void CheckPacked(const Plan& plan)
{
    for (const FileToWrite& file : plan.files)
        if (file.packed)
            file.packed->of->Check(*file.packed);
}

void WriteFiles(Core& core, const Plan& plan, IEngineProgress& progress)
{
    WriteAllOrNothing(core, plan.files,
                      {[&](uint64_t bytes, const FileToWrite& file) { progress.Advance(bytes, file.target); }});
}

com_ptr<IEngineProgress> SinkFor(Core& core, const Plan& plan, IUnknown* given)
{
    auto sink = com_ptr<IUnknown>(given).query<IEngineProgress>();
    if (sink)
        return sink;
    uint64_t total = 0;
    for (const FileToWrite& file : plan.files)
        total += file.size;
    sink.attach(new TransferSink(core.shared_from_this(), total));
    return sink;
}

// What unselected features may have left behind, and which files others need all the same.
struct Leftovers {
    std::set<std::wstring> features;
    std::set<std::wstring> needed;
};

Leftovers FindLeftovers(const Core& core, const DataSet& data, const std::vector<Item*>& items)
{
    Leftovers found;
    for (Item* top : items)
        ForEachItem(*top, [&](const Item& item) {
            if (!item.pseudo && !item.selected)
                found.features.insert(Upper(item.Path()));
        });
    if (found.features.empty())
        return found;
    for (Item* top : items)
        ForEachItem(*top, [&](const Item& item) {
            if (item.pseudo || !item.selected || item.groups.empty() || !data.Admits(item))
                return;
            const std::wstring root = TargetOf(core, item);
            data.EachFile(item, [&](const FileGroup& group, const ProductFile& file) {
                found.needed.insert(Upper(PlanFile(item, root, group, file).target));
            });
        });
    return found;
}

} // namespace

void Transfer(Core& core, DataSet& data, const std::vector<Item*>& items, IUnknown* progress)
{
    if (&data == core.product.get())
        CheckTargetStays(core);
    const auto plan = PlanItems(core, data, items);
    CheckSpace(core, data, items);
    CheckPacked(plan);
    const auto sink = SinkFor(core, plan, progress);
    try {
        WriteFiles(core, plan, *sink.get());
    } catch (const engine_error& error) {
        core.Note(error.message().file, L"what this transfer had installed was removed again");
        throw;
    }
    for (Item* item : plan.items)
        item->installed = true;
}

void TransferFeatures(Core& core, DataSet& data, IUnknown* progress)
{
    std::vector<Item*> items;
    for (const auto& child : data.product->data.children)
        items.push_back(child.get());
    Transfer(core, data, items, progress);
    core.moved |= &data == core.product.get();

    const Leftovers leftovers = FindLeftovers(core, data, items);
    TakeBack(core, Why::unselected, [&](const LogRecord& record) {
        return leftovers.features.contains(Upper(record.feature)) && !leftovers.needed.contains(Upper(record.what));
    });
}

} // namespace vh::engine
