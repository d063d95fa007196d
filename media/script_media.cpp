#include "script_media.h"

#include <algorithm>

#include "../scriptdata/results.h"

namespace {

int64_t SelectedBytesBelow(auto& tree)
{
    int64_t bytes = 0;
    tree.ForEachBelow([&](const auto& entry) { bytes += entry.data.selected ? entry.data.size : 0; });
    return bytes;
}

// For reading: an item without texts gets none.
const vh::ScriptTexts& TextsOf(const auto& tree) { return tree.data.texts(); }

} // namespace

template <class Use>
int32_t CVHScriptMedia::WithItem(text item, Use&& use)
{
    tree* entry = m_root.Find(item);
    if (!entry)
        return Fail(vh::media_no_item, item);
    use(*entry);
    return 0;
}

CVHScriptMedia::tree* CVHScriptMedia::FindParent(text parent) { return parent.empty() ? &m_root : m_root.Find(parent); }

int32_t CVHScriptMedia::GetDescription(text item, stringx& value)
{
    return WithItem(item, [&](tree& entry) { value = TextsOf(entry).description; });
}

int32_t CVHScriptMedia::GetDisplayName(text item, stringx& value)
{
    return WithItem(item, [&](tree& entry) {
        const stringx& own = TextsOf(entry).displayName;
        value = own.empty() ? entry.key() : own;
    });
}

int32_t CVHScriptMedia::GetMiscText(text item, stringx& value)
{
    return WithItem(item, [&](tree& entry) { value = TextsOf(entry).miscText; });
}

int32_t CVHScriptMedia::IsSelected(text item, bool& truth)
{
    return WithItem(item, [&](tree& entry) { truth = entry.data.selected; });
}

int32_t CVHScriptMedia::IsVisible(text item, bool& truth)
{
    return WithItem(item, [&](tree& entry) { truth = entry.data.visible; });
}

int32_t CVHScriptMedia::GetDisplayOrder(text item, int32_t& order)
{
    return WithItem(item, [&](tree& entry) { order = entry.data.displayOrder; });
}

int32_t CVHScriptMedia::Advise(text item, ISetupBasicFeatureStateEvents* view, int64_t view_item, int32_t& cookie)
{
    cookie = 0;
    return WithItem(item, [&](tree& entry) {
        entry.data.sink.reset(view);
        entry.data.treeItem = view_item;
    });
}

int32_t CVHScriptMedia::Unadvise(text item, int32_t)
{
    return WithItem(item, [&](tree& entry) {
        entry.data.sink.reset();
        entry.data.treeItem = 0;
    });
}

int32_t CVHScriptMedia::GetChildCount(text parent, int32_t& count, int32_t mode)
{
    tree* entry = FindParent(parent);
    if (!entry)
        return Fail(vh::media_no_item, parent);
    count = 0;
    for (std::size_t position = 0; position < entry->size(); ++position)
        count += mode != 1 || entry->at(position).data.visible ? 1 : 0;
    return 0;
}

int32_t CVHScriptMedia::GetChild(text parent, int32_t index, stringx& name)
{
    tree* entry = FindParent(parent);
    if (!entry || index < 1 || static_cast<std::size_t>(index) > entry->size())
        return Fail(vh::media_no_item, parent);
    name = entry->at(static_cast<std::size_t>(index) - 1).key();
    return 0;
}

int32_t CVHScriptMedia::GetItemSize(text item, int32_t& size)
{
    return WithItem(item,
                    [&](tree& entry) { size = static_cast<int32_t>(std::min<int64_t>(entry.data.size, INT32_MAX)); });
}

int32_t CVHScriptMedia::SetItemSize(text item, int32_t size)
{
    return WithItem(item, [&](tree& entry) { entry.data.size = size; });
}

int32_t CVHScriptMedia::GetTotalSize(text item, bool whole_tree, bool, int64_t& size, int32_t)
{
    if (item.empty()) {
        size = SelectedBytesBelow(m_root);
        return 0;
    }
    return WithItem(item, [&](tree& entry) {
        if (!whole_tree)
            size = entry.data.size;
        else
            size = (entry.data.selected ? entry.data.size : 0) + SelectedBytesBelow(entry);
    });
}

int32_t CVHScriptMedia::GetCost(text item, text, uint64_t& bytes)
{
    int64_t size = 0;
    const int32_t result = GetTotalSize(item, true, true, size, 0);
    if (result == 0)
        bytes = static_cast<uint64_t>(size);
    return result;
}

