# stage_sdk(FOLDER [SAMPLE]): the setup folder of the sample product, from what is built, with what the other sample
# adds. Needs BUILD and SOURCE.
function(stage_sdk folder)
  execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${folder}/payload OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND ${SOURCE}/scripts/stage-sdk ${SOURCE}/samples/sdk ${folder} ${ARGN} OUTPUT_QUIET
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()
