#include "file_media.h"

#include <cwchar>

#include "../files/disk_space.h"
#include "../scriptdata/path_text.h"
#include "../scriptdata/results.h"
#include "walk.h"

namespace {

constexpr VARIANT_BOOL Truth(bool truth) { return truth ? VARIANT_TRUE : VARIANT_FALSE; }
// The status of an item whose engine says nothing else.
constexpr long default_status = 4;
// The script's flag minus 1 in 16 bits, as the engine's filters take it.
constexpr VARIANT_BOOL Inverted(bool flag) { return static_cast<VARIANT_BOOL>(flag ? 0 : -1); }

} // namespace

#define MEDIA_TEMPLATE template <class Item, class Items>
#define MEDIA CVHFileMediaImpl<Item, Items>

MEDIA_TEMPLATE
void MEDIA::UseCollection(vh::com_ptr<Items> collection)
{
    m_collection = std::move(collection);
    m_cache = Cache<Item, Items>(m_collection);
}

MEDIA_TEMPLATE
HRESULT MEDIA::FindChildren(text parent, Items*& found)
{
    if (parent.empty()) {
        found = m_collection.get();
        return found ? S_OK : E_POINTER;
    }
    // An engine may give no collection for an item without children.
    Node* node = nullptr;
    if (const HRESULT code = m_cache.Find(parent, node); FAILED(code))
        return Fail(code, parent);
    found = node->children.get();
    return S_OK;
}

MEDIA_TEMPLATE
template <class Use>
int32_t MEDIA::WithItem(text item, Use&& use)
{
    Node* node = nullptr;
    const HRESULT code = m_cache.Find(item, node);
    return FAILED(code) ? Fail(code, item) : use(*node->item.get());
}

