/* Texts of the resource libraries and of the string table, and language identifiers. */
#pragma once

#include "types.h"

/* A numbered text of the user's or the standard resource library, to a buffer of `size` units, cut to fit. The
   context must not be null. Result: its length; 0 when there is none. */
VHRT_FUNCTION(int32_t) LangLoadString(ObjectContext* context, uint32_t id, wchar_t* buffer, int32_t size);

/* A named text of the string table. Result: 0; length + 1 when it does not fit; -1 when there is none; the
   engine's failing code. */
VHRT_FUNCTION(int32_t) __LoadString(ObjectContext* context, const wchar_t* name, wchar_t* buffer, int32_t size);

/* Result: the identifier with sublanguage 1 when it has none. No context. */
VHRT_FUNCTION(int32_t) _GetStandardLangId(int32_t language);

/* Result: 1 when the configuration file lists the language as supported, else 0. No context. */
VHRT_FUNCTION(int32_t) _IsLangSupported(int32_t language, const wchar_t* path);
