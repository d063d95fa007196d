#include "data_media.h"

#include <algorithm>

#include "../files/disk_space.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/results.h"
#include "walk.h"

namespace {

// The script's flag minus 1 in 16 bits, as the engine's filters take it.
constexpr VARIANT_BOOL Inverted(bool flag) { return static_cast<VARIANT_BOOL>(flag ? 0 : -1); }

// "<Data>\" in front of a path that does not start with a root item. False when that makes it too long.
bool RootPath(std::wstring_view item, stringx& path)
{
    constexpr std::size_t longest = 259;
    const bool whole = item.starts_with(L'<');
    path = whole ? stringx(item) : vh::Concat(L"<Data>\\", item);
    return whole || path.size() <= longest;
}

} // namespace

int32_t CVHDataMedia::GetCost(text item, text target, uint64_t& bytes)
{
    vh::drive_costs costs;
    if (const HRESULT code = GetDriveCosts(item, costs); FAILED(code))
        return vh::NoItemCode(code);
    const auto found = costs.find(vh::PathRoot(target));
    bytes = found == costs.end() ? 0 : found->second;
    return 0;
}

int32_t CVHDataMedia::CompareSizeRequired(wchar_t* drive, int32_t* size)
{
    vh::drive_costs costs;
    if (const HRESULT code = GetDriveCosts({}, costs); FAILED(code))
        return code;
    for (const auto& [root, bytes] : costs) {
        // Units of 1024 bytes, as far as 31 bits hold them.
        const auto space = vh::disk_space::query(root);
        const uint64_t free = space ? std::min<uint64_t>(space->available / 1024, INT32_MAX) : 0;
        if (bytes / 1024 > free) {
            vh::CopyOut(root, drive, MAX_PATH);
            *size = bytes > INT32_MAX ? INT32_MAX : static_cast<int32_t>(bytes);
            return Fail(vh::media_disk_full);
        }
        *size = 0;
    }
    return 0;
}

int32_t CVHDataMedia::CreateRegistrySet(text name, ISetupLog* log)
{
    return m_data ? m_data->CreateRegistrySet(vh::bstr(name).get(), log) : E_POINTER;
}

int32_t CVHDataMedia::CreateShellObjects(ISetupLog* log)
{
    return m_data ? m_data->CreateShellObjects(log) : E_POINTER;
}

int32_t CVHDataMedia::FilterLanguage(int32_t language, bool flag)
{
    return m_data ? vh::FailureOnly(m_data->FilterLanguage(language, Inverted(flag))) : E_POINTER;
}

int32_t CVHDataMedia::FilterOS(int32_t first, int32_t second, bool flag)
{
    vh::com_ptr<ISetupDataEx> data;
    const HRESULT code = m_data.query(data);
    return FAILED(code) ? code : vh::FailureOnly(data->FilterOS(first, second, Inverted(flag)));
}

HRESULT CVHDataMedia::GetRoot(vh::com_ptr<ISetupComponents>& root)
{
    if (!m_data)
        return E_POINTER;
    const HRESULT code = m_data->GetRoot(root.put());
    return vh::Given(code, root);
}

HRESULT CVHDataMedia::WalkRoot(ISetupComponents* root, text path, vh::com_ptr<ISetupComponent>& found)
{
    vh::com_ptr<ISetupComponents> collection(root);
    for (;;) {
        const vh::item_split split = vh::SplitItem(path);
        const HRESULT code = vh::ItemNamed(collection.get(), split.head, found);
        if (FAILED(code) || split.tail.empty())
            return code;
        vh::com_ptr<ISetupComponents> children;
        const HRESULT read = found->GetChildren(children.put());
        if (const HRESULT failed = vh::Given(read, children); FAILED(failed))
            return failed;
        collection = std::move(children);
        path = split.tail;
    }
}

HRESULT CVHDataMedia::WalkToOwnItem(text item, vh::com_ptr<ISetupComponent>& found)
{
    vh::com_ptr<ISetupComponents> root;
    if (const HRESULT code = GetRoot(root); FAILED(code))
        return code;
    stringx path;
    if (!RootPath(vh::Concat(m_mediaName, L"\\", item), path))
        return vh::media_no_item;
    return WalkRoot(root.get(), path, found);
}

