# vhrt_version(TARGET FILE TYPE DESCRIPTION): the version resource, from the project's one version number; a program
# also gets the manifest that says what it knows of Windows.
function(vhrt_version target version_file version_type version_description)
  set(manifest "")
  if(version_type STREQUAL VFT_APP)
    set(manifest "1 24 \"${CMAKE_SOURCE_DIR}/cmake/program.manifest\"")
  endif()
  configure_file(${CMAKE_SOURCE_DIR}/cmake/version.rc.in ${CMAKE_BINARY_DIR}/versions/${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_BINARY_DIR}/versions/${target}.rc)
  set_source_files_properties(${CMAKE_BINARY_DIR}/versions/${target}.rc PROPERTIES
    OBJECT_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/program.manifest)
endfunction()