MEDIA_TEMPLATE
int32_t MEDIA::ReadText(text item, Method<BSTR*> getter, stringx& value)
{
    return WithItem(item, [&](Item& found) -> int32_t {
        vh::bstr read;
        const HRESULT code = (found.*getter)(read.put());
        if (FAILED(code))
            return code;
        value = read.view();
        return 0;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::WriteText(text item, Method<BSTR> setter, text value)
{
    return WithItem(item, [&](Item& found) { return (found.*setter)(vh::bstr(value).get()); });
}

MEDIA_TEMPLATE
int32_t MEDIA::ReadTruth(text item, Method<VARIANT_BOOL*> getter, bool& truth)
{
    return WithItem(item, [&](Item& found) -> int32_t {
        VARIANT_BOOL read = Truth(truth);
        const HRESULT code = (found.*getter)(&read);
        if (FAILED(code))
            return code;
        truth = read != 0;
        return 0;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::ReadNumber(text item, Method<long*> getter, long otherwise, int32_t& number)
{
    return WithItem(item, [&](Item& found) {
        long read = otherwise;
        const HRESULT code = (found.*getter)(&read);
        number = read;
        return code;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::ReadExtraText(text item, ExtraText getter, stringx& value)
{
    return WithItem(item, [&](Item& found) -> int32_t {
        vh::com_ptr<ISetupItemTexts> texts;
        if (const HRESULT code = found.QueryInterface(ISetupItemTexts::iid, texts.put_void()); FAILED(code))
            return code;
        vh::bstr read;
        const HRESULT code = (texts.get()->*getter)(read.put());
        if (FAILED(code))
            return code;
        value = read.view();
        return 0;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::GetData(text item, int32_t code, int32_t* number, wchar_t* buffer, int32_t length)
{
    stringx value;
    bool truth = false;
    const auto as_text = [&](int32_t read) { return read < 0 ? read : vh::CopyOut(value, buffer, length); };
    const auto as_lines = [&](int32_t read) {
        return read < 0 ? read : vh::CopyOut(vh::ExpandLineEnds(value), buffer, length);
    };
    const auto as_truth = [&](int32_t read) {
        if (read >= 0)
            *number = truth;
        return read < 0 ? read : 0;
    };

    switch (code) {
    case vh::attribute_description:
        return as_lines(GetDescription(item, value));
    case vh::attribute_long_text:
        return as_lines(ReadText(item, &Item::GetLongText, value));
    case vh::attribute_visible:
        return as_truth(IsVisible(item, truth));
    case vh::attribute_needs_validation:
        return as_truth(NeedsValidate(item, truth));
    case vh::attribute_selected:
        return as_truth(IsSelected(item, truth));
    // Sizes have an operation of their own; this answer leaves the last error alone.
    case vh::attribute_size:
        return -126;
    case vh::attribute_misc_text:
        return as_lines(GetMiscText(item, value));
    case vh::attribute_display_order:
        return GetDisplayOrder(item, *number);
    case vh::attribute_display_name:
        return as_lines(GetDisplayName(item, value));
    case vh::attribute_text16:
        return as_text(ReadText(item, &Item::GetText16, value));
    case vh::attribute_text17:
        return as_text(ReadText(item, &Item::GetText17, value));
    case vh::attribute_text18:
        return as_text(ReadText(item, &Item::GetText18, value));
    case vh::attribute_text19:
        return as_text(ReadText(item, &Item::GetText19, value));
    case vh::attribute_text20:
        return as_text(ReadExtraText(item, &ISetupItemTexts::GetText20, value));
    case vh::attribute_text21:
        return as_text(ReadExtraText(item, &ISetupItemTexts::GetText21, value));
    case vh::attribute_text22:
        return as_text(ReadExtraText(item, &ISetupItemTexts::GetText22, value));
    case vh::attribute_text23:
        return as_text(ReadExtraText(item, &ISetupItemTexts::GetText23, value));
    case vh::attribute_status:
        return ReadNumber(item, &Item::GetStatus, default_status, *number);
    case vh::attribute_flags:
        return ReadNumber(item, &Item::GetFlags, 0, *number);
    case vh::attribute_flag_bit: {
        int32_t flags = 0;
        const int32_t result = ReadNumber(item, &Item::GetFlags, 0, flags);
        if (result >= 0)
            *number = (flags >> 5) & 1;
        return result;
    }
    default:
        return Fail(vh::media_bad_attribute);
    }
}

MEDIA_TEMPLATE
int32_t MEDIA::WriteDisplayOrder(text item, int32_t order)
{
    // Scripts count from the order base; negative orders are absolute.
    const auto absolute = static_cast<short>(order < 0 ? order : order + m_orderBase);
    return WithItem(item, [&](Item& found) { return found.SetDisplayOrder(absolute); });
}

MEDIA_TEMPLATE
int32_t MEDIA::SetData(text item, int32_t code, int32_t number, text value, ObjectContext* context)
{
    switch (code) {
    case vh::attribute_description:
        return WriteText(item, &Item::SetDescription, value);
    case vh::attribute_long_text:
        return WriteText(item, &Item::SetLongText, value);
    case vh::attribute_visible:
        return WithItem(item, [&](Item& found) { return found.SetVisible(number == 1 ? 1 : 0); });
    case vh::attribute_needs_validation:
        return Fail(vh::media_read_only_attribute);
    case vh::attribute_selected:
        return SelectItem(item, number != 0, context);
    case vh::attribute_size:
        return Fail(vh::media_not_supported);
    case vh::attribute_misc_text:
        return WriteText(item, &Item::SetMiscText, value);
    case vh::attribute_display_order:
        return WriteDisplayOrder(item, number);
    case vh::attribute_display_name:
        return WriteText(item, &Item::SetDisplayName, value);
    case vh::attribute_text17:
        return WriteText(item, &Item::SetText17, value);
    case vh::attribute_text18:
        return WriteText(item, &Item::SetText18, value);
    default:
        return Fail(vh::media_bad_attribute);
    }
}

MEDIA_TEMPLATE
int32_t MEDIA::GetDisplayName(text item, stringx& value)
{
    const int32_t code = ReadText(item, &Item::GetDisplayName, value);
    if (code >= 0 && value.empty())
        value = vh::LastComponent(item);
    return code;
}

MEDIA_TEMPLATE
int32_t MEDIA::SelectItem(text item, bool truth, ObjectContext*)
{
    if (item.empty())
        return SelectAll(truth);
    return WithItem(item, [&](Item& found) -> int32_t {
        const HRESULT code = found.SetSelected(truth ? 2 : 0);
        // An item may refuse to go; one that refuses to come is no failure.
        if (code == S_FALSE)
            return truth ? 0 : Fail(vh::media_selection_refused, item);
        return code;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::GetChildCount(text parent, int32_t& count, int32_t mode)
{
    Items* children = nullptr;
    if (const HRESULT code = FindChildren(parent, children); FAILED(code))
        return code;
    long all = 0;
    if (children)
        if (const HRESULT code = children->Count(&all); FAILED(code))
            return code;
    count = all;
    if (all == 0)
        return 0;
    if (mode != 1)
        return 0;
    count = 0;
    return vh::ForEachItem(children, 1, [&](Item* child) {
        VARIANT_BOOL visible = VARIANT_FALSE;
        const HRESULT code = child->GetVisible(&visible);
        count += visible ? 1 : 0;
        return code;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::GetChild(text parent, int32_t index, stringx& name)
{
    Items* children = nullptr;
    if (const HRESULT code = FindChildren(parent, children); FAILED(code))
        return code;
    vh::com_ptr<Item> child;
    if (!children)
        return Fail(vh::media_no_item, parent);
    if (const HRESULT code = vh::ItemAt(children, index, child); FAILED(code))
        return code;
    vh::bstr read;
    if (const HRESULT code = child->GetName(read.put()); FAILED(code))
        return code;
    name = read.view();
    Node* node = nullptr;
    return vh::NoItemCode(m_cache.Insert(vh::JoinItem(parent, name), std::move(child), node));
}

MEDIA_TEMPLATE
int32_t MEDIA::GetItemSize(text item, int32_t& size)
{
    return WithItem(item, [&](Item& found) {
        unsigned long low = 0;
        unsigned long high = 0;
        const HRESULT code = found.GetSize(VARIANT_FALSE, &low, &high);
        if (SUCCEEDED(code))
            size = high || low > INT32_MAX ? INT32_MAX : static_cast<int32_t>(low);
        return code;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::GetTotalSize(text item, bool whole_tree, bool, int64_t& size, int32_t)
{
    const auto add = [&](Item& found) {
        unsigned long low = 0;
        unsigned long high = 0;
        const HRESULT code = found.GetSize(Truth(whole_tree), &low, &high);
        if (SUCCEEDED(code))
            size = static_cast<int64_t>(static_cast<uint64_t>(size) + vh::Combine(low, high));
        return code;
    };
    size = 0;
    if (!item.empty())
        return WithItem(item, add);
    return vh::ForEachItem(m_collection.get(), 1, [&](Item* child) { return add(*child); });
}

MEDIA_TEMPLATE
int32_t MEDIA::GetCost(text item, text target, uint64_t& bytes)
{
    vh::drive_costs costs;
    if (const HRESULT code = GetDriveCosts(item, costs); FAILED(code))
        return vh::NoItemCode(code);
    const auto found = costs.find(vh::PathRoot(target));
    bytes = found == costs.end() ? 0 : found->second;
    return 0;
}

MEDIA_TEMPLATE
int32_t MEDIA::CompareSizeRequired(wchar_t* drive, int32_t* size)
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

MEDIA_TEMPLATE
int32_t MEDIA::Advise(text item, ISetupBasicFeatureStateEvents* view, int64_t view_item, int32_t& cookie)
{
    return WithItem(item, [&](Item& found) {
        long given = 0;
        const HRESULT code = found.Advise(view, view_item, &given);
        cookie = given;
        return code;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::Unadvise(text item, int32_t cookie)
{
    return WithItem(item, [&](Item& found) { return found.Unadvise(cookie); });
}

MEDIA_TEMPLATE
int32_t MEDIA::GetDisplayOrder(text item, int32_t& order)
{
    return WithItem(item, [&](Item& found) {
        short read = 0;
        const HRESULT code = found.GetDisplayOrder(&read);
        if (SUCCEEDED(code))
            order = static_cast<short>(read < 0 ? read : read - m_orderBase);
        return code;
    });
}

MEDIA_TEMPLATE
int32_t MEDIA::GetOrderBase()
{
    vh::com_ptr<Item> second;
    const HRESULT code = m_collection ? vh::ItemAt(m_collection.get(), 2, second) : HRESULT{vh::media_no_item};
    if (FAILED(code))
        return code;
    short order = 0;
    const HRESULT read = second->GetDisplayOrder(&order);
    return FAILED(read) ? read : order;
}

MEDIA_TEMPLATE
int32_t MEDIA::CreateRegistrySet(text name, ISetupLog* log)
{
    return m_data ? m_data->CreateRegistrySet(vh::bstr(name).get(), log) : E_POINTER;
}

MEDIA_TEMPLATE
int32_t MEDIA::CreateShellObjects(ISetupLog* log) { return m_data ? m_data->CreateShellObjects(log) : E_POINTER; }

MEDIA_TEMPLATE
int32_t MEDIA::FilterLanguage(int32_t language, bool flag)
{
    return m_data ? m_data->FilterLanguage(language, Inverted(flag)) : E_POINTER;
}

MEDIA_TEMPLATE
int32_t MEDIA::FilterOS(int32_t first, int32_t second, bool flag)
{
    vh::com_ptr<ISetupDataEx> data;
    const HRESULT code = m_data.query(data);
    return FAILED(code) ? code : data->FilterOS(first, second, Inverted(flag));
}

MEDIA_TEMPLATE
int32_t MEDIA::NeedsValidate(text item, bool& truth)
{
    if (item.empty()) {
        if (const auto root = m_data.template query<ISetupDataValidation>()) {
            VARIANT_BOOL needed = Truth(truth);
            const HRESULT code = root->GetNeedsValidation(&needed);
            truth = needed != 0;
            return code;
        }
    }
    return ReadTruth(item, &Item::GetNeedsValidation, truth);
}

MEDIA_TEMPLATE
int32_t MEDIA::CheckValidateKey(text item, text key)
{
    if (!item.empty())
        return WriteText(item, &Item::Validate, key);
    return m_data ? m_data->Validate(vh::bstr(key).get()) : E_POINTER;
}

MEDIA_TEMPLATE
int32_t MEDIA::SetupTypeEnum(std::vector<stringx>& names)
{
    vh::com_ptr<ISetupTypes> types;
    if (!m_data)
        return E_POINTER;
    if (const HRESULT code = m_data->GetSetupTypes(types.put()); FAILED(code) || !types)
        return FAILED(code) ? code : E_POINTER;
    const auto add = [&](ISetupType* type) {
        vh::bstr name;
        const HRESULT code = type->GetName(name.put());
        if (SUCCEEDED(code))
            names.emplace_back(name.view());
        return code;
    };
    return vh::ForEachItem(types.get(), 1, add, vh::media_no_setup_type);
}

MEDIA_TEMPLATE
HRESULT MEDIA::FindSetupType(text type, vh::com_ptr<ISetupType>& found)
{
    vh::com_ptr<ISetupTypes> types;
    if (!m_data)
        return E_POINTER;
    if (const HRESULT code = m_data->GetSetupTypes(types.put()); FAILED(code) || !types)
        return FAILED(code) ? code : E_POINTER;
    return vh::ItemNamed(types.get(), type, found, vh::media_no_setup_type);
}

MEDIA_TEMPLATE
int32_t MEDIA::SetupTypeGetData(text type, int32_t code, int32_t*, wchar_t* buffer, int32_t length)
{
    vh::com_ptr<ISetupType> found;
    if (const HRESULT failed = FindSetupType(type, found); FAILED(failed))
        return failed;
    vh::bstr value;
    HRESULT read = vh::media_bad_setup_type_attribute;
    if (code == 1) {
        read = found->GetDescription(value.put());
    } else if (code == 2) {
        read = found->GetDisplayText(value.put());
        if (SUCCEEDED(read) && value.empty())
            read = found->GetName(value.put());
    }
    return FAILED(read) ? read : vh::CopyOut(value.view(), buffer, length);
}

MEDIA_TEMPLATE
int32_t MEDIA::SetupTypeSet(text type)
{
    vh::com_ptr<ISetupType> found;
    const HRESULT code = FindSetupType(type, found);
    return FAILED(code) ? code : found->Activate();
}

MEDIA_TEMPLATE
HRESULT MEDIA::GetRoot(vh::com_ptr<ISetupComponents>& root)
{
    if (!m_data)
        return E_POINTER;
    const HRESULT code = m_data->GetRoot(root.put());
    return SUCCEEDED(code) && !root ? E_POINTER : code;
}

MEDIA_TEMPLATE
HRESULT MEDIA::WalkRoot(ISetupComponents* root, text path, vh::com_ptr<ISetupComponent>& found)
{
    vh::com_ptr<ISetupComponents> collection(root);
    for (;;) {
        const vh::item_split split = vh::SplitItem(path);
        const HRESULT code = vh::ItemNamed(collection.get(), split.head, found);
        if (FAILED(code) || split.tail.empty())
            return code;
        vh::com_ptr<ISetupComponents> children;
        const HRESULT read = found->GetChildren(children.put());
        if (FAILED(read) || !children)
            return FAILED(read) ? read : E_POINTER;
        collection = std::move(children);
        path = split.tail;
    }
}

MEDIA_TEMPLATE
bool MEDIA::RootPath(text item, stringx& path)
{
    constexpr std::size_t longest = 259;
    path = item.starts_with(L'<') ? stringx(item) : vh::Concat(L"<Data>\\", item);
    return path.size() <= longest;
}

MEDIA_TEMPLATE
HRESULT MEDIA::WalkToOwnItem(text item, vh::com_ptr<ISetupComponent>& found)
{
    vh::com_ptr<ISetupComponents> root;
    if (const HRESULT code = GetRoot(root); FAILED(code))
        return code;
    stringx path;
    if (!RootPath(vh::Concat(m_mediaName, L"\\", item), path))
        return vh::media_no_item;
    return WalkRoot(root.get(), path, found);
}

MEDIA_TEMPLATE
HRESULT MEDIA::WalkToCostItem(text item, vh::com_ptr<ISetupComponent>& found)
{
    vh::com_ptr<ISetupComponents> root;
    vh::ThrowIfFailed(GetRoot(root));
    stringx path;
    if (!RootPath(item, path) || FAILED(WalkRoot(root.get(), path, found)))
        return vh::media_no_item;
    return S_OK;
}

MEDIA_TEMPLATE
int32_t MEDIA::Update()
{
    vh::com_ptr<ISetupComponents> root;
    if (const HRESULT code = GetRoot(root); FAILED(code))
        return code;
    vh::com_ptr<ISetupComponent> own;
    if (const HRESULT code = vh::ItemNamed(root.get(), m_mediaName, own); FAILED(code))
        return code;
    vh::com_ptr<ISetupComponents> children;
    if (const HRESULT code = own->GetChildren(children.put()); FAILED(code))
        return code;
    return vh::ForEachItem(children.get(), 1, [](ISetupComponent* child) {
        vh::bstr name;
        const HRESULT code = child->GetName(name.put());
        return FAILED(code) || name.view() == vh::first_disk ? code : child->Reinstall();
    });
}

MEDIA_TEMPLATE
template <class Extension, class AtRoot, class OnItem>
int32_t MEDIA::OnFiles(text item, AtRoot&& at_root, OnItem&& on_item)
{
    if (item.empty()) {
        const auto modes = m_data.template query<ISetupDataModes>();
        return modes ? at_root(*modes.get()) : E_FAIL;
    }
    vh::com_ptr<ISetupComponent> found;
    if (const HRESULT code = WalkToOwnItem(item, found); FAILED(code))
        return code;
    const auto extension = found.query<Extension>();
    return extension ? on_item(*extension.get()) : E_UNEXPECTED;
}

MEDIA_TEMPLATE
int32_t MEDIA::FileEnum(text item, VARIANT* names)
{
    return OnFiles<ISetupItemFiles>(
        item, [&](ISetupDataModes& root) { return root.GetRootFiles(names); },
        [&](ISetupItemFiles& files) { return files.GetFiles(names); });
}

MEDIA_TEMPLATE
int32_t MEDIA::FileEnumIn(text item, text directory, bool flag, VARIANT* names)
{
    const vh::bstr in(directory);
    return OnFiles<ISetupItemFileQueries>(
        item, [&](ISetupDataModes& root) { return root.EnumRootFiles(in.get(), Truth(flag), names); },
        [&](ISetupItemFileQueries& files) { return files.EnumFiles(in.get(), Truth(flag), names); });
}

MEDIA_TEMPLATE
int32_t MEDIA::FileInfo(text item, text group, text file, int32_t code, VARIANT* value)
{
    const vh::bstr in(group);
    const vh::bstr name(file);
    return OnFiles<ISetupItemFileQueries>(
        item, [&](ISetupDataModes& root) { return root.RootFileInfo(in.get(), name.get(), code, value); },
        [&](ISetupItemFileQueries& files) { return files.FileInfo(in.get(), name.get(), code, value); });
}

MEDIA_TEMPLATE
int32_t MEDIA::AddCost(text item, text path, int32_t low, int32_t high)
{
    vh::com_ptr<ISetupComponent> found;
    if (const HRESULT code = WalkToCostItem(item, found); FAILED(code))
        return code;
    const auto files = found.query<ISetupItemFiles>();
    return files ? files->AddCost(low, high, vh::bstr(path).get()) : E_UNEXPECTED;
}

MEDIA_TEMPLATE
int32_t MEDIA::AddUninstallCost(text item, int32_t low, int32_t high)
{
    vh::com_ptr<ISetupComponent> found;
    if (const HRESULT code = WalkToCostItem(item, found); FAILED(code))
        return code;
    const auto costs = found.query<ISetupItemUninstallCost>();
    return costs ? costs->AddUninstallCost(low, high) : E_UNEXPECTED;
}

#undef MEDIA
#undef MEDIA_TEMPLATE

template class CVHFileMediaImpl<ISetupComponent, ISetupComponents>;
template class CVHFileMediaImpl<ISetupFeature, ISetupFeatures>;
