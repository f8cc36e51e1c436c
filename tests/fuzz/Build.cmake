# Configures and builds the project of the fuzzers.
execute_process(COMMAND ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR}
    -D CMAKE_CXX_COMPILER=${CLANG} -D CMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${BUILD} -j 2 COMMAND_ERROR_IS_FATAL ANY)

# What an earlier run has found would lead this one another way.
foreach(corpus reply settings)
    file(REMOVE_RECURSE ${BUILD}/${corpus}-found)
    file(MAKE_DIRECTORY ${BUILD}/${corpus}-found)
endforeach()
