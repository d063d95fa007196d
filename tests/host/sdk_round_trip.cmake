# The sample product from end to end: what it writes to the registry and the program folder is there after the setup
# and gone after the removal, and what stood there before is back.
# Variables: RUNNER, HOST, BUILD (build folder of the product), SOURCE, WORK (a folder of the test's own).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
include(${CMAKE_CURRENT_LIST_DIR}/expect.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/stage.cmake)

stage_sdk(${WORK}/sdk)

expect("its check" 0 "no faults" ${WORK}/sdk/payload/bin/vhtool.exe product check ${WORK}/sdk)

set(root "HKCU\\Software\\VHRTRoundTrip")
set(key "${root}\\HKCU\\Software\\VHRT\\SDK")
set(menu "${WORK}/programs/VHRT SDK")
set(here --data ${WORK}/log --registry-root ${root} --var PROGRAMS=${WORK}/programs)
execute_process(COMMAND ${RUNNER} reg delete ${root} /f OUTPUT_QUIET ERROR_QUIET)

# Another product's shortcut of the same name and another's value stand there first.
expect("a first setup" 0 "" ${HOST} ${WORK}/sdk ${here} --silent --target ${WORK}/other)
expect_file("its shortcut" TRUE "${menu}/VHRT tool.lnk")
file(SHA256 "${menu}/VHRT tool.lnk" foreign)
file(REMOVE "${menu}/VHRT guides.lnk")
file(REMOVE_RECURSE ${WORK}/log)
expect("another's value" 0 "" reg add ${key} /v Folder /d "C:\\before" /f)

expect("setup" 0 "" ${HOST} ${WORK}/sdk ${here} --silent --target ${WORK}/target)
expect_file("program folder" TRUE "${menu}/VHRT guides.lnk")
file(SHA256 "${menu}/VHRT tool.lnk" ours)
if(ours STREQUAL foreign)
  message(SEND_ERROR "the shortcut was not replaced")
endif()
expect("the folder's value" 0 "\\target" reg query ${key} /v Folder)
expect("a number" 0 "0x5" reg query ${key} /v Parts)
expect("a feature's key" 0 "\\target\\bin" reg query ${key}\\Tools /v Path)
expect("nothing outside the run's own root" 1 "" reg query HKCU\\Software\\VHRT\\SDK /v Folder)
expect("a root that does not exist" 4 "no such registry root" ${HOST} ${WORK}/sdk --silent --data ${WORK}/log
  --registry-root "HKXX\\Software")

expect("removal" 0 "restored: value" ${HOST} ${WORK}/sdk --data ${WORK}/log --uninstall)
expect("the earlier value" 0 "C:\\before" reg query ${key} /v Folder)
expect_file("a new shortcut goes" FALSE "${menu}/VHRT guides.lnk")
expect_file("the library goes" FALSE ${WORK}/target/bin/VHRT.dll)
file(SHA256 "${menu}/VHRT tool.lnk" back)
if(NOT back STREQUAL foreign)
  message(SEND_ERROR "the other product's shortcut is not back")
endif()
expect("the test's key goes" 0 "" reg delete ${root} /f)
message("${checks} runs checked")
