# What a host's developer gets: programs, import library, headers, documents, samples, and a CMake package.
include(CMakePackageConfigHelpers)

# Headers keep their places to each other: the engine interfaces and the exceptions use the holders.
set(VHRT_HEADERS include)

set_target_properties(VHRT PROPERTIES IMPORT_SUFFIX ".a")
install(TARGETS VHRT EXPORT VHRTTargets RUNTIME DESTINATION bin ARCHIVE DESTINATION lib
  INCLUDES DESTINATION ${VHRT_HEADERS}/exports ${VHRT_HEADERS})
# The embedded engine, for hosts of one's own.
install(TARGETS vhengine EXPORT VHRTTargets ARCHIVE DESTINATION lib INCLUDES DESTINATION ${VHRT_HEADERS})
install(FILES engine/check.h engine/decision.h engine/engine.h engine/files.h engine/messages.h engine/recorder.h engine/text.h
  DESTINATION ${VHRT_HEADERS}/engine)
install(FILES engine/product/pack.h engine/product/pack_format.h DESTINATION ${VHRT_HEADERS}/engine/product)
# All that is installed, and no tests.
add_custom_target(product DEPENDS VHRT vhengine)
foreach(program vhres vhhost vhtool)
  if(TARGET ${program})
    add_dependencies(product ${program})
    install(TARGETS ${program} RUNTIME DESTINATION bin LIBRARY DESTINATION bin)
  endif()
endforeach()
install(FILES exports/VHRT.def DESTINATION lib)

install(FILES exports/vhrt.h DESTINATION ${VHRT_HEADERS}/exports)
install(DIRECTORY exports/vhrt DESTINATION ${VHRT_HEADERS}/exports FILES_MATCHING PATTERN *.h)
install(DIRECTORY Src/inc DESTINATION ${VHRT_HEADERS}/Src FILES_MATCHING PATTERN *.h)
install(FILES scriptdata/bstr.h scriptdata/com_object.h scriptdata/com_ptr.h scriptdata/exception.h
  scriptdata/unique.h scriptdata/variant.h DESTINATION ${VHRT_HEADERS}/scriptdata)

install(DIRECTORY docs DESTINATION . FILES_MATCHING PATTERN *.md PATTERN *.svg PATTERN *.png PATTERN *.schema.json)
install(FILES types/vhrt.d.ts DESTINATION types)
# The pages link each other as in the sources.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md LICENSE DESTINATION .)
install(DIRECTORY samples DESTINATION .)
install(PROGRAMS scripts/stage-sdk DESTINATION scripts)
# The samples with windows bring their own libraries along, with what these are made of.
add_dependencies(product vhuser vhskin)
install(TARGETS vhuser LIBRARY DESTINATION samples/setup-ui)
install(TARGETS vhskin LIBRARY DESTINATION samples/skin)
install(DIRECTORY resources DESTINATION samples/setup-ui)

install(EXPORT VHRTTargets NAMESPACE VHRT:: DESTINATION lib/cmake/VHRT)
configure_package_config_file(cmake/VHRTConfig.cmake.in ${CMAKE_BINARY_DIR}/VHRTConfig.cmake
  INSTALL_DESTINATION lib/cmake/VHRT)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VHRTConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES cmake/mingw-w64.cmake DESTINATION lib/cmake/VHRT)
install(FILES ${CMAKE_BINARY_DIR}/VHRTConfig.cmake ${CMAKE_BINARY_DIR}/VHRTConfigVersion.cmake
  DESTINATION lib/cmake/VHRT)
