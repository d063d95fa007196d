#include "data_set.h"

#include <algorithm>

namespace vh::engine {

void DataSet::FilterFor(WORD language, uint64_t systems)
{
    const auto take = [&](const std::vector<WORD>& languages) {
        languagesOut.insert(languages.begin(), languages.end());
    };
    take(product->languages);
    ForEachItem(product->data, [&](const Item& item) {
        take(item.audience.languages);
        for (const FileGroup& group : item.groups) {
            take(group.audience.languages);
            for (const ProductFile& file : group.files)
                if (file.language)
                    languagesOut.insert(file.language);
        }
    });
    languagesOut.erase(language);
    for (const SystemName& system : system_names)
        if (!(system.bit & systems))
            systemsOut |= system.bit;
}

bool DataSet::Admits(const Audience& audience) const
{
    const bool language =
        audience.languages.empty() || std::any_of(audience.languages.begin(), audience.languages.end(),
                                                  [&](WORD number) { return !languagesOut.contains(number); });
    return language && (!audience.systems || (audience.systems & ~systemsOut));
}

bool DataSet::Admits(const Item& item) const
{
    for (const Item* at = &item; at; at = at->parent)
        if (!Admits(at->audience))
            return false;
    return true;
}

void DataSet::EachFile(const Item& item, const std::function<void(const FileGroup&, const ProductFile&)>& visit) const
{
    for (const FileGroup& group : item.groups)
        if (Admits(group.audience))
            for (const ProductFile& file : group.files)
                if (!file.language || !languagesOut.contains(file.language))
                    visit(group, file);
}

uint64_t DataSet::Size(const Item& item, bool wholeTree) const
{
    if (!Admits(item.audience))
        return 0;
    uint64_t size = 0;
    EachFile(item, [&](const FileGroup&, const ProductFile& file) { size += file.size; });
    if (wholeTree)
        for (const auto& child : item.children)
            size += Size(*child, true);
    return size;
}

} // namespace vh::engine
