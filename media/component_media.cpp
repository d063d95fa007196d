// The media on components: support files, and data sets that a script opened.
#include "concrete_media.h"
#include "first_disk.h"
#include "status_block.h"
#include "walk.h"

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
    return vh::ForEachItem(m_collection.get(), 1, [](ISetupComponent* item) { return item->Reinstall(); });
}

int32_t CVHSecondaryFileMedia::MoveData(int32_t, ObjectContext* context)
{
    if (!context || !m_collection)
        return E_POINTER;
    Reinstall();
    // Item 1 is "Disk<1>" and is never moved.
    constexpr long first_moved = 2;
    long count = 0;
    if (const HRESULT code = m_collection->Count(&count); FAILED(code) || count < first_moved)
        return FAILED(code) ? code : 0;

    uint64_t bytes = 0;
    const HRESULT summed = vh::ForEachItem(m_collection.get(), first_moved, count, [&](ISetupComponent* item) {
        vh::com_ptr<ISetupCosts> costs;
        uint64_t own = 0;
        HRESULT code = item->GetCosts(costs.put());
        if (SUCCEEDED(code))
            code = vh::ReadTotal(costs.get(), own);
        bytes += own;
        return code;
    });
    if (FAILED(summed))
        return summed;
    vh::com_ptr<IUnknown> progress;
    if (const HRESULT code = vh::BeginTransfer(*context, bytes, progress); FAILED(code))
        return code;
    return vh::ForEachItem(m_collection.get(), first_moved, count,
                           [&](ISetupComponent* item) { return item->Move(progress.get()); });
}

int32_t CVHSecondaryFileMedia::GetErrorObject(IUnknown** error)
{
    return m_data ? m_data->GetErrorObject(error) : E_POINTER;
}

int32_t CVHSecondaryFileMedia::SelectAll(bool flag)
{
    const vh::first_disk_keeper<ISetupComponent, ISetupComponents> keeper(m_collection.get());
    const HRESULT code =
        vh::ForEachItem(m_collection.get(), 1, [&](ISetupComponent* item) { return item->SetSelected(flag ? 2 : 0); });
    if (FAILED(code))
        return code;
    keeper.Restore();
    return 0;
}

int32_t CVHSecondaryFileMedia::GetDriveCosts(text item, vh::drive_costs& map)
{
    const auto add = [&](ISetupComponent* of) -> HRESULT {
        vh::com_ptr<ISetupCosts> costs;
        const HRESULT code = of->GetCosts(costs.put());
        return FAILED(code) ? code : vh::MergeCosts(costs.get(), vh::merge::add, map);
    };
    if (item.empty())
        return vh::ForEachItem(m_collection.get(), 1, add);
    vh::com_ptr<ISetupComponent> found;
    const HRESULT code = WalkToOwnItem(item, found);
    return FAILED(code) ? code : add(found.get());
}
