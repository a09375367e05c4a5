# Builds and runs a host application from outside against the installed package.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

configure(${CMAKE_CURRENT_LIST_DIR}/${LANGUAGE} -DCMAKE_PREFIX_PATH=${PREFIX})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/build)
run(${SOURCE_DIR}/script/with-display ${WORK_DIR}/build/consumer)

# The same source once more, with what pkg-config says.
find_program(pkg_config pkg-config)
file(GLOB_RECURSE pc_file ${PREFIX}/*/brevanto.pc)
if(LANGUAGE STREQUAL "cpp" AND pkg_config AND pc_file AND NOT SANITIZE)
    cmake_path(GET pc_file PARENT_PATH folder)
    set(ENV{PKG_CONFIG_PATH} ${folder})
    run(${pkg_config} --cflags --libs brevanto Qt6Quick)
    separate_arguments(flags UNIX_COMMAND "${OUTPUT}")
    cmake_path(GET folder PARENT_PATH libraries)
    run(${COMPILER} -std=c++20 -fPIC ${CMAKE_CURRENT_LIST_DIR}/cpp/main.cpp -o ${WORK_DIR}/consumer ${flags}
        -Wl,-rpath,${libraries})
    run(${SOURCE_DIR}/script/with-display ${WORK_DIR}/consumer)
endif()
