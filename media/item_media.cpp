#include "item_media.h"

#include <iterator>

#include "../scriptdata/results.h"

namespace {

constexpr VARIANT_BOOL Truth(bool truth) { return truth ? VARIANT_TRUE : VARIANT_FALSE; }
// The status of an item whose engine says nothing else.
constexpr long default_status = 4;

using Item = ISetupAnyItem;

// Texts of an item by attribute code. Some are shown with line ends in place of "\n".
struct TextAttribute {
    int32_t code;
    bool lines;
    HRESULT (STDMETHODCALLTYPE Item::*get)(BSTR*);
    // Null where scripts can't write.
    HRESULT (STDMETHODCALLTYPE Item::*set)(BSTR);
};
constexpr TextAttribute text_attributes[] = {
    {vh::attribute_description, true, &Item::GetDescription, &Item::SetDescription},
    {vh::attribute_long_text, true, &Item::GetLongText, &Item::SetLongText},
    {vh::attribute_misc_text, true, &Item::GetMiscText, &Item::SetMiscText},
    {vh::attribute_display_name, true, &Item::GetDisplayName, &Item::SetDisplayName},
    {vh::attribute_text16, false, &Item::GetText16, nullptr},
    {vh::attribute_text17, false, &Item::GetText17, &Item::SetText17},
    {vh::attribute_text18, false, &Item::GetText18, &Item::SetText18},
    {vh::attribute_text19, false, &Item::GetText19, nullptr},
};

// The same behind a query.
struct ExtraText {
    int32_t code;
    HRESULT (STDMETHODCALLTYPE ISetupItemTexts::*get)(BSTR*);
};
constexpr ExtraText extra_texts[] = {
    {vh::attribute_text20, &ISetupItemTexts::GetText20},
    {vh::attribute_text21, &ISetupItemTexts::GetText21},
    {vh::attribute_text22, &ISetupItemTexts::GetText22},
    {vh::attribute_text23, &ISetupItemTexts::GetText23},
};

// Null for a code without a row.
template <class Row, std::size_t Size>
const Row* RowOf(const Row (&table)[Size], int32_t code)
{
    for (const Row& row : table)
        if (row.code == code)
            return &row;
    return nullptr;
}

} // namespace

int32_t CVHItemMedia::ReadText(text item, Method<BSTR*> getter, vh::bstr& value)
{
    return vh::FailureOnly(WithItem(item, [&](Item& found) { return (found.*getter)(value.put()); }));
}

int32_t CVHItemMedia::ReadText(text item, Method<BSTR*> getter, stringx& value)
{
    vh::bstr read;
    const int32_t code = ReadText(item, getter, read);
    if (code == 0)
        value = read.view();
    return code;
}

int32_t CVHItemMedia::ReadExtraText(text item, HRESULT (STDMETHODCALLTYPE ISetupItemTexts::*getter)(BSTR*),
                                    vh::bstr& value)
{
    return vh::FailureOnly(WithItem(item, [&](Item& found) -> HRESULT {
        vh::com_ptr<ISetupItemTexts> texts;
        if (const HRESULT code = found.QueryInterface(ISetupItemTexts::iid, texts.put_void()); FAILED(code))
            return code;
        return texts ? (texts.get()->*getter)(value.put()) : E_NOINTERFACE;
    }));
}

int32_t CVHItemMedia::ReadTruth(text item, Method<VARIANT_BOOL*> getter, bool& truth)
{
    VARIANT_BOOL read = Truth(truth);
    const int32_t code = vh::FailureOnly(WithItem(item, [&](Item& found) { return (found.*getter)(&read); }));
    if (code == 0)
        truth = read != 0;
    return code;
}

int32_t CVHItemMedia::ReadNumber(text item, Method<long*> getter, long otherwise, int32_t& number)
{
    return vh::FailureOnly(WithItem(item, [&](Item& found) {
        long read = otherwise;
        const HRESULT code = (found.*getter)(&read);
        number = read;
        return code;
    }));
}

int32_t CVHItemMedia::WriteText(text item, Method<BSTR> setter, text value)
{
    return vh::FailureOnly(WithItem(item, [&](Item& found) { return (found.*setter)(vh::bstr(value).get()); }));
}

int32_t CVHItemMedia::GetData(text item, int32_t code, int32_t* number, wchar_t* buffer, int32_t length)
{
    if (const TextAttribute* row = RowOf(text_attributes, code)) {
        vh::bstr value;
        if (const int32_t failed = ReadText(item, row->get, value))
            return failed;
        const text shown = code == vh::attribute_display_name && value.empty() ? vh::LastComponent(item) : value.view();
        return row->lines ? vh::CopyOutLines(shown, buffer, length) : vh::CopyOut(shown, buffer, length);
    }
    if (const ExtraText* row = RowOf(extra_texts, code)) {
        vh::bstr value;
        const int32_t failed = ReadExtraText(item, row->get, value);
        return failed ? failed : vh::CopyOut(value.view(), buffer, length);
    }

    const auto as_truth = [&](int32_t (CVHItemMedia::*read)(text, bool&)) {
        bool truth = false;
        const int32_t failed = vh::FailureOnly((this->*read)(item, truth));
        if (failed == 0)
            *number = truth;
        return failed;
    };
    switch (code) {
    case vh::attribute_visible:
        return as_truth(&CVHItemMedia::IsVisible);
    case vh::attribute_needs_validation:
        return as_truth(&CVHItemMedia::NeedsValidate);
    case vh::attribute_selected:
        return as_truth(&CVHItemMedia::IsSelected);
    // Sizes have an operation of their own; this answer leaves the last error alone.
    case vh::attribute_size:
        return -126;
    case vh::attribute_display_order:
        return GetDisplayOrder(item, *number);
    case vh::attribute_status:
        return ReadNumber(item, &Item::GetStatus, default_status, *number);
    case vh::attribute_flags:
        return ReadNumber(item, &Item::GetFlags, 0, *number);
    case vh::attribute_flag_bit: {
        int32_t flags = 0;
        const int32_t failed = ReadNumber(item, &Item::GetFlags, 0, flags);
        if (failed == 0)
            *number = (flags >> 5) & 1;
        return failed;
    }
    default:
        return Fail(vh::media_bad_attribute);
    }
}

