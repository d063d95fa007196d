# The sample product shows a read-me from the network, and is installed without it when the address fails. Runs beside
# tests/network/server.py. A dialog would keep a run from ending.
# Variables: RUNNER, HOST, BUILD (build folder of the product), SOURCE, WORK (a folder of the test's own).
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
include(${CMAKE_CURRENT_LIST_DIR}/expect.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/stage.cmake)
stage_sdk(${WORK}/sdk)

set(server http://127.0.0.1:$ENV{VHRT_HTTP_PORT})

# expect_setup(NAME TEXT ADDRESS): a silent setup shows the text, and is done.
function(expect_setup name text address)
  expect("${name}" 0 "${text}" ${HOST} ${WORK}/sdk --silent --data ${WORK}/log --target ${WORK}/target
    --registry-root HKCU\\Software\\VHRTReadMe --var PROGRAMS=${WORK}/programs --var SETUPTYPE=Compact
    --var README_URL=${address})
  set(checks ${checks} PARENT_SCOPE)
  expect_file("${name}: installed" TRUE ${WORK}/target/bin/VHRT.dll)
  file(REMOVE_RECURSE ${WORK}/target ${WORK}/log)
endfunction()

# expect_requests(NAME LEAST MOST KEY): how often the server was asked under the key.
function(expect_requests name least most key)
  file(DOWNLOAD "${server}/log?key=${key}" ${WORK}/requests.txt)
  file(STRINGS ${WORK}/requests.txt requests)
  list(LENGTH requests count)
  if(count LESS least OR count GREATER most)
    message(SEND_ERROR "${name}: ${count} requests, not ${least} to ${most}\n${requests}")
  endif()
endfunction()

expect_setup("a read-me" "read-me:\n    one\n    two\n    three\n" "${server}/readme.txt?text=one~two~three")
expect_setup("one in UTF-16" "read-me:\n    one\n    two\n" "${server}/readme.txt?wide=one~two")
expect_setup("one that comes with the second try" "    one\n    two\n"
  "${server}/readme.txt?text=one~two&drop=5&times=1&key=second")
expect_setup("one without a length" "There is no text at" "${server}/readme.txt?text=one~two&length=none")
expect_setup("a page that is not there" "can't be shown: the server answers 404. The setup goes on without it"
  "${server}/readme.txt?status=404&key=missing")
# For the mark, the size and the text.
expect_requests("a server's word is not asked for twice" 1 3 missing)
expect_setup("a server that drops the line" "can't be shown: system error" "${server}/readme.txt?text=one~two&drop=5&key=drop")
expect_requests("a dropped line is tried again" 6 20 drop)
expect_setup("a port where nobody listens" "can't be shown: system error 12029" "http://127.0.0.1:9/readme.txt")
expect_setup("no address" "README_URL has to be like http://" "${WORK}/nothing.txt")
execute_process(COMMAND ${RUNNER} reg delete HKCU\\Software\\VHRTReadMe /f OUTPUT_QUIET ERROR_QUIET)
message("${checks} runs checked")
