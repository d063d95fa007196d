#include "view_items.h"

#include "../media/first_disk.h"
#include "../media/media_error.h"

namespace vh {

int32_t ViewItems::Fetch()
{
    constexpr int32_t no_media = -132;
    m_items.clear();
    if (media_name.empty())
        return no_media;
    int32_t count = 0;
    CVHRTMedia& shown = media();
    // The media may lead back here.
    std::vector<stringx> items;
    const stringx parent(parent_item);
    const int32_t failed = shown.ListItems(parent.view(), items, count, true);
    if (parent.empty() && shown.IsScriptMedia() == 0)
        std::erase_if(items, [](const stringx& name) { return name.view() == first_disk; });
    if (items.size() > most_items)
        items.resize(most_items);
    m_items = std::move(items);
    return failed;
}

void ViewItems::End()
{
    m_items.clear();
    media_name.clear();
}

CVHRTMedia& ViewItems::media() const
{
    return media_name.empty() ? CVHRTMediaError::ErrorMedia() : m_scene.media.Find(media_name.view());
}

stringx ViewItems::item(int32_t index) const
{
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)] : stringx();
}

bool ViewItems::IsSelected(int32_t index) const
{
    bool selected = false;
    return media().IsSelected(item(index).view(), selected) >= 0 && selected;
}

// What selects itself in part is not for the user to change.
bool ViewItems::IsDisabled(int32_t index) const
{
    bool locked = false;
    return media().IsPartlySelected(item(index).view(), locked) >= 0 && locked;
}

bool ViewItems::HasChildren(int32_t index) const
{
    int32_t children = 0;
    return index >= 0 && index < count() && media().GetChildCount(item(index).view(), children, 1) == 0 && children > 0;
}

stringx ViewItems::Description(int32_t index) const
{
    wchar_t text[4096] = L"";
    int32_t number = 0;
    if (index < 0 || index >= count() ||
        media().GetData(item(index).view(), attribute_description, &number, text,
                        static_cast<int32_t>(std::size(text))))
        return {};
    return text;
}

ViewRow ViewItems::Row(int32_t index, size_format format, bool pictures_usable) const
{
    CVHRTMedia& shown = media();
    const stringx kept = item(index);
    const std::wstring_view path = kept.view();
    ViewRow row;
    row.index = index;
    if (shown.GetDisplayName(path, row.name) < 0)
        row.name.clear();
    if (row.name.size() > longest_name)
        row.name.resize(longest_name);
    uint64_t bytes = 0;
    shown.GetCost(path, target.view(), bytes);
    row.size = size_text(bytes, format).view();
    row.selected = shown.IsSelected(path, row.selected) >= 0 && row.selected;
    row.disabled = shown.IsPartlySelected(path, row.disabled) >= 0 && row.disabled;
    row.image = index;
    if (int32_t image = 0; pictures_usable && shown.GetData(path, attribute_display_order, &image, nullptr, 0) == 0)
        row.image = image;
    return row;
}

uint64_t ViewItems::TotalSize() const
{
    uint64_t bytes = 0;
    return media_name.empty() || media().GetCost({}, target.view(), bytes) < 0 ? 0 : bytes;
}

void ViewItems::Select(int32_t index, bool selected) const
{
    media().SelectItem(item(index).view(), selected, m_scene.context);
}

void ViewItems::SelectAll(bool selected) const
{
    for (int32_t index = 0; index < count(); ++index)
        Select(index, selected);
}

void ViewItems::KeepOneSelected() const
{
    bool found = false;
    for (int32_t index = 0; index < count(); ++index) {
        if (!IsSelected(index))
            continue;
        if (found)
            Select(index, false);
        found = true;
    }
    if (!found && count() > 0)
        Select(0, true);
}

} // namespace vh
