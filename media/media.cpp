#include "media.h"

CVHRTMedia::CVHRTMedia() : m_mediaName(L"<Data>") {}

int32_t CVHRTMedia::Fail(int32_t code, text error_text)
{
    m_errorText = error_text;
    m_lastError = code;
    return code;
}

int32_t CVHRTMedia::ListItems(text parent, std::vector<stringx>& items, int32_t& count, bool visible_only)
{
    int32_t children = 0;
    const int32_t counted = GetChildCount(parent, children, 0);
    count = 0;
    if (counted != 0)
        return counted;
    for (int32_t index = 1; index <= children; ++index) {
        stringx name;
        if (const int32_t failed = GetChild(parent, index, name))
            return failed;
        stringx path = vh::JoinItem(parent, name);
        bool visible = true;
        if (visible_only)
            if (const int32_t failed = IsVisible(path, visible))
                return failed;
        if (!visible)
            continue;
        items.push_back(std::move(path));
        ++count;
    }
    return 0;
}

int32_t CVHRTMedia::AddTreeChildren(vh::tree_fill& view, text item, vh::tree_item parent, int32_t depth)
{
    int32_t children = 0;
    if (const int32_t failed = GetChildCount(item, children, 0))
        return failed;
    for (int32_t index = 1; index <= children; ++index) {
        stringx name;
        if (const int32_t failed = GetChild(item, index, name))
            return failed;
        const stringx path = vh::JoinItem(item, name);
        bool visible = false;
        if (const int32_t failed = IsVisible(path, visible))
            return failed;
        if (!visible)
            continue;
        if (const int32_t failed = AddTreeItem(view, path, parent, depth))
            return failed;
    }
    if (parent)
        view.EnsureVisible(parent);
    return 0;
}

int32_t CVHRTMedia::AddTreeItem(vh::tree_fill& view, text item, vh::tree_item parent, int32_t depth)
{
    if (depth == 0)
        return 0;
    vh::tree_node node;
    node.name = item;
    stringx label;
    if (!item.empty()) {
        bool visible = false;
        if (const int32_t failed = IsVisible(item, visible))
            return failed;
        if (!visible)
            return 0;
        if (const int32_t failed = GetDisplayName(item, label))
            return failed;
        if (const int32_t failed = IsSelected(item, node.selected))
            return failed;
        if (const int32_t failed = IsPartlySelected(item, node.partly_selected))
            return failed;
        node.label = label;
    }
    if (const int32_t failed = GetChildCount(item, node.visible_children, 1))
        return failed;

    const vh::tree_item inserted = view.Insert(parent, node);
    if (inserted) {
        if (!item.empty()) {
            int32_t cookie = 0;
            Advise(item, view.Events(), inserted, cookie);
        }
        if (depth == 1 || node.visible_children == 0)
            return 0;
        --depth;
    }
    return AddTreeChildren(view, item, inserted, depth);
}

int32_t CVHRTMedia::AddItem(text, int32_t, bool) { return NotSupported(); }
int32_t CVHRTMedia::GetOrderBase() { return NotSupported(); }
int32_t CVHRTMedia::MoveData(int32_t, ObjectContext*) { return NotSupported(); }
int32_t CVHRTMedia::TransferData(ObjectContext*) { return NotSupported(); }
int32_t CVHRTMedia::RemoveAll() { return NotSupported(); }
int32_t CVHRTMedia::Reinstall() { return NotSupported(); }
int32_t CVHRTMedia::RemoveAllInLogOnly() { return NotSupported(); }
int32_t CVHRTMedia::Patch(bool) { return NotSupported(); }
int32_t CVHRTMedia::SelectNew(bool) { return NotSupported(); }
int32_t CVHRTMedia::CreateRegistrySet(text, ISetupLog*) { return NotSupported(); }
int32_t CVHRTMedia::CreateShellObjects(ISetupLog*) { return NotSupported(); }
int32_t CVHRTMedia::CheckValidateKey(text, text) { return NotSupported(); }
int32_t CVHRTMedia::FilterOS(int32_t, int32_t, bool) { return NotSupported(); }
int32_t CVHRTMedia::FilterLanguage(int32_t, bool) { return NotSupported(); }
int32_t CVHRTMedia::CompareSizeRequired(wchar_t*, int32_t*) { return NotSupported(); }
int32_t CVHRTMedia::SetupTypeGetData(text, int32_t, int32_t*, wchar_t*, int32_t) { return NotSupported(); }
int32_t CVHRTMedia::SetupTypeEnum(std::vector<stringx>&) { return NotSupported(); }
int32_t CVHRTMedia::SetupTypeSet(text) { return NotSupported(); }
int32_t CVHRTMedia::Update() { return NotSupported(); }
int32_t CVHRTMedia::NeedsValidate(text, bool&) { return NotSupported(); }
int32_t CVHRTMedia::FileEnumIn(text, text, bool, VARIANT*) { return NotSupported(); }
int32_t CVHRTMedia::FileEnum(text, VARIANT*) { return NotSupported(); }
int32_t CVHRTMedia::FileInfo(text, text, text, int32_t, VARIANT*) { return NotSupported(); }
int32_t CVHRTMedia::AddCost(text, text, int32_t, int32_t) { return NotSupported(); }
int32_t CVHRTMedia::AddUninstallCost(text, int32_t, int32_t) { return NotSupported(); }
int32_t CVHRTMedia::GetErrorObject(IUnknown**) { return -118; }
int32_t CVHRTMedia::GetFilteringInfo(int32_t, CVHList&) { return NotSupported(); }
int32_t CVHRTMedia::GetInfo(ObjectContext*, VHRTMediaInfo*) { return NotSupported(); }

namespace vh {

stringx JoinItem(std::wstring_view parent, std::wstring_view child)
{
    return parent.empty() ? stringx(child) : Concat(parent, L"\\", child);
}

item_split SplitItem(std::wstring_view path)
{
    const std::size_t slash = path.find(L'\\');
    if (slash == path.npos)
        return {path, {}};
    return {path.substr(0, slash), path.substr(slash + 1)};
}

std::wstring_view LastComponent(std::wstring_view path)
{
    const std::size_t slash = path.rfind(L'\\');
    return slash == path.npos ? path : path.substr(slash + 1);
}

stringx ExpandLineEnds(std::wstring_view text)
{
    stringx expanded;
    expanded.reserve(text.size());
    for (std::size_t found; (found = text.find(L"\\n")) != text.npos; text.remove_prefix(found + 2)) {
        expanded += text.substr(0, found);
        expanded += L"\r\n";
    }
    expanded += text;
    return expanded;
}

} // namespace vh
