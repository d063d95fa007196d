// The product's version: that of the version resources.
#pragma once

namespace host {

// "VHRT 0.1.0"
extern const char* const product_version;

} // namespace host
