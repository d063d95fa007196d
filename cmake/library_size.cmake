cmake_policy(VERSION 3.25)
# Writes a header that tells the size of a built file in bytes.
file(SIZE ${LIBRARY} bytes)
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "#pragma once\n\ninline constexpr unsigned library_bytes = @bytes@;\n" @ONLY)
