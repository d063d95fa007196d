# The installed package serves a host of another build: install, configure the sample host, build it, run it.
# Variables: BUILD (build folder of the product), SAMPLE, TOOLCHAIN (may be empty), RUNNER, WORK.
file(REMOVE_RECURSE ${WORK})

function(must)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out TIMEOUT 300)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}: exit code ${result}\n${out}")
  endif()
  set(out "${out}" PARENT_SCOPE)
endfunction()

must(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/sdk)
must(${CMAKE_COMMAND} -S ${SAMPLE} -B ${WORK}/build -G Ninja -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}
  -DCMAKE_BUILD_TYPE=Release -DVHRT_DIR=${WORK}/sdk/lib/cmake/VHRT)
must(${CMAKE_COMMAND} --build ${WORK}/build)
must(${RUNNER} ${WORK}/build/tiny_host.exe)
string(REPLACE "\r" "" out "${out}")
if(NOT out MATCHES "product.json\nsetup.js\n2 names")
  message(FATAL_ERROR "the sample host said\n${out}")
endif()
