cmake_minimum_required(VERSION 3.25)

# Runs a command and ends the test with its output when it fails. The output goes into the variable OUTPUT.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        list(JOIN ARGN " " command)
        message(FATAL_ERROR "${command}\n${output}\nended with ${result}")
    endif()
    set(OUTPUT "${output}" PARENT_SCOPE)
endfunction()

# Configures a project in WORK_DIR/build, with the tools that built the library.
function(configure project)
    list(JOIN SANITIZE "," sanitizers)
    if(sanitizers)
        list(APPEND ARGN "-DCMAKE_CXX_FLAGS=-fsanitize=${sanitizers}")
    endif()
    run(${CMAKE_COMMAND} -S ${project} -B ${WORK_DIR}/build -G ${GENERATOR} -DCMAKE_BUILD_TYPE=${CONFIG}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER} ${ARGN})
    set(OUTPUT "${OUTPUT}" PARENT_SCOPE)
endfunction()

function(start program)
    run(${SOURCE_DIR}/script/with-display ${program})
endfunction()

# Builds one of the outside hosts and starts it.
function(build_and_run host)
    configure(${CMAKE_CURRENT_FUNCTION_LIST_DIR}/${host} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
    start(${WORK_DIR}/build/${host}_consumer)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
