// Twins of media exports: a map by path in front of the engine's features, and a plain tree of items.
#include "context.h"

#include "../../scriptdata/bstr.h"

namespace {

std::pair<std::wstring, std::wstring_view> Split(std::wstring_view path)
{
    const std::size_t slash = path.find(L'\\');
    if (slash == path.npos)
        return {std::wstring(path), {}};
    return {std::wstring(path.substr(0, slash)), path.substr(slash + 1)};
}

int64_t SelectedBytes(const twin::item& item)
{
    int64_t bytes = item.selected ? item.size : 0;
    for (const auto& [name, child] : item.children)
        bytes += SelectedBytes(*child);
    return bytes;
}

} // namespace

int32_t _ComponentIsItemSelected(ObjectContext* context, const wchar_t* media, const wchar_t* item)
{
    if (!context)
        return -1;
    const auto found = context->media.find(media);
    if (found == context->media.end())
        return -118;
    const auto feature = found->second.features.find(item);
    if (feature == found->second.features.end())
        return -105;
    short selected = 0;
    feature->second->GetSelected(&selected);
    return selected != 0;
}

// Existing items stay as they are.
int32_t _ComponentAddItem(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t size,
                          int32_t selected)
{
    if (!context)
        return -1;
    twin::item* at = &context->media[media].root;
    for (std::wstring_view rest = item; !rest.empty();) {
        auto [head, tail] = Split(rest);
        auto& child = at->children[head];
        if (!child) {
            child = std::make_unique<twin::item>();
            child->name = std::move(head);
        }
        at = child.get();
        rest = tail;
    }
    at->size = size;
    at->selected = selected != 0;
    return 0;
}

int32_t _ComponentTotalSize(ObjectContext* context, const wchar_t* media, const wchar_t*, int32_t, int32_t, int32_t)
{
    return static_cast<int32_t>(SelectedBytes(context->media[media].root));
}
