# Header-only packages of the build machine, without the rest of its headers.
foreach(package nlohmann CLI)
  if(EXISTS /usr/include/${package})
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
    file(CREATE_LINK /usr/include/${package} ${CMAKE_BINARY_DIR}/headers/${package} SYMBOLIC)
  endif()
endforeach()
add_library(vhrt_headers INTERFACE)
target_include_directories(vhrt_headers SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
