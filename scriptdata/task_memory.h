// Memory of the COM task allocator, as the shell hands out its item lists.
#pragma once

#include <shtypes.h>

#include "late_windows.h"
#include "unique.h"

namespace vh {

template <class Pointer>
struct task_memory_traits {
    using value_type = Pointer;
    static Pointer none() { return nullptr; }
    static void close(Pointer memory) { late::co_task_mem_free(const_cast<void*>(static_cast<const void*>(memory))); }
};

using unique_id_list = unique<task_memory_traits<PIDLIST_ABSOLUTE>>;

} // namespace vh
