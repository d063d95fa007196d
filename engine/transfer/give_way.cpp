#include "give_way.h"

#include <algorithm>

#include "take_away.h"
#include "undo_step.h"

namespace vh::engine {

namespace {

const LogRecord* FileThatGoes(Core& core, const std::wstring& path)
{
    const LogRecord* record = core.log->Newest(LogKind::file, path);
    return record && !ReasonToKeep(*record, FactsOf(path)) && !core.log->OthersHave(*record) ? record : nullptr;
}

const LogRecord* FolderThatGoes(Core& core, const std::wstring& path)
{
    const LogRecord* record = core.log->Newest(LogKind::folder, path);
    return record && !core.log->OthersHave(*record) ? record : nullptr;
}

struct Thing {
    std::wstring path;
    long record;
};

// The folder with all that is in it, contents before what holds them; empty when something must stay.
std::vector<Thing> TreeThatGoes(Core& core, const std::wstring& top)
{
    std::vector<Thing> tree;
    std::vector<std::wstring> waiting{top};
    while (!waiting.empty()) {
        const std::wstring folder = std::move(waiting.back());
        waiting.pop_back();
        const LogRecord* own = FolderThatGoes(core, folder);
        if (!own || (FactsOf(folder).attributes & FILE_ATTRIBUTE_REPARSE_POINT))
            return {};
        tree.push_back({folder, own->id});
        for (const Entry& entry : ReadFolder(folder)) {
            const std::wstring path = JoinPath(folder, entry.name);
            if (entry.facts.folder())
                waiting.push_back(path);
            else if (const LogRecord* file = FileThatGoes(core, path))
                tree.push_back({path, file->id});
            else
                return {};
        }
    }
    std::reverse(tree.begin(), tree.end());
    return tree;
}

} // namespace

void WayGiver::GiveWayTo(const FileToWrite& file)
{
    if (file.loose || !m_core.IsOtherVersion())
        return;
    std::vector<Thing> going;
    if (m_core.log->Newest(LogKind::folder, file.target) && FactsOf(file.target).folder())
        going = TreeThatGoes(m_core, file.target);
    for (std::wstring at = FolderOf(file.target); m_met.insert(at).second; at = FolderOf(at))
        if (const LogRecord* record = FileThatGoes(m_core, at))
            going.push_back({at, record->id});
    for (const Thing& thing : going)
        TakeAway(m_core, thing.path, thing.record, Why::dropped);
}

} // namespace vh::engine
