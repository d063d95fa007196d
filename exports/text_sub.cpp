// Exported functions on text variables in texts.
#include "vhrt/text_sub.h"

#include "../runtime/context.h"
#include "../runtime/frame.h"
#include "../scriptdata/bstr.h"
#include "../scriptdata/results.h"

int64_t TextSubSubstitute(ObjectContext* context, BSTR* text)
{
    return vh::Framed(context, [&](ObjectContext& c) -> int64_t {
        return c.textSubLocal ? c.textSubLocal->Substitute(text) : E_FAIL;
    });
}
