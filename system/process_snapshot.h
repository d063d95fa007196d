// The processes that run now, as the system lists them.
#pragma once

#include "child_processes.h"

namespace vh {

// Empty, with the thread's last error set, when the system gives no list.
std::optional<std::vector<ProcessEntry>> TakeProcessSnapshot();

// In units of 100 ns. Empty when the process can't be opened or asked.
std::optional<uint64_t> CreationTime(void* process);
std::optional<uint64_t> CreationTime(uint32_t id);

// The first child of a process; `handle` is an open handle of it, or null.
uint32_t FindRunningChild(uint32_t id, void* handle, bool descendants);

} // namespace vh
