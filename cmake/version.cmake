# vhrt_version(TARGET FILE TYPE DESCRIPTION): the version resource, from the project's one version number.
function(vhrt_version target version_file version_type version_description)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/version.rc.in ${CMAKE_BINARY_DIR}/versions/${target}.rc @ONLY)
  target_sources(${target} PRIVATE ${CMAKE_BINARY_DIR}/versions/${target}.rc)
endfunction()
