// The string table, and text variables in texts.
#include "../exports/vhrt/language.h"
#include "../exports/vhrt/text_sub.h"

#include "../scriptdata/bstr.h"
#include "../scriptdata/results.h"
#include "context.h"
#include "frame.h"

int32_t __LoadString(ObjectContext* context, const wchar_t* name, wchar_t* buffer, int32_t size)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int32_t {
        if (!c.strings)
            return -1;
        vh::bstr text;
        const HRESULT code = c.strings->GetString(vh::TextOrEmpty(name).get(), text.put());
        if (FAILED(code))
            return code;
        // A name that is not there still delivers what the table gave with it.
        const int32_t copied = vh::CopyOut(text.view(), buffer, size);
        return code == S_FALSE ? -1 : copied;
    });
}

int64_t TextSubSubstitute(ObjectContext* context, BSTR* text)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        return c.textSubLocal ? c.textSubLocal->Substitute(text) : E_FAIL;
    });
}
