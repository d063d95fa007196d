/* The registry, through the engine's service, which records for removal what is written.

   `root` is a predefined key as a sign-extended number; while a remote registry is connected it is replaced by that
   one. One leading backslash of a key is dropped; an empty key gives -1 but for _RegEnum. Results are 32-bit values,
   sign-extended: 0, -1, or the engine's failing code. */
#pragma once

#include "types.h"

/* Connects to another machine; root is 0x80000002, 0x80000003 or 0x80000004. Result: also -2 the connection
   failed, -3 the name is no machine name, -4 the key is unusable, -6 connected already. */
VHRT_FUNCTION(int64_t) _RegConnectRegistry(ObjectContext* context, int64_t root, const wchar_t* machine);
VHRT_FUNCTION(int64_t) _RegDisConnectRegistry(ObjectContext* context);

/* Result: 1 or 0; 0 without a context. */
VHRT_FUNCTION(int64_t) _RegIsRemoteRegConnected(ObjectContext* context);

/* `shared` marks the key as shared with other products. Traced as "RegDBCreateKeyEx". */
VHRT_FUNCTION(int64_t)
_RegCreateKey(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* keyClass, int32_t shared);

/* Result: -1 also when the key is not there. Traced as "RegDBDeleteKey" and "RegDBDeleteValue". */
VHRT_FUNCTION(int64_t) _RegDeleteKey(ObjectContext* context, int64_t root, const wchar_t* key);
VHRT_FUNCTION(int64_t)
_RegDeleteValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name);

/* Result: 1 it exists, 0 it does not, -1 on failure. */
VHRT_FUNCTION(int64_t) _RegExistsKey(ObjectContext* context, int64_t root, const wchar_t* key);

enum { RegEnumKeys = 1, RegEnumValues = 2 };

/* Adds the names to a text list. Result: -1 also for another kind and for a list that can't take them. */
VHRT_FUNCTION(int64_t)
_RegEnum(ObjectContext* context, int64_t root, const wchar_t* key, int32_t kind, ListHandle list);

/* A value as text; *type is its registry type. *size counts units: on entry the buffer's, on return the text's
   without terminator, or 4 for a number, which comes as decimal text (12 units are always enough). Result: -5
   with the size needed in *size; -10 for a binary value. */
VHRT_FUNCTION(int64_t)
_RegQueryKeyValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name, int32_t* type,
                  wchar_t* buffer, int32_t* size);

/* A binary value; *size counts bytes, and the buffer needs one more than the value has. Result: -5 as above. */
VHRT_FUNCTION(int64_t)
_RegQueryKeyBinaryValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name, void* buffer,
                        int32_t* size);

/* Writes a value given as text: REG_SZ and REG_EXPAND_SZ up to the terminator, REG_MULTI_SZ by `size` units,
   REG_DWORD read as a decimal number. Result: -10 for REG_BINARY. Traced as "RegDBSetKeyValueEx". */
VHRT_FUNCTION(int64_t)
_RegSetKeyValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name, int32_t type,
                const wchar_t* value, int32_t size);
VHRT_FUNCTION(int64_t)
_RegSetKeyBinaryValue(ObjectContext* context, int64_t root, const wchar_t* key, const wchar_t* name, const void* bytes,
                      int32_t size);

/* Switches text substitution on registry values, 1 or 0. Result: -1 when the engine has no such switch; the
   flag is kept all the same. */
VHRT_FUNCTION(int64_t) _RegEnableTextSubs(ObjectContext* context, uint8_t on);

/* The engine's option word, registry view included. */
VHRT_FUNCTION(int64_t) _RegGetOptions(ObjectContext* context, int32_t* options);
VHRT_FUNCTION(int64_t) _RegSetOptions(ObjectContext* context, int32_t options);