int32_t CVHItemMedia::SetData(text item, int32_t code, int32_t number, text value, ObjectContext* context)
{
    if (const TextAttribute* row = RowOf(text_attributes, code); row && row->set)
        return WriteText(item, row->set, value);
    switch (code) {
    case vh::attribute_visible:
        return vh::FailureOnly(WithItem(item, [&](Item& found) { return found.SetVisible(number == 1 ? 1 : 0); }));
    case vh::attribute_needs_validation:
        return Fail(vh::media_read_only_attribute);
    case vh::attribute_selected:
        return SelectItem(item, number != 0, context);
    case vh::attribute_size:
        return Fail(vh::media_not_supported);
    case vh::attribute_display_order:
        return WriteDisplayOrder(item, number);
    default:
        return Fail(vh::media_bad_attribute);
    }
}

int32_t CVHItemMedia::GetDescription(text item, stringx& value) { return ReadText(item, &Item::GetDescription, value); }

int32_t CVHItemMedia::GetMiscText(text item, stringx& value) { return ReadText(item, &Item::GetMiscText, value); }

int32_t CVHItemMedia::GetDisplayName(text item, stringx& value)
{
    const int32_t code = ReadText(item, &Item::GetDisplayName, value);
    if (code == 0 && value.empty())
        value = vh::LastComponent(item);
    return code;
}

int32_t CVHItemMedia::IsSelected(text item, bool& truth) { return ReadTruth(item, &Item::GetSelected, truth); }

int32_t CVHItemMedia::IsPartlySelected(text item, bool& truth)
{
    return ReadTruth(item, &Item::GetPartlySelected, truth);
}

int32_t CVHItemMedia::IsVisible(text item, bool& truth)
{
    truth = true;
    return ReadTruth(item, &Item::GetVisible, truth);
}

int32_t CVHItemMedia::SelectItem(text item, bool truth, ObjectContext*)
{
    if (item.empty())
        return SelectAll(truth);
    return WithItem(item, [&](Item& found) -> int32_t {
        const HRESULT code = found.SetSelected(truth ? 2 : 0);
        // An item may refuse to go; one that refuses to come is no failure.
        if (code == S_FALSE && !truth)
            return Fail(vh::media_selection_refused, item);
        return vh::FailureOnly(code);
    });
}

int32_t CVHItemMedia::GetItemSize(text item, int32_t& size)
{
    return vh::FailureOnly(WithItem(item, [&](Item& found) {
        unsigned long low = 0;
        unsigned long high = 0;
        const HRESULT code = found.GetSize(VARIANT_FALSE, &low, &high);
        if (SUCCEEDED(code))
            size = high || low > INT32_MAX ? INT32_MAX : static_cast<int32_t>(low);
        return code;
    }));
}

int32_t CVHItemMedia::Advise(text item, ISetupBasicFeatureStateEvents* view, int64_t view_item, int32_t& cookie)
{
    return WithItem(item, [&](Item& found) {
        long given = 0;
        const HRESULT code = found.Advise(view, view_item, &given);
        cookie = given;
        return code;
    });
}

int32_t CVHItemMedia::Unadvise(text item, int32_t cookie)
{
    return WithItem(item, [&](Item& found) { return found.Unadvise(cookie); });
}

// Scripts count from the order base; negative orders are absolute.
int32_t CVHItemMedia::GetDisplayOrder(text item, int32_t& order)
{
    return vh::FailureOnly(WithItem(item, [&](Item& found) {
        short read = 0;
        const HRESULT code = found.GetDisplayOrder(&read);
        if (SUCCEEDED(code))
            order = static_cast<short>(read < 0 ? int64_t{read} : int64_t{read} - m_orderBase);
        return code;
    }));
}

int32_t CVHItemMedia::WriteDisplayOrder(text item, int32_t order)
{
    const auto absolute = static_cast<short>(order < 0 ? int64_t{order} : int64_t{order} + m_orderBase);
    return vh::FailureOnly(WithItem(item, [&](Item& found) { return found.SetDisplayOrder(absolute); }));
}

int32_t CVHItemMedia::NeedsValidate(text item, bool& truth)
{
    if (item.empty()) {
        if (const auto root = m_data.query<ISetupDataValidation>()) {
            VARIANT_BOOL needed = Truth(truth);
            const HRESULT code = root->GetNeedsValidation(&needed);
            truth = needed != 0;
            return code;
        }
    }
    return ReadTruth(item, &Item::GetNeedsValidation, truth);
}

// The code as it is, also of a success.
int32_t CVHItemMedia::CheckValidateKey(text item, text key)
{
    if (item.empty())
        return m_data ? m_data->Validate(vh::bstr(key).get()) : E_POINTER;
    return WithItem(item, [&](Item& found) { return found.Validate(vh::bstr(key).get()); });
}
