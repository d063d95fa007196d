// The setup types of a data set.
#include "../scriptdata/results.h"
#include "data_media.h"
#include "walk.h"

namespace {

HRESULT SetupTypesOf(ISetupData* data, vh::com_ptr<ISetupTypes>& types)
{
    if (!data)
        return E_POINTER;
    const HRESULT code = data->GetSetupTypes(types.put());
    return vh::Given(code, types);
}

} // namespace

int32_t CVHDataMedia::SetupTypeEnum(std::vector<stringx>& names)
{
    vh::com_ptr<ISetupTypes> types;
    if (const HRESULT code = SetupTypesOf(m_data.get(), types); FAILED(code))
        return code;
    const auto add = [&](ISetupType* type) {
        vh::bstr name;
        const HRESULT code = type->GetName(name.put());
        if (SUCCEEDED(code))
            names.emplace_back(name.view());
        return code;
    };
    return vh::ForEachItem(types.get(), 1, add, vh::media_no_setup_type);
}

HRESULT CVHDataMedia::FindSetupType(text type, vh::com_ptr<ISetupType>& found)
{
    vh::com_ptr<ISetupTypes> types;
    if (const HRESULT code = SetupTypesOf(m_data.get(), types); FAILED(code))
        return code;
    return vh::ItemNamed(types.get(), type, found, vh::media_no_setup_type);
}

int32_t CVHDataMedia::SetupTypeGetData(text type, int32_t code, int32_t*, wchar_t* buffer, int32_t length)
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

int32_t CVHDataMedia::SetupTypeSet(text type)
{
    vh::com_ptr<ISetupType> found;
    const HRESULT code = FindSetupType(type, found);
    return FAILED(code) ? code : vh::FailureOnly(found->Activate());
}
