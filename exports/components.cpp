// The component exports: each finds the media and makes one call.
#include "vhrt/components.h"

#include "../media/script_media.h"
#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../runtime/interface_result.h"
#include "../scriptdata/results.h"

namespace {

// One operation on a media; the failure is mapped.
template <class Operation>
int32_t OnMedia(ObjectContext* context, const wchar_t* media, Operation&& operation)
{
    return vh::Mapped(context, [&](ObjectContext& c) -> int32_t { return operation(c.media.Find(vh::View(media))); });
}

// Adds names to a text list; a list that can't take one ends it.
int32_t AddNames(ObjectContext& context, ListHandle list, std::vector<stringx>& names, std::wstring_view hidden)
{
    CVHList& target = context.lists.Find(list);
    for (stringx& name : names) {
        if (!hidden.empty() && name.view() == hidden)
            continue;
        if (const int32_t failed = target.TakeString(std::move(name), ListAddAfter))
            return failed;
    }
    return 0;
}

} // namespace

int32_t _ComponentGetData(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t attribute,
                          int32_t* number, wchar_t* buffer, int32_t size)
{
    return OnMedia(context, media,
                   [&](CVHRTMedia& m) { return m.GetData(vh::View(item), attribute, number, buffer, size); });
}

int32_t _ComponentSetData(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t attribute,
                          int32_t number, const wchar_t* text)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        return m.SetData(vh::View(item), attribute, number, vh::View(text), context);
    });
}

int32_t _ComponentSelectItem(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t selected)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) { return m.SelectItem(vh::View(item), selected != 0, context); });
}

int32_t _ComponentSelectNew(ObjectContext* context, const wchar_t* media, int32_t selected)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) { return m.SelectNew(selected != 0); });
}

int32_t _ComponentIsItemSelected(ObjectContext* context, const wchar_t* media, const wchar_t* item)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        bool selected = false;
        const int32_t code = m.IsSelected(vh::View(item), selected);
        return code < 0 ? code : static_cast<int32_t>(selected);
    });
}

int32_t _ComponentFilterOS(ObjectContext* context, const wchar_t* media, int32_t first, int32_t second, int32_t flag)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) { return m.FilterOS(first, second, flag != 0); });
}

int32_t _ComponentFilterLanguage(ObjectContext* context, const wchar_t* media, int32_t language, int32_t flag)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) { return m.FilterLanguage(language, flag != 0); });
}

int32_t _ComponentListItems(ObjectContext* context, const wchar_t* media, const wchar_t* parent, ListHandle list)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        std::vector<stringx> items;
        int32_t count = 0;
        if (const int32_t failed = m.ListItems(vh::View(parent), items, count, false))
            return failed;
        const bool hides_disk = vh::View(parent).empty() && m.IsScriptMedia() == 0;
        return AddNames(*context, list, items, hides_disk ? vh::first_disk : std::wstring_view());
    });
}

int32_t _ComponentSetupTypeEnum(ObjectContext* context, const wchar_t* media, ListHandle list)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        std::vector<stringx> names;
        const int32_t failed = m.SetupTypeEnum(names);
        return failed ? failed : AddNames(*context, list, names, {});
    });
}

int32_t _ComponentSetupTypeGetData(ObjectContext* context, const wchar_t* media, const wchar_t* setupType,
                                   int32_t attribute, int32_t* number, wchar_t* buffer, int32_t size)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        return m.SetupTypeGetData(vh::View(setupType), attribute, number, buffer, size);
    });
}

int32_t _ComponentSetupTypeSet(ObjectContext* context, const wchar_t* media, const wchar_t* setupType)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) { return m.SetupTypeSet(vh::View(setupType)); });
}

int32_t _ComponentGetItemSize(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t* size)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        *size = -1;
        return m.GetItemSize(vh::View(item), *size);
    });
}

