#include "version.h"

namespace host {

const char* const product_version = "VHRT " VHRT_VERSION;

} // namespace host
