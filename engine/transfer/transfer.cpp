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

// A file that is to be written, by what the product says of it.
struct PlannedFile {
    const Item* item;
    const FileGroup* group;
    const ProductFile* file;
};

struct Plan {
    std::vector<Item*> items;
    std::vector<PlannedFile> files;
    std::map<const Item*, std::wstring> roots;
    uint64_t total = 0; // bytes
};

// Full paths of targets below the folder of an item.
class Targets {
public:
    // Throws for one that lies elsewhere.
    std::wstring Of(const std::wstring& root, const FileGroup& group, const ProductFile& file)
    {
        // The last part is a plain name; files of one folder mostly come together.
        std::wstring folder = JoinPath(JoinPath(root, group.target), FolderOf(file.path));
        if (folder != m_folder) {
            m_full = FullPath(folder);
            if (!LiesIn(m_full, root))
                throw engine_error(E_INVALIDARG, m_full, L"lies outside of the target " + root);
            m_folder = std::move(folder);
        }
        return JoinPath(m_full, FileNameOf(file.path));
    }

private:
    std::wstring m_folder;
    std::wstring m_full;
};

FileToWrite ToWrite(const PlannedFile& planned, std::wstring target)
{
    const ProductFile& file = *planned.file;
    FileToWrite made;
    made.source = file.source;
    made.packed = file.packed;
    made.target = std::move(target);
    made.size = file.size;
    made.time = file.time;
    made.attributes = file.attributes;
    made.version = file.version;
    made.feature = planned.item->Path();
    made.flags = file.flags;
    return made;
}

// Everything that is to be written, its targets looked at before anything is touched.
Plan PlanItems(const Core& core, const DataSet& data, const std::vector<Item*>& items)
{
    Plan plan;
    Targets targets;
    for (Item* top : items)
        ForEachItem(*top, [&](Item& item) {
            if (item.pseudo || !item.selected || item.installed || !data.Admits(item))
                return;
            plan.items.push_back(&item);
            const std::wstring root = item.groups.empty() ? std::wstring() : TargetOf(core, item);
            data.EachFile(item, [&](const FileGroup& group, const ProductFile& file) {
                targets.Of(root, group, file);
                plan.files.push_back({&item, &group, &file});
                plan.total += file.size;
            });
            plan.roots[&item] = root;
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
    for (const PlannedFile& planned : plan.files)
        if (const PackedFile* packed = planned.file->packed)
            packed->of->Check(*packed);
}

void WriteFiles(Core& core, const Plan& plan, IEngineProgress& progress)
{
    Targets targets;
    auto next = plan.files.begin();
    WriteAllOrNothing(core,
                      [&](FileToWrite& file) {
                          if (next == plan.files.end())
                              return false;
                          file = ToWrite(*next, targets.Of(plan.roots.at(next->item), *next->group, *next->file));
                          ++next;
                          return true;
                      },
                      {[&](uint64_t bytes, const FileToWrite& file) { progress.Advance(bytes, file.target); }});
}

com_ptr<IEngineProgress> SinkFor(Core& core, const Plan& plan, IUnknown* given)
{
    auto sink = com_ptr<IUnknown>(given).query<IEngineProgress>();
    if (sink)
        return sink;
    sink.attach(new TransferSink(core.shared_from_this(), plan.total));
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
    Targets targets;
    for (Item* top : items)
        ForEachItem(*top, [&](const Item& item) {
            if (item.pseudo || !item.selected || item.groups.empty() || !data.Admits(item))
                return;
            const std::wstring root = TargetOf(core, item);
            data.EachFile(item, [&](const FileGroup& group, const ProductFile& file) {
                found.needed.insert(Upper(targets.Of(root, group, file)));
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
    if (leftovers.features.empty())
        return;
    TakeBack(core, Why::unselected, [&](const LogRecord& record) {
        return leftovers.features.contains(Upper(record.feature)) && !leftovers.needed.contains(Upper(record.what));
    });
}

} // namespace vh::engine