int32_t _ComponentTotalSize(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t wholeTree,
                            int32_t flag2, int32_t shift)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        int64_t size = 0;
        const int32_t code = m.GetTotalSize(vh::View(item), wholeTree != 0, flag2 != 0, size, shift);
        if (code != 0)
            return code;
        return static_cast<uint64_t>(size) > INT32_MAX ? INT32_MAX : static_cast<int32_t>(size);
    });
}

int32_t _ComponentCompareSizeRequired(ObjectContext* context, const wchar_t* media, wchar_t* drive, int32_t* size)
{
    return OnMedia(context, media, [&](CVHRTMedia& m) { return m.CompareSizeRequired(drive, size); });
}

int32_t _ComponentValidate(ObjectContext* context, const wchar_t* media, const wchar_t* item, const wchar_t* key)
{
    constexpr int32_t wrong_key = -139;
    constexpr int32_t no_key_needed = -141;
    return OnMedia(context, media, [&](CVHRTMedia& m) {
        bool needed = true;
        if (const int32_t code = m.NeedsValidate(vh::View(item), needed); code < 0)
            return code;
        if (!needed)
            return no_key_needed;
        const int32_t code = m.CheckValidateKey(vh::View(item), vh::View(key));
        return code == E_INVALIDARG ? wrong_key : code;
    });
}

int32_t _ComponentAddItem(ObjectContext* context, const wchar_t* media, const wchar_t* item, int32_t size,
                          int32_t selected)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        const std::wstring_view name = vh::View(media);
        const int32_t first = c.media.Find(name).AddItem(vh::View(item), size, selected != 0);
        if (first != vh::media_no_media)
            return first;
        // The first item makes the media. Only the second attempt's failure is mapped.
        if (!c.media.Add(name, std::make_unique<CVHScriptMedia>()))
            return -1;
        return vh::MapResult(c.media.Find(name).AddItem(vh::View(item), size, selected != 0));
    });
}

int32_t _ComponentError(ObjectContext* context, const wchar_t* media, wchar_t* buffer, int32_t size, wchar_t* detail1,
                        wchar_t* detail2, int32_t* code)
{
    constexpr int32_t item_exists = vh::MapResult(vh::media_item_exists);
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        CVHRTMedia& m = c.media.Find(vh::View(media));
        *code = vh::MapResult(m.last_error());
        stringx text = m.error_text();
        bool known = true;
        if (*code == item_exists) {
            stringx display_name;
            known = m.GetDisplayName(text, display_name) >= 0;
            if (known)
                text = std::move(display_name);
        }
        if (known)
            if (const int32_t result = vh::CopyOut(text, buffer, size))
                return result;
        vh::CopyOutUnlimited(m.error_detail1(), detail1);
        vh::CopyOutUnlimited(m.error_detail2(), detail2);
        return 0;
    });
}

int32_t _ComponentErrorInfo(ObjectContext* context, VARIANT* error, wchar_t* media)
{
    return vh::Mapped(context, [&](ObjectContext& c) -> int32_t {
        if (const HRESULT code = vh::ClearResult(error); FAILED(code))
            return code;
        const stringx name = c.media.last_media();
        vh::CopyOutUnlimited(name, media);
        vh::com_ptr<IUnknown> object;
        const int32_t code = c.media.Find(name).GetErrorObject(object.put());
        if (code < 0)
            return code;
        return object ? vh::PutDispatch(object.get(), error) : E_FAIL;
    });
}

int32_t _MediaGetInfo(ObjectContext* context, const wchar_t* media, VHRTMediaInfo* info)
{
    return vh::Framed(context, [&](ObjectContext& c) { return c.media.Find(vh::View(media)).GetInfo(context, info); });
}

int32_t _MediaGetFilteringInfo(ObjectContext* context, const wchar_t* media, int32_t kind, ListHandle list)
{
    return vh::Framed(context, [&](ObjectContext& c) {
        return c.media.Find(vh::View(media)).GetFilteringInfo(kind, c.lists.Find(list));
    });
}
