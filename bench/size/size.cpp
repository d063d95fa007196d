// A DLL as large as the library that does nothing, for the cost of loading alone.
#include "library_size.h"

// An empty DLL has about this size; constant data makes up the rest.
constexpr unsigned empty_bytes = 0xC000;
static_assert(library_bytes > empty_bytes);

extern "C" __declspec(dllexport) const char vhsize_data[library_bytes - empty_bytes] = {1};
