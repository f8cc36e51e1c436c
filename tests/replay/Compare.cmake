# Plays SCENARIO and compares what it prints with EXPECTED.
execute_process(COMMAND ${REPLAY} ${SCENARIO}
    OUTPUT_FILE ${ACTUAL} ERROR_VARIABLE errors RESULT_VARIABLE status)
if(NOT status EQUAL 0 OR NOT errors STREQUAL "")
    message(FATAL_ERROR "exit status ${status}: ${errors}")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${EXPECTED} ${ACTUAL}
    RESULT_VARIABLE differs)
if(differs)
    execute_process(COMMAND diff -u ${EXPECTED} ${ACTUAL})
    message(FATAL_ERROR "${ACTUAL} differs from ${EXPECTED}")
endif()
