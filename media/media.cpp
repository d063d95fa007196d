#include "media.h"

#include <utility>

#include "../scriptdata/results.h"

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

// One open level of a tree fill: the item whose children are being added.
struct CVHRTMedia::tree_level {
    vh::tree_item parent;
    int32_t depth;
    int32_t children;
    int32_t index = 0;
    // How much of the path names the item.
    std::size_t length;
};

int32_t CVHRTMedia::AddTreeChildren(vh::tree_fill& view, text item, vh::tree_item parent, int32_t depth)
{
    stringx path(item);
    std::vector<tree_level> open;
    int32_t failed = OpenTreeLevel(open, path, parent, depth);
    while (!failed && !open.empty()) {
        tree_level& level = open.back();
        path.resize(level.length);
        if (level.index == level.children) {
            if (level.parent)
                view.EnsureVisible(level.parent);
            open.pop_back();
            continue;
        }
        stringx name;
        if ((failed = GetChild(path, ++level.index, name)))
            break;
        if (!path.empty())
            path += L'\\';
        path += name;
        bool visible = false;
        if ((failed = IsVisible(path, visible)))
            break;
        vh::tree_item below = level.parent;
        int32_t depth_below = level.depth;
        if (visible && !(failed = AddTreeNode(view, path, below, depth_below)) && depth_below)
            failed = OpenTreeLevel(open, path, below, depth_below);
    }
    return failed;
}

int32_t CVHRTMedia::AddTreeItem(vh::tree_fill& view, text item, vh::tree_item parent, int32_t depth)
{
    if (const int32_t failed = AddTreeNode(view, item, parent, depth))
        return failed;
    return depth ? AddTreeChildren(view, item, parent, depth) : 0;
}

int32_t CVHRTMedia::OpenTreeLevel(std::vector<tree_level>& open, text path, vh::tree_item parent, int32_t depth)
{
    int32_t children = 0;
    const int32_t failed = GetChildCount(path, children, 0);
    if (!failed)
        open.push_back({.parent = parent, .depth = depth, .children = children, .length = path.size()});
    return failed;
}

int32_t CVHRTMedia::AddTreeNode(vh::tree_fill& view, text item, vh::tree_item& tree, int32_t& depth)
{
    const int32_t levels = std::exchange(depth, 0);
    if (levels == 0)
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

    tree = view.Insert(tree, node);
    depth = levels;
    if (!tree)
        return 0;
    if (!item.empty()) {
        int32_t cookie = 0;
        if (Advise(item, view.Events(), tree, cookie) >= 0)
            view.KeepCookie(tree, cookie);
    }
    // A negative depth has no end.
    depth = node.visible_children == 0 ? 0 : levels > 0 ? levels - 1 : levels;
    return 0;
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

int32_t CopyOutLines(std::wstring_view text, wchar_t* buffer, int32_t size)
{
    const int32_t result = CopyOut(text, buffer, size);
    if (result == 0)
        for (std::size_t at = 0; (at = text.find(L"\\n", at)) != text.npos; at += 2) {
            buffer[at] = L'\r';
            buffer[at + 1] = L'\n';
        }
    return result;
}

} // namespace vh
