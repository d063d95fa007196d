// An array of texts that the engine gave, into a script's list.
#pragma once

#include "../Src/inc/script_values.h"
#include "../scriptdata/variant.h"
#include "context.h"

namespace vh {

// Each text goes behind the current element. The list is looked up for every text, so a list that can't take it
// matters only when there is one: then the answer is -1.
inline int32_t AddTexts(ObjectContext& context, ListHandle list, const safe_array& texts)
{
    return texts.for_each([&](const variant& text) {
        return context.lists.Find(list).TakeString(stringx(text.text()), ListAddAfter) < 0 ? -1 : 0;
    });
}

} // namespace vh
