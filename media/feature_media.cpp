// The media "DATA".
#include "../scriptdata/list.h"
#include "../scriptdata/results.h"
#include "concrete_media.h"
#include "first_disk.h"
#include "status_block.h"

CVHFileMedia::CVHFileMedia(vh::com_ptr<ISetupHost> host, vh::com_ptr<ISetupData> data)
    : CVHFileMediaImpl(std::move(data)), m_host(std::move(host)), m_featureHost(m_host.query<ISetupFeatureHost>())
{
    vh::com_ptr<ISetupFeatures> features;
    if (m_featureHost)
        m_featureHost->GetFeatures(features.put());
    UseCollection(std::move(features));
    ReadOrderBase();
}

HRESULT CVHFileMedia::BeginProgress(ObjectContext& context, vh::com_ptr<IUnknown>& progress)
{
    vh::com_ptr<ISetupCosts> costs;
    if (const HRESULT code = m_featureHost->GetCosts(costs.put()); FAILED(code))
        return code;
    uint64_t bytes = 0;
    if (const HRESULT code = vh::ReadTotal(costs.get(), bytes); FAILED(code))
        return code;
    return vh::BeginTransfer(context, bytes, progress);
}

int32_t CVHFileMedia::MoveData(int32_t value, ObjectContext* context)
{
    if (!context)
        return E_POINTER;
    if (!m_featureHost)
        return E_UNEXPECTED;
    if (const HRESULT code = m_host->BeginData(value, context); FAILED(code))
        return code;
    Reinstall();
    vh::com_ptr<IUnknown> progress;
    if (const HRESULT code = BeginProgress(*context, progress); FAILED(code))
        return code;
    if (const HRESULT code = m_featureHost->Move(progress.get()); FAILED(code))
        return code;
    return m_host->EndData();
}

int32_t CVHFileMedia::TransferData(ObjectContext* context)
{
    if (!context)
        return E_POINTER;
    if (!m_featureHost)
        return E_UNEXPECTED;
    // A transfer's first step takes the context alone, in the place of the value.
    if (const HRESULT code = m_host->BeginData(reinterpret_cast<intptr_t>(context), nullptr); FAILED(code))
        return code;
    vh::com_ptr<IUnknown> progress;
    if (const HRESULT code = BeginProgress(*context, progress); FAILED(code))
        return code;
    if (const HRESULT code = m_featureHost->Move(progress.get()); FAILED(code))
        return code;
    if (const HRESULT code = m_featureHost->Transfer(progress.get()); FAILED(code))
        return code;
    return m_host->EndData();
}

int32_t CVHFileMedia::RemoveAll()
{
    if (!m_featureHost)
        return E_POINTER;
    if (const HRESULT code = m_featureHost->SelectAll(0); FAILED(code))
        return code;
    vh::com_ptr<ISetupComponents> root;
    if (const HRESULT code = GetRoot(root); FAILED(code))
        return code;
    vh::com_ptr<ISetupComponent> support;
    if (const HRESULT code = WalkRoot(root.get(), L"<Support>", support); FAILED(code))
        return code;
    return support->SetSelected(0);
}

int32_t CVHFileMedia::Reinstall() { return m_featureHost ? m_featureHost->Reinstall(VARIANT_FALSE) : E_POINTER; }

int32_t CVHFileMedia::RemoveAllInLogOnly()
{
    vh::com_ptr<ISetupFeatureModes> modes;
    const HRESULT code = m_featureHost.query(modes);
    return FAILED(code) ? code : modes->RemoveAllInLogOnly(-1);
}

int32_t CVHFileMedia::Patch(bool flag)
{
    if (!m_featureHost)
        return E_POINTER;
    const VARIANT_BOOL on = flag ? VARIANT_TRUE : VARIANT_FALSE;
    if (const HRESULT code = m_featureHost->Reinstall(on); FAILED(code))
        return code;
    vh::com_ptr<ISetupFeatureModes> modes;
    const HRESULT code = m_featureHost.query(modes);
    return FAILED(code) ? code : modes->Patch(on);
}

int32_t CVHFileMedia::SelectNew(bool flag)
{
    vh::com_ptr<ISetupFeatureModes> modes;
    const HRESULT code = m_featureHost.query(modes);
    return FAILED(code) ? code : vh::FailureOnly(modes->SelectNew(flag ? 2 : 0));
}

int32_t CVHFileMedia::GetErrorObject(IUnknown** error)
{
    return m_featureHost ? m_featureHost->GetErrorObject(error) : E_POINTER;
}

