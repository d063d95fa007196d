# The product and everything that runs on Windows (here: under Wine).
enable_language(RC)

target_compile_definitions(vhrt_options INTERFACE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN COBJMACROS_OFF WINVER=0x0A00 _WIN32_WINNT=0x0A00)
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_definitions(vhrt_options INTERFACE _GLIBCXX_ASSERTIONS)
  target_compile_options(vhrt_options INTERFACE -O1 -fsanitize=undefined -fsanitize-undefined-trap-on-error)
endif()

# Static runtime: nothing is needed beside the binaries but Windows. Aligned sections in the file let the
# loader map the DLL instead of copying it.
add_link_options(-static -Wl,--file-alignment=4096 -Wl,--section-alignment=4096)
# One commit gives the same bytes, whenever and wherever it is built.
add_link_options(-Wl,--no-insert-timestamp)
if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  add_link_options(-s)
endif()

function(vhrt_sources result)
  set(found)
  foreach(folder IN LISTS ARGN)
    file(GLOB in_folder CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
    list(APPEND found ${in_folder})
  endforeach()
  set(${result} ${found} PARENT_SCOPE)
endfunction()

# The library, as objects: the DLL and the tests of inner parts link the same ones.
vhrt_sources(library_sources Src/inc scriptdata diagnostics files system media pictures pictures/formats skin dialogs views runtime exports)
list(FILTER library_sources EXCLUDE REGEX "/runtime/load\\.cpp$")
add_library(vhrt_objects OBJECT ${library_sources})
target_link_libraries(vhrt_objects PUBLIC vhrt_options)
# The compiler would guess the null objects as the targets of virtual calls, which they hardly ever are.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(vhrt_objects PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-devirtualize-speculatively>)
endif()

add_library(VHRT SHARED runtime/load.cpp exports/VHRT.def)
target_link_libraries(VHRT PRIVATE vhrt_objects oleaut32)
set_target_properties(VHRT PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
target_include_directories(VHRT INTERFACE $<BUILD_INTERFACE:${CMAKE_SOURCE_DIR}/exports>)

include(cmake/version.cmake)
vhrt_version(VHRT VHRT.dll VFT_DLL "Run-time library of setup scripts")

# Resource libraries: the standard dialogs, pictures and texts, and what the sample's author adds. Neither has code.
function(vhrt_resource_library name source description)
  add_library(${name} MODULE ${source})
  vhrt_version(${name} ${name}.dll VFT_DLL ${description})
  set_target_properties(${name} PROPERTIES PREFIX "" LINKER_LANGUAGE C)
  target_link_options(${name} PRIVATE -nostdlib -Wl,-e,0)
endfunction()
vhrt_resource_library(vhres resources/vhres/vhres.rc "Standard dialogs, pictures and texts")
vhrt_resource_library(vhuser resources/vhuser/vhuser.rc "Dialogs of the sample setup")
vhrt_resource_library(vhskin resources/vhuser/vhskin.rc "Dialogs of the sample setup for a skin")
file(GLOB resource_parts CONFIGURE_DEPENDS resources/*.rc resources/*/*.h resources/*/*.rc resources/pictures/*.png)
set_source_files_properties(resources/vhres/vhres.rc resources/vhuser/vhuser.rc resources/vhuser/vhskin.rc PROPERTIES
  OBJECT_DEPENDS "${resource_parts}")

# The embedded engine: for hosts and tests, never in the DLL.
include(cmake/headers.cmake)
vhrt_sources(engine_sources engine engine/product engine/transfer engine/services engine/windows)
# Access lists are set, and moves put off, as the library does it.
list(APPEND engine_sources system/secure_object.cpp system/pending_operations.cpp system/reboot_move.cpp
  system/user_rights.cpp scriptdata/stringx.cpp scriptdata/format.cpp)
if(engine_sources)
  add_library(vhengine STATIC ${engine_sources})
  target_link_libraries(vhengine PUBLIC $<BUILD_INTERFACE:vhrt_options> PRIVATE $<BUILD_INTERFACE:vhrt_headers>
    PUBLIC z ole32 oleaut32 uuid shlwapi shell32)
endif()

# How tests start what is built here.
if(CMAKE_CROSSCOMPILING)
  set(WINE_RUNNER ${CMAKE_SOURCE_DIR}/scripts/wine-run)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${WINE_RUNNER})
endif()

# Programs. What the host's script side is made of, and the tool's reader, also serve the tests.
add_library(vhhost_parts STATIC
  host/call_frame.cpp host/call_record.cpp host/call_signature.cpp host/call_table.cpp host/console.cpp
  host/constants.cpp host/control_values.cpp
  host/host_object.cpp host/library.cpp host/named_values.cpp host/script_object.cpp host/script_site.cpp
  host/rights.cpp host/script_value.cpp host/text.cpp host/trace_switch.cpp host/version.cpp host/window_services.cpp
  tools/export_table.cpp)
set_source_files_properties(host/version.cpp PROPERTIES COMPILE_DEFINITIONS VHRT_VERSION="${PROJECT_VERSION}")
target_link_libraries(vhhost_parts PUBLIC vhrt_options vhrt_headers ole32 oleaut32 uuid)

add_executable(vhhost host/main.cpp host/setup_run.cpp host/modify_run.cpp host/removal_run.cpp host/script_run.cpp
  host/run_end.cpp host/answer_file.cpp host/answer_recorder.cpp host/answer_replay.cpp host/answers.cpp
  host/installed_tree.cpp host/kept_host.cpp host/packed_setup.cpp host/plan.cpp host/products.cpp
  host/run_log.cpp host/stop_signal.cpp host/wording.cpp)
vhrt_version(vhhost vhhost.exe VFT_APP "Runs setup scripts")
target_link_options(vhhost PRIVATE -municode)
target_link_libraries(vhhost PRIVATE vhhost_parts vhengine shell32)
# The library is loaded at run time, so that the trace switch can be set before.
add_dependencies(vhhost VHRT)

vhrt_sources(tool_sources tools)
list(FILTER tool_sources EXCLUDE REGEX "/export_table\\.cpp$")
if(tool_sources)
  add_executable(vhtool ${tool_sources})
  vhrt_version(vhtool vhtool.exe VFT_APP "Looks into trace files, INI files, pictures, skins and libraries of VHRT")
  target_link_options(vhtool PRIVATE -municode)
  target_link_libraries(vhtool PRIVATE vhhost_parts vhrt_objects vhengine)
endif()

# Tests: through the exports, and of inner parts directly. Each .cpp under tests/exports and tests/inner
# belongs to one program; tests/support is shared.
function(vhrt_test_program name folder)
  vhrt_sources(sources ${folder} tests/support)
  if(sources)
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${ARGN} vhrt_options gtest gtest_main ole32 oleaut32 uuid version)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
  endif()
endfunction()
# Resource libraries with texts: what a product brings along, and what a setup's author adds.
foreach(texts standard user dialogs)
  add_library(vhtexts_${texts} MODULE tests/texts/${texts}.rc)
  set_target_properties(vhtexts_${texts} PROPERTIES PREFIX "" LINKER_LANGUAGE C)
  target_link_options(vhtexts_${texts} PRIVATE -nostdlib -Wl,-e,0)
endforeach()
vhrt_test_program(vhrt_export_tests tests/exports VHRT $<TARGET_NAME_IF_EXISTS:vhengine> winspool)
# Stands in for a download agent.
add_executable(vhrt_test_agent WIN32 tests/agent/agent.cpp)
target_link_options(vhrt_test_agent PRIVATE -municode)
target_link_libraries(vhrt_test_agent PRIVATE vhrt_options)
# Stands in for the driver library.
add_library(vhtest_difxapi MODULE tests/drivers/difxapi.cpp)
set_target_properties(vhtest_difxapi PROPERTIES PREFIX "")
target_link_libraries(vhtest_difxapi PRIVATE vhrt_options)
add_dependencies(vhrt_export_tests vhrt_test_agent vhtest_difxapi)
add_dependencies(vhrt_export_tests vhtexts_standard vhtexts_user)
vhrt_test_program(vhrt_inner_tests tests/inner vhrt_objects shell32 comctl32)
# A service that stops, refuses or hangs.
add_executable(vhrt_test_service tests/service/service.cpp)
target_link_options(vhrt_test_service PRIVATE -municode)
target_link_libraries(vhrt_test_service PRIVATE vhrt_options)
# Registers itself.
add_library(vhrt_test_server MODULE tests/server/server.cpp)
set_target_properties(vhrt_test_server PROPERTIES PREFIX "")
target_link_libraries(vhrt_test_server PRIVATE vhrt_options)
add_executable(vhrt_test_program WIN32 tests/server/program.cpp)
target_link_options(vhrt_test_program PRIVATE -municode)
target_link_libraries(vhrt_test_program PRIVATE vhrt_options)
add_dependencies(vhrt_inner_tests vhtexts_standard vhrt_test_service vhrt_test_server vhrt_test_program)
set_source_files_properties(tests/inner/skin.cpp PROPERTIES COMPILE_DEFINITIONS VHRT_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
vhrt_test_program(vhrt_window_tests tests/windows VHRT vhengine comctl32)
add_dependencies(vhrt_window_tests vhtexts_standard vhtexts_user vhtexts_dialogs vhres vhuser vhskin)
set_tests_properties(vhrt_window_tests PROPERTIES ENVIRONMENT VHRT_PICTURES=${CMAKE_BINARY_DIR}/pictures)
if(CMAKE_CROSSCOMPILING)
  set_target_properties(vhrt_window_tests PROPERTIES CROSSCOMPILING_EMULATOR ${WINE_RUNNER}-x11)
endif()
# Presses the keys of a plan in a program with windows.
add_executable(vhrt_ui_driver tools/ui/driver.cpp)
vhrt_version(vhrt_ui_driver vhrt_ui_driver.exe VFT_APP "Presses the keys of a plan")
target_link_options(vhrt_ui_driver PRIVATE -municode)
target_link_libraries(vhrt_ui_driver PRIVATE vhrt_options)
vhrt_test_program(vhrt_engine_tests tests/engine vhengine)
vhrt_test_program(vhrt_format_tests tests/format)
file(GLOB format_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/pictures/formats/*.cpp)
list(APPEND format_sources ${CMAKE_SOURCE_DIR}/skin/skin_text.cpp ${CMAKE_SOURCE_DIR}/system/registration_script.cpp)
target_sources(vhrt_format_tests PRIVATE ${format_sources})
vhrt_test_program(vhrt_host_tests tests/host vhhost_parts)
# Beside a server that misbehaves.
vhrt_sources(network_tests tests/network)
add_executable(vhrt_network_tests ${network_tests})
target_link_libraries(vhrt_network_tests PRIVATE vhrt_objects vhengine gtest ole32 oleaut32 wininet crypt32 ws2_32)
add_test(NAME vhrt_network_tests
  COMMAND ${CMAKE_SOURCE_DIR}/tests/network/server.py ${WINE_RUNNER} $<TARGET_FILE:vhrt_network_tests>)
set_tests_properties(vhrt_network_tests PROPERTIES TIMEOUT 300)
target_compile_definitions(vhrt_host_tests PRIVATE VHRT_SOURCE_DIR="${CMAKE_SOURCE_DIR}")

# INI files that this machine has, which a script looks for.
add_executable(vhrt_real_file_tests tests/real/ini_files.cpp)
target_link_libraries(vhrt_real_file_tests PRIVATE vhrt_objects gtest gtest_main oleaut32)
add_test(NAME vhrt_real_file_tests COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER}
  -DTESTS=$<TARGET_FILE:vhrt_real_file_tests> -DLIST=${CMAKE_BINARY_DIR}/ini_files.txt
  -P ${CMAKE_SOURCE_DIR}/tests/real/ini_files.cmake)

# Versions of real executables, against a reader that shares nothing with the library.
add_executable(vhrt_print_versions tests/versions/print_versions.cpp)
target_link_libraries(vhrt_print_versions PRIVATE VHRT vhrt_options)
add_test(NAME versions_of_real_files COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/versions/check_versions.py
  ${CMAKE_SOURCE_DIR} ${WINE_RUNNER} $<TARGET_FILE:vhrt_print_versions> ${CMAKE_BINARY_DIR}/version_tests)
set_tests_properties(versions_of_real_files PROPERTIES TIMEOUT 300)
add_test(NAME every_export_is_called COMMAND ${CMAKE_SOURCE_DIR}/scripts/check-called)

# Scripts that check the exports from the inside of a setup, and runs that go wrong.
set(script_place ${CMAKE_BINARY_DIR}/host_tests/scripts)
add_test(NAME script_clean COMMAND ${CMAKE_COMMAND} -E rm -rf ${script_place})
set_tests_properties(script_clean PROPERTIES FIXTURES_SETUP script_place)
foreach(script values lists_and_files features actions dialogs)
  add_test(NAME script_${script} COMMAND vhhost ${CMAKE_SOURCE_DIR}/tests/host/setup --silent --var WHO=me
    --var DIALOGS=$<TARGET_FILE:vhtexts_dialogs>
    --data ${script_place}/${script}/log --target ${script_place}/${script}/target
    --script ${CMAKE_SOURCE_DIR}/tests/host/scripts/check.js
    --script ${CMAKE_SOURCE_DIR}/tests/host/scripts/${script}.js)
  set_tests_properties(script_${script} PROPERTIES FIXTURES_REQUIRED script_place TIMEOUT 120)
endforeach()
add_test(NAME host_failures COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER} -DHOST=$<TARGET_FILE:vhhost>
  -DTOOL=$<TARGET_FILE:vhtool> -DSETUP=${CMAKE_SOURCE_DIR}/tests/host/setup -DSOURCE=${CMAKE_SOURCE_DIR}
  -DWORK=${CMAKE_BINARY_DIR}/host_tests/failures -P ${CMAKE_SOURCE_DIR}/tests/host/failures.cmake)
# The whole life of a product, from its first installation to an empty machine.
add_test(NAME host_life COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/life.py ${WINE_RUNNER} $<TARGET_FILE:vhhost>
  ${CMAKE_BINARY_DIR}/host_tests/life 1)
add_test(NAME host_life_packed COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/life.py ${WINE_RUNNER}
  $<TARGET_FILE:vhhost> ${CMAKE_BINARY_DIR}/host_tests/life_packed 2 $<TARGET_FILE:vhtool>)
add_test(NAME host_life_killed COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/life.py ${WINE_RUNNER}
  $<TARGET_FILE:vhhost> ${CMAKE_BINARY_DIR}/host_tests/life_killed 3 kills=15)
set_tests_properties(host_life host_life_packed host_life_killed PROPERTIES TIMEOUT 600)
# What runs tell: logs, plans, answers.
add_test(NAME host_runs COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/runs.py ${WINE_RUNNER} $<TARGET_FILE:vhhost>
  ${CMAKE_BINARY_DIR}/host_tests/runs)
set_tests_properties(host_runs PROPERTIES TIMEOUT 300)
add_test(NAME host_stop COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/stop.py ${WINE_RUNNER} $<TARGET_FILE:vhhost>
  ${CMAKE_BINARY_DIR}/host_tests/stop)
set_tests_properties(host_stop PROPERTIES TIMEOUT 300)
add_test(NAME host_in_use COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/in_use.py ${WINE_RUNNER}
  $<TARGET_FILE:vhhost> $<TARGET_FILE:vhrt_test_program> ${CMAKE_BINARY_DIR}/host_tests/in_use)
set_tests_properties(host_in_use PROPERTIES TIMEOUT 600)
# What is in the programs that are handed out, and what they load.
add_test(NAME shipped_programs COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/shipped.py ${CMAKE_SOURCE_DIR}
  ${WINE_RUNNER} ${CMAKE_BINARY_DIR}/bin ${CMAKE_BINARY_DIR}/host_tests/shipped)
set_tests_properties(shipped_programs PROPERTIES TIMEOUT 300)
# A user without the rights of an administrator.
add_executable(vhrt_without_rights tests/rights/without_rights.cpp)
target_link_options(vhrt_without_rights PRIVATE -municode)
target_link_libraries(vhrt_without_rights PRIVATE vhrt_options)
add_test(NAME host_rights COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/rights.py ${WINE_RUNNER}
  $<TARGET_FILE:vhhost> $<TARGET_FILE:vhtool> $<TARGET_FILE:vhrt_without_rights> ${CMAKE_BINARY_DIR}/host_tests/rights)
set_tests_properties(host_rights PROPERTIES TIMEOUT 300)
add_test(NAME tool_ini COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER} -DTOOL=$<TARGET_FILE:vhtool>
  -DWORK=${CMAKE_BINARY_DIR}/host_tests/ini -P ${CMAKE_SOURCE_DIR}/tests/host/ini.cmake)
add_test(NAME tool_picture COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER} -DTOOL=$<TARGET_FILE:vhtool>
  -DSOURCE=${CMAKE_SOURCE_DIR} -DWORK=${CMAKE_BINARY_DIR}/host_tests/picture
  -P ${CMAKE_SOURCE_DIR}/tests/host/picture.cmake)
add_test(NAME tool_skin COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER} -DTOOL=$<TARGET_FILE:vhtool>
  -DSOURCE=${CMAKE_SOURCE_DIR} -DWORK=${CMAKE_BINARY_DIR}/host_tests/skin -P ${CMAKE_SOURCE_DIR}/tests/host/skin.cmake)
set_tests_properties(tool_skin PROPERTIES TIMEOUT 300)
add_executable(vhrt_changed_files tests/signing/change.cpp)
target_link_options(vhrt_changed_files PRIVATE -municode)
target_link_libraries(vhrt_changed_files PRIVATE vhrt_options vhrt_objects gtest ole32 oleaut32 uuid crypt32)
add_test(NAME tool_signing COMMAND ${CMAKE_SOURCE_DIR}/tests/host/signing.py ${WINE_RUNNER} $<TARGET_FILE:vhtool>
  $<TARGET_FILE:vhrt_changed_files> ${CMAKE_BINARY_DIR}/host_tests/signing)
set_tests_properties(tool_signing PROPERTIES TIMEOUT 600)
add_test(NAME tool_system COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER} -DTOOL=$<TARGET_FILE:vhtool>
  -DSERVER=$<TARGET_FILE:vhrt_test_server> -DWORK=${CMAKE_BINARY_DIR}/host_tests/system
  -P ${CMAKE_SOURCE_DIR}/tests/host/system.cmake)
set_tests_properties(tool_system PROPERTIES TIMEOUT 600)
add_test(NAME product_schema COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/schema.py ${CMAKE_SOURCE_DIR}
  ${WINE_RUNNER} $<TARGET_FILE:vhtool> ${CMAKE_BINARY_DIR}/host_tests/schema)
set_tests_properties(product_schema PROPERTIES TIMEOUT 600)
add_test(NAME script_types COMMAND python3 -B ${CMAKE_SOURCE_DIR}/tests/host/declarations.py ${CMAKE_SOURCE_DIR}
  ${WINE_RUNNER} $<TARGET_FILE:vhtool>)
set_tests_properties(script_types PROPERTIES TIMEOUT 300)
add_test(NAME host_package COMMAND ${CMAKE_COMMAND} -DBUILD=${CMAKE_BINARY_DIR} -DRUNNER=${WINE_RUNNER}
  -DSETUP=${CMAKE_SOURCE_DIR}/tests/host/setup -DTOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}
  -DWORK=${CMAKE_BINARY_DIR}/host_tests/package -P ${CMAKE_SOURCE_DIR}/tests/host/package.cmake)
add_test(NAME host_sdk_round_trip COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER} -DHOST=$<TARGET_FILE:vhhost>
  -DBUILD=${CMAKE_BINARY_DIR} -DSOURCE=${CMAKE_SOURCE_DIR} -DWORK=${CMAKE_BINARY_DIR}/host_tests/round_trip
  -P ${CMAKE_SOURCE_DIR}/tests/host/sdk_round_trip.cmake)
add_test(NAME host_wizard COMMAND ${CMAKE_COMMAND} -DRUNNER=${WINE_RUNNER} -DHOST=$<TARGET_FILE:vhhost>
  -DDRIVER=$<TARGET_FILE:vhrt_ui_driver> -DBUILD=${CMAKE_BINARY_DIR} -DSOURCE=${CMAKE_SOURCE_DIR}
  -DWORK=${CMAKE_BINARY_DIR}/host_tests/wizard -P ${CMAKE_SOURCE_DIR}/tests/host/wizard.cmake)
set_tests_properties(host_wizard PROPERTIES TIMEOUT 300)
# The same dialogs on displays of other densities, each in a prefix of its own.
foreach(density 144 192)
  add_test(NAME resource_libraries_${density}
    COMMAND ${WINE_RUNNER}-x11 $<TARGET_FILE:vhrt_window_tests> --gtest_filter=ResourceLibraries.*)
  set_tests_properties(resource_libraries_${density} PROPERTIES TIMEOUT 300 ENVIRONMENT
    "VHRT_DPI=${density};VHRT_SCREEN=1920x1200")
endforeach()
add_test(NAME host_read_me COMMAND ${CMAKE_SOURCE_DIR}/tests/network/server.py ${CMAKE_COMMAND}
  -DRUNNER=${WINE_RUNNER} -DHOST=$<TARGET_FILE:vhhost> -DBUILD=${CMAKE_BINARY_DIR} -DSOURCE=${CMAKE_SOURCE_DIR}
  -DWORK=${CMAKE_BINARY_DIR}/host_tests/read_me -P ${CMAKE_SOURCE_DIR}/tests/host/read_me.cmake)
set_tests_properties(host_read_me PROPERTIES TIMEOUT 300)

# Programs under Wine take turns; what needs none goes beside them.
get_property(wine_tests DIRECTORY PROPERTY TESTS)
set_tests_properties(${wine_tests} PROPERTIES RESOURCE_LOCK wine)
add_test(NAME clang_tidy COMMAND nice -n 19 ${CMAKE_SOURCE_DIR}/scripts/check-tidy)
set_tests_properties(clang_tidy PROPERTIES TIMEOUT 2400 COST 1000)

# Benchmarks: the host, the DLL of bare twins, and one that has the library's size and nothing else.
vhrt_sources(floor_sources bench/floor)
add_library(vhfloor SHARED ${floor_sources} bench/floor/vhfloor.def)
target_link_libraries(vhfloor PRIVATE vhrt_options oleaut32)
set_target_properties(vhfloor PROPERTIES PREFIX "")

add_custom_command(OUTPUT library_size.h
  COMMAND ${CMAKE_COMMAND} -DLIBRARY=$<TARGET_FILE:VHRT> -DOUTPUT=library_size.h
          -P ${CMAKE_SOURCE_DIR}/cmake/library_size.cmake
  DEPENDS VHRT ${CMAKE_SOURCE_DIR}/cmake/library_size.cmake)
add_library(vhsize SHARED bench/size/size.cpp library_size.h)
target_include_directories(vhsize PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
target_link_libraries(vhsize PRIVATE vhrt_options)
set_target_properties(vhsize PROPERTIES PREFIX "")

vhrt_sources(bench_sources bench)
add_executable(vhrt_bench ${bench_sources})
target_link_libraries(vhrt_bench PRIVATE vhrt_objects vhengine ole32 oleaut32 psapi)
add_dependencies(vhrt_bench VHRT vhfloor vhsize vhtexts_dialogs)
