# Steps that the checks of whole programs share. RUNNER starts a Windows program.
set(checks 0)

# expect(NAME CODE TEXT COMMAND...): runs it and checks exit code and output.
function(expect name code text)
  execute_process(COMMAND ${RUNNER} ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out TIMEOUT 60)
  if(NOT result STREQUAL code)
    message(SEND_ERROR "${name}: exit code ${result} instead of ${code}\n${out}")
  endif()
  string(FIND "${out}" "${text}" found)
  if(found EQUAL -1)
    message(SEND_ERROR "${name}: no \"${text}\" in\n${out}")
  endif()
  math(EXPR checks "${checks} + 1")
  set(checks ${checks} PARENT_SCOPE)
endfunction()

function(expect_file name wanted path)
  if((wanted AND NOT EXISTS ${path}) OR (NOT wanted AND EXISTS ${path}))
    message(SEND_ERROR "${name}: ${path}")
  endif()
endfunction()
