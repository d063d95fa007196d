#include "other_products.h"

#include "../files.h"
#include "install_log.h"

namespace vh::engine {

const std::set<std::wstring>& OtherProducts::Places()
{
    if (m_places)
        return *m_places;
    m_places.emplace();
    const std::wstring own = FolderOf(m_logFile);
    for (const Entry& entry : ListFolder(FolderOf(own), L"{*}")) {
        const std::wstring file = JoinPath(JoinPath(FolderOf(own), entry.name), FileNameOf(m_logFile));
        if (SameText(entry.name, FileNameOf(own)) || !FactsOf(file).file())
            continue;
        try {
            const InstallLog log(file, LogAccess::look);
            for (const LogKind kind : {LogKind::file, LogKind::folder})
                for (const LogRecord* record : log.Standing(kind))
                    m_places->insert(Upper(record->what));
        } catch (const engine_error&) {
            // It can't be read now: nothing can be said of it.
        }
    }
    return *m_places;
}

bool OtherProducts::Have(LogKind kind, const std::wstring& path)
{
    return (kind == LogKind::file || kind == LogKind::folder) && Places().contains(Upper(path));
}

} // namespace vh::engine
