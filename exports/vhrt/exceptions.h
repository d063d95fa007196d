/* The exceptions of the library, for hosts in C++.

   Exhausted memory leaves any function as vh::com_exception with E_OUTOFMEMORY; catch it by its type. A host can catch
   it when it is built with the same compiler family as the library; it must not keep it beyond the library's unload.
   No other exception leaves a function unless its description says so. */
#pragma once

#include "../../scriptdata/exception.h"