int32_t CVHFileMedia::SelectAll(bool flag)
{
    if (!m_featureHost)
        return E_POINTER;
    const vh::first_disk_keeper<ISetupFeature, ISetupFeatures> keeper(m_collection.get());
    const HRESULT code = m_featureHost->SelectAll(flag ? 2 : 0);
    if (FAILED(code))
        return code;
    keeper.Restore();
    return 0;
}

int32_t CVHFileMedia::GetDriveCosts(text item, vh::drive_costs& map)
{
    if (!m_featureHost)
        return E_POINTER;
    vh::com_ptr<ISetupCosts> costs;
    if (item.empty()) {
        if (const HRESULT code = m_featureHost->GetCosts(costs.put()); FAILED(code))
            return code;
    } else {
        vh::com_ptr<ISetupFeatureCosts> features;
        if (const HRESULT code = m_featureHost.query(features); FAILED(code))
            return code;
        if (const HRESULT code = features->GetFeatureCosts(vh::bstr(item).get(), costs.put()); FAILED(code))
            return vh::NoItemCode(code);
    }
    return vh::MergeCosts(costs.get(), vh::merge::assign, map);
}

int32_t CVHFileMedia::GetFilteringInfo(int32_t kind, CVHList& list)
{
    vh::com_ptr<ISetupDataModes> modes;
    if (const HRESULT code = m_data.query(modes); FAILED(code))
        return code;
    vh::variant holder;
    if (const HRESULT code = modes->GetFilteringNumbers(kind, holder.put()); FAILED(code))
        return code;
    return vh::safe_array(holder).for_each([&](vh::variant& number) -> int32_t {
        if (const HRESULT code = number.change(VT_I4); FAILED(code))
            return code;
        const int32_t value = number.get().lVal;
        return list.AddItem(&value, ListAddAfter);
    });
}

namespace {

using MediaText = HRESULT (STDMETHODCALLTYPE ISetupMediaInfo::*)(BSTR*);
using MediaTruth = HRESULT (STDMETHODCALLTYPE ISetupMediaInfo::*)(VARIANT_BOOL*);

// A text that is longer than its field fails instead of running into the next one.
template <std::size_t Size>
HRESULT ReadField(ISetupMediaInfo* info, MediaText getter, wchar_t (&field)[Size])
{
    vh::bstr value;
    const HRESULT code = (info->*getter)(value.put());
    if (FAILED(code))
        return code;
    return vh::CopyOut(value.view(), field, static_cast<int32_t>(Size)) == 0
               ? S_OK
               : HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER);
}

} // namespace

int32_t CVHFileMedia::GetInfo(ObjectContext*, VHRTMediaInfo* record)
{
    using Info = ISetupMediaInfo;
    if (!record)
        return E_POINTER;
    vh::com_ptr<Info> holder;
    if (const HRESULT code = m_data.query(holder); FAILED(code))
        return code;
    Info* info = holder.get();

    HRESULT code = S_OK;
    const auto field = [&](MediaText getter, auto& target) {
        if (SUCCEEDED(code))
            code = ReadField(info, getter, target);
    };
    field(&Info::GetText1, record->text1);
    field(&Info::GetText2, record->text2);
    field(&Info::GetText3, record->text3);
    field(&Info::GetText4, record->text4);
    field(&Info::GetText5, record->text5);
    field(&Info::GetText6, record->text6);
    field(&Info::GetText7, record->text7);
    field(&Info::GetText8, record->text8);
    field(&Info::GetText9, record->text9);
    field(&Info::GetText10, record->text10);
    field(&Info::GetText11, record->text11);
    field(&Info::GetText12, record->text12);
    field(&Info::GetText13, record->text13);
    field(&Info::GetText14, record->text14);
    if (FAILED(code))
        return code;

    long number = 0;
    if (FAILED(code = info->GetNumber(&number)))
        return code;
    record->number = number;
    constexpr MediaTruth truths[] = {&Info::GetTruth1, &Info::GetTruth2, &Info::GetTruth3, &Info::GetTruth4,
                                     &Info::GetTruth5};
    for (std::size_t i = 0; i < std::size(truths); ++i) {
        VARIANT_BOOL truth = VARIANT_FALSE;
        if (FAILED(code = (info->*truths[i])(&truth)))
            return code;
        record->truths[i] = truth ? 1 : 0;
    }
    return 0;
}
