# GoogleTest from Debian's source package, built for the target.
set(VHRT_GTEST_SOURCE /usr/src/googletest CACHE PATH "Source tree of GoogleTest")
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
add_subdirectory(${VHRT_GTEST_SOURCE} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
enable_testing()
