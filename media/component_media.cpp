// The media on components: support files, and data sets that a script opened.
#include "concrete_media.h"
#include "first_disk.h"
#include "status_block.h"

namespace {

// The children of the root item of that name; null when there is none.
vh::com_ptr<ISetupComponents> ChildrenOfRootItem(ISetupData* data, std::wstring_view name)
{
    vh::com_ptr<ISetupComponents> root;
    vh::com_ptr<ISetupComponent> item;
    vh::com_ptr<ISetupComponents> children;
    const vh::variant wanted(name);
    if (data && SUCCEEDED(data->GetRoot(root.put())) && root && SUCCEEDED(root->Item(wanted.get(), item.put())) && item)
        item->GetChildren(children.put());
    return children;
}

} // namespace

CVHSupportFilesMedia::CVHSupportFilesMedia(vh::com_ptr<ISetupData> data) : CVHFileMediaImpl(std::move(data))
{
    m_mediaName = L"<Support>";
    UseCollection(ChildrenOfRootItem(m_data.get(), m_mediaName));
}

CVHSecondaryFileMedia::CVHSecondaryFileMedia(text name, vh::com_ptr<ISetupData> data)
    : CVHFileMediaImpl(std::move(data))
{
    m_mediaName = name;
    UseCollection(ChildrenOfRootItem(m_data.get(), m_mediaName));
    ReadOrderBase();
}

int32_t CVHSecondaryFileMedia::Reinstall()
{
    if (!m_collection)
        return E_POINTER;
    long count = 0;
    if (const HRESULT code = m_collection->Count(&count); FAILED(code))
        return code;
    for (int32_t index = 1; index <= count; ++index) {
        vh::com_ptr<ISetupComponent> item;
        if (const HRESULT code = ItemAt(m_collection.get(), index, item); FAILED(code))
            return code;
        if (const HRESULT code = item->Reinstall(); FAILED(code))
            return code;
    }
    return 0;
}

int32_t CVHSecondaryFileMedia::MoveData(int32_t, ObjectContext* context)
{
    if (!context || !m_collection)
        return E_POINTER;
    Reinstall();
    long count = 0;
    if (const HRESULT code = m_collection->Count(&count); FAILED(code))
        return code;
    // Item 1 is "Disk<1>" and is never moved.
    if (count < 2)
        return 0;
    uint64_t bytes = 0;
    for (int32_t index = 2; index <= count; ++index) {
        vh::com_ptr<ISetupComponent> item;
        if (const HRESULT code = ItemAt(m_collection.get(), index, item); FAILED(code))
            return code;
        vh::com_ptr<ISetupCosts> costs;
        if (const HRESULT code = item->GetCosts(costs.put()); FAILED(code))
            return code;
        uint64_t own = 0;
        if (const HRESULT code = vh::ReadTotal(costs.get(), own); FAILED(code))
            return code;
        bytes += own;
    }
    vh::com_ptr<IUnknown> progress;
    if (const HRESULT code = vh::StatusOf(*context).BeginTransfer(bytes, progress); FAILED(code))
        return code;
    for (int32_t index = 2; index <= count; ++index) {
        vh::com_ptr<ISetupComponent> item;
        if (const HRESULT code = ItemAt(m_collection.get(), index, item); FAILED(code))
            return code;
        if (const HRESULT code = item->Move(progress.get()); FAILED(code))
            return code;
    }
    return 0;
}

int32_t CVHSecondaryFileMedia::GetErrorObject(IUnknown** error)
{
    return m_data ? m_data->GetErrorObject(error) : E_POINTER;
}

int32_t CVHSecondaryFileMedia::SelectAll(bool flag)
{
    if (!m_collection)
        return E_POINTER;
    const vh::first_disk_keeper<ISetupComponent, ISetupComponents> keeper(m_collection.get());
    long count = 0;
    if (const HRESULT code = m_collection->Count(&count); FAILED(code))
        return code;
    for (int32_t index = 1; index <= count; ++index) {
        vh::com_ptr<ISetupComponent> item;
        if (const HRESULT code = ItemAt(m_collection.get(), index, item); FAILED(code))
            return code;
        if (const HRESULT code = item->SetSelected(flag ? 2 : 0); FAILED(code))
            return code;
    }
    keeper.Restore();
    return 0;
}

int32_t CVHSecondaryFileMedia::GetDriveCosts(text item, vh::drive_costs& map)
{
    const auto merge = [&](ISetupComponent* of) -> HRESULT {
        vh::com_ptr<ISetupCosts> costs;
        const HRESULT code = of->GetCosts(costs.put());
        return FAILED(code) ? code : vh::MergeCosts(costs.get(), vh::merge::add, map);
    };
    if (!item.empty()) {
        vh::com_ptr<ISetupComponents> root;
        if (const HRESULT code = GetRoot(root); FAILED(code))
            return code;
        stringx path;
        vh::com_ptr<ISetupComponent> found;
        if (!RootPath(vh::Concat(m_mediaName, L"\\", item), path) || FAILED(WalkRoot(root.get(), path, found)))
            return vh::media_no_item;
        return merge(found.get());
    }
    if (!m_collection)
        return E_POINTER;
    long count = 0;
    if (const HRESULT code = m_collection->Count(&count); FAILED(code))
        return code;
    for (int32_t index = 1; index <= count; ++index) {
        vh::com_ptr<ISetupComponent> child;
        if (const HRESULT code = ItemAt(m_collection.get(), index, child); FAILED(code))
            return code;
        if (const HRESULT code = merge(child.get()); FAILED(code))
            return code;
    }
    return 0;
}