int32_t CVHScriptMedia::GetData(text item, int32_t code, int32_t* number, wchar_t* buffer, int32_t length)
{
    const auto field = [&](stringx vh::ScriptTexts::*which, bool lines) {
        int32_t copied = 0;
        const int32_t found = WithItem(item, [&](tree& entry) {
            const stringx& value = TextsOf(entry).*which;
            copied = lines ? vh::CopyOutLines(value, buffer, length) : vh::CopyOut(value, buffer, length);
        });
        return found == 0 ? copied : found;
    };

    switch (code) {
    case vh::attribute_description:
        return field(&vh::ScriptTexts::description, true);
    case vh::attribute_misc_text:
        return field(&vh::ScriptTexts::miscText, true);
    case vh::attribute_text17:
        return field(&vh::ScriptTexts::text17, false);
    case vh::attribute_text18:
        return field(&vh::ScriptTexts::text18, false);
    case vh::attribute_display_name: {
        stringx value;
        const int32_t found = GetDisplayName(item, value);
        return found == 0 ? vh::CopyOutLines(value, buffer, length) : found;
    }
    case vh::attribute_visible:
        return WithItem(item, [&](tree& entry) { *number = entry.data.visible; });
    case vh::attribute_selected:
        return WithItem(item, [&](tree& entry) { *number = entry.data.selected; });
    case vh::attribute_display_order:
        return GetDisplayOrder(item, *number);
    case vh::attribute_size: {
        // Bytes: the shift of the total has no effect here.
        int64_t size = 0;
        const int32_t found = GetTotalSize(item, true, true, size, 10);
        if (found == 0)
            *number = static_cast<int32_t>(std::min<int64_t>(size, INT32_MAX));
        return found;
    }
    case vh::attribute_long_text:
    case vh::attribute_status:
    case vh::attribute_needs_validation:
    case vh::attribute_text16:
        return Fail(vh::media_not_in_script_media);
    default:
        return Fail(vh::media_bad_attribute);
    }
}

int32_t CVHScriptMedia::SetData(text item, int32_t code, int32_t number, text value, ObjectContext* context)
{
    const auto field = [&](stringx vh::ScriptTexts::*which) {
        return WithItem(item, [&](tree& entry) { entry.data.texts().*which = value; });
    };

    switch (code) {
    case vh::attribute_description:
        return field(&vh::ScriptTexts::description);
    case vh::attribute_misc_text:
        return field(&vh::ScriptTexts::miscText);
    case vh::attribute_display_name:
        return field(&vh::ScriptTexts::displayName);
    case vh::attribute_text17:
        return field(&vh::ScriptTexts::text17);
    case vh::attribute_text18:
        return field(&vh::ScriptTexts::text18);
    case vh::attribute_visible:
        return WithItem(item, [&](tree& entry) { entry.data.visible = number == 1; });
    case vh::attribute_selected:
        return SelectItem(item, number != 0, context);
    case vh::attribute_size:
        return SetItemSize(item, number);
    case vh::attribute_display_order:
        return WithItem(item, [&](tree& entry) { entry.data.displayOrder = number; });
    case vh::attribute_long_text:
    case vh::attribute_text16:
        return Fail(vh::media_not_in_script_media);
    case vh::attribute_needs_validation:
        return Fail(vh::media_read_only_attribute);
    default:
        return Fail(vh::media_bad_attribute);
    }
}

void CVHScriptMedia::SetSelected(tree& entry, bool selected)
{
    if (entry.data.selected == selected)
        return;
    entry.data.selected = selected;
    entry.parent()->data.selectedChildren += selected ? 1 : -1;
}

void CVHScriptMedia::Apply(tree& entry, bool selected)
{
    if (entry.data.selected == selected)
        return;
    SetSelected(entry, selected);
    if (entry.data.sink)
        entry.data.sink->OnStateChanged(entry.data.treeItem, selected ? 2 : 0, 0);
}

// Only the top-level ancestor of a path follows its direct children; levels between keep their state.
void CVHScriptMedia::AdjustTopAncestor(text path, bool selected)
{
    const vh::item_split split = vh::SplitItem(path);
    tree* top = split.tail.empty() ? nullptr : m_root.Find(split.head);
    if (!top)
        return;
    if ((top->data.selectedChildren > 0) == selected)
        Apply(*top, selected);
}

int32_t CVHScriptMedia::SelectItem(text item, bool truth, ObjectContext*)
{
    return WithItem(item, [&](tree& entry) {
        Apply(entry, truth);
        entry.ForEachBelow([&](tree& below) { Apply(below, truth); });
        AdjustTopAncestor(item, truth);
    });
}

int32_t CVHScriptMedia::AddItem(text path, int32_t size, bool selected)
{
    if (path.empty())
        return Fail(vh::media_empty_name, path);
    if (m_root.Find(path))
        return Fail(vh::media_item_exists, path);
    tree& entry = m_root.Create(path);
    entry.data.size = size;
    SetSelected(entry, selected);
    AdjustTopAncestor(path, selected);
    return 0;
}
