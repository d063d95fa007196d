# The installed package serves a host of another build: install, configure the sample host, build it, run it.
# Variables: BUILD (build folder of the product), SETUP (a setup folder), TOOLCHAIN (may be empty), RUNNER, WORK.
file(REMOVE_RECURSE ${WORK})

function(must)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out TIMEOUT 300)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}: exit code ${result}\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

must(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/sdk)
must(${CMAKE_CURRENT_LIST_DIR}/links.py ${CMAKE_CURRENT_LIST_DIR}/../.. ${WORK}/sdk)

# The samples as the package brings them; a cross build takes its toolchain file.
if(TOOLCHAIN)
  set(TOOLCHAIN ${WORK}/sdk/lib/cmake/VHRT/mingw-w64.cmake)
endif()
foreach(sample host own-engine engine-host)
  must(${CMAKE_COMMAND} -S ${WORK}/sdk/samples/${sample} -B ${WORK}/${sample} -G Ninja
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_BUILD_TYPE=Release -DVHRT_DIR=${WORK}/sdk/lib/cmake/VHRT)
  must(${CMAKE_COMMAND} --build ${WORK}/${sample})
endforeach()

# The embedded engine in a host of another build: what it installs, and that it is gone again.
set(place ${SETUP} ${WORK}/target ${WORK}/data)
must(${RUNNER} ${WORK}/engine-host/engine_host.exe ${place})
if(NOT out MATCHES "100 %" OR NOT EXISTS ${WORK}/target/readme.txt)
  message(FATAL_ERROR "the host on the engine said\n${out}")
endif()
must(${RUNNER} ${WORK}/engine-host/engine_host.exe ${place} remove)
file(GLOB left ${WORK}/data/*)
if(EXISTS ${WORK}/target OR left)
  message(FATAL_ERROR "the host on the engine left ${left} and said\n${out}")
endif()

must(${RUNNER} ${WORK}/host/tiny_host.exe)
string(REPLACE "\r" "" out "${out}")
if(NOT out MATCHES "product.json\nsetup.js\n2 names")
  message(FATAL_ERROR "the sample host said\n${out}")
endif()

# An engine of the sample's own: what it made, and what it takes back.
file(WRITE ${WORK}/one.txt "one")
set(words ${WORK}/own-engine/own_engine.exe one.txt own)
execute_process(COMMAND ${RUNNER} ${words} fail WORKING_DIRECTORY ${WORK} RESULT_VARIABLE result ERROR_VARIABLE out OUTPUT_QUIET)
if(NOT result EQUAL 1 OR NOT out MATCHES "failed with 0x80070002; 4 steps taken back" OR EXISTS ${WORK}/own)
  message(FATAL_ERROR "the failed run ended with ${result} and said\n${out}")
endif()
must(${RUNNER} ${words} WORKING_DIRECTORY ${WORK})
file(READ ${WORK}/own/files/one.txt copied)
if(NOT copied STREQUAL one OR NOT IS_DIRECTORY ${WORK}/own/empty)
  message(FATAL_ERROR "the small engine copied \"${copied}\" and said\n${out}")
endif()