HRESULT CVHDataMedia::WalkToCostItem(text item, vh::com_ptr<ISetupComponent>& found)
{
    vh::com_ptr<ISetupComponents> root;
    vh::ThrowIfFailed(GetRoot(root));
    stringx path;
    if (!RootPath(item, path) || FAILED(WalkRoot(root.get(), path, found)))
        return vh::media_no_item;
    return S_OK;
}

int32_t CVHDataMedia::Update()
{
    vh::com_ptr<ISetupComponents> root;
    vh::com_ptr<ISetupComponent> own;
    vh::com_ptr<ISetupComponents> children;
    HRESULT code = GetRoot(root);
    if (SUCCEEDED(code))
        code = vh::ItemNamed(root.get(), m_mediaName, own);
    if (SUCCEEDED(code))
        code = own->GetChildren(children.put());
    if (SUCCEEDED(code))
        code = vh::ForEachItem(children.get(), 1, [](ISetupComponent* child) {
            vh::bstr name;
            const HRESULT read = child->GetName(name.put());
            return FAILED(read) || name.view() == vh::first_disk ? read : child->Reinstall();
        });
    // Whatever call says that there is no such item.
    return vh::NoItemCode(code);
}

template <class Extension, class AtRoot, class OnItem>
int32_t CVHDataMedia::OnFiles(text item, AtRoot&& at_root, OnItem&& on_item)
{
    if (item.empty()) {
        const auto modes = m_data.query<ISetupDataModes>();
        return modes ? at_root(*modes.get()) : E_FAIL;
    }
    vh::com_ptr<ISetupComponent> found;
    if (const HRESULT code = WalkToOwnItem(item, found); FAILED(code))
        return code;
    const auto extension = found.query<Extension>();
    return extension ? on_item(*extension.get()) : E_UNEXPECTED;
}

int32_t CVHDataMedia::FileEnum(text item, VARIANT* names)
{
    return OnFiles<ISetupItemFiles>(
        item, [&](ISetupDataModes& root) { return root.GetRootFiles(names); },
        [&](ISetupItemFiles& files) { return files.GetFiles(names); });
}

int32_t CVHDataMedia::FileEnumIn(text item, text directory, bool flag, VARIANT* names)
{
    const vh::bstr in(directory);
    const VARIANT_BOOL truth = flag ? VARIANT_TRUE : VARIANT_FALSE;
    return OnFiles<ISetupItemFileQueries>(
        item, [&](ISetupDataModes& root) { return root.EnumRootFiles(in.get(), truth, names); },
        [&](ISetupItemFileQueries& files) { return files.EnumFiles(in.get(), truth, names); });
}

int32_t CVHDataMedia::FileInfo(text item, text group, text file, int32_t code, VARIANT* value)
{
    const vh::bstr in(group);
    const vh::bstr name(file);
    return OnFiles<ISetupItemFileQueries>(
        item, [&](ISetupDataModes& root) { return root.RootFileInfo(in.get(), name.get(), code, value); },
        [&](ISetupItemFileQueries& files) { return files.FileInfo(in.get(), name.get(), code, value); });
}

int32_t CVHDataMedia::AddCost(text item, text path, int32_t low, int32_t high)
{
    vh::com_ptr<ISetupComponent> found;
    if (const HRESULT code = WalkToCostItem(item, found); FAILED(code))
        return code;
    const auto files = found.query<ISetupItemFiles>();
    return files ? files->AddCost(low, high, vh::bstr(path).get()) : E_UNEXPECTED;
}

int32_t CVHDataMedia::AddUninstallCost(text item, int32_t low, int32_t high)
{
    vh::com_ptr<ISetupComponent> found;
    if (const HRESULT code = WalkToCostItem(item, found); FAILED(code))
        return code;
    const auto costs = found.query<ISetupItemUninstallCost>();
    return costs ? costs->AddUninstallCost(low, high) : E_UNEXPECTED;
}
