#include "target_check.h"

#include <algorithm>

#include "data_set.h"

namespace vh::engine {

namespace {

// A file with what says whom it is for.
struct Owner {
    const Item* item;
    const FileGroup* group;
    const ProductFile* file;
};
using Owners = std::unordered_multimap<std::wstring, Owner>;

// The narrowest list counts: of the file, the group, or the nearest item that has one.
std::vector<WORD> LanguagesOf(const Owner& owner)
{
    if (owner.file->language)
        return {owner.file->language};
    const std::vector<WORD>* languages = &owner.group->audience.languages;
    for (const Item* at = owner.item; at && languages->empty(); at = at->parent)
        languages = &at->audience.languages;
    return *languages;
}

uint64_t SystemsOf(const Owner& owner)
{
    uint64_t systems = owner.group->audience.systems;
    for (const Item* at = owner.item; at && !systems; at = at->parent)
        systems = at->audience.systems;
    return systems ? systems : ~uint64_t{0};
}

bool NeverMeet(const Owner& a, const Owner& b)
{
    const auto left = LanguagesOf(a);
    const auto right = LanguagesOf(b);
    const bool apart = !left.empty() && !right.empty() &&
                       std::find_first_of(left.begin(), left.end(), right.begin(), right.end()) == left.end();
    return apart || !(SystemsOf(a) & SystemsOf(b));
}

// The pattern that an item's files go below.
std::wstring TargetPattern(const Item& item)
{
    for (const Item* at = &item; at; at = at->parent)
        if (!at->target.empty()) {
            std::wstring pattern = at->target;
            std::replace(pattern.begin(), pattern.end(), L'/', L'\\');
            return pattern;
        }
    return L"<TARGETDIR>";
}

using FaultNews = std::function<void(const std::string&, const std::wstring&)>;

void CheckItem(const Item& item, const std::wstring& root, Owners& owners, const FaultNews& fault)
{
    for (const FileGroup& group : item.groups) {
        const std::wstring folder = JoinPath(root, group.target);
        for (const ProductFile& file : group.files) {
            const std::wstring target = JoinPath(folder, file.path);
            std::wstring key = Upper(target);
            const Owner owner{&item, &group, &file};
            const auto [first, last] = owners.equal_range(key);
            for (auto other = first; other != last; ++other) {
                const Owner& earlier = other->second;
                const bool shared = earlier.item != &item && SameText(earlier.file->source, file.source);
                if (shared || NeverMeet(earlier, owner))
                    continue;
                fault(group.place + "/files/" + std::to_string(file.entry),
                      file.source + L" has the target " + target + L", which is that of " + earlier.file->source);
                break;
            }
            owners.emplace(std::move(key), owner);
        }
    }
}

} // namespace

void CheckTargets(const Product& product, const FaultNews& fault)
{
    Owners features, support;
    ForEachItem(product.data, [&](const Item& item) { CheckItem(item, TargetPattern(item), features, fault); });
    for (const auto& group : product.support.children)
        CheckItem(*group, L"<SUPPORTDIR>", support, fault);
}

} // namespace vh::engine
