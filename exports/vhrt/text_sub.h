/* Substitution of named text variables; see also __GetTextSub. */
#pragma once

#include "types.h"

/* Replaces the variables in *text by their local values, in place; the text is a BSTR of the caller's. Result:
   the engine's, sign-extended. */
VHRT_FUNCTION(int64_t) TextSubSubstitute(ObjectContext* context, BSTR* text);
