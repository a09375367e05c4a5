# Builds and runs a host application from outside against the installed package.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(arguments "")
if(LANGUAGE STREQUAL "cpp")
    set(arguments -DHEADERS=${PREFIX}/include/brevanto)
endif()
build_and_run(${LANGUAGE} -DCMAKE_PREFIX_PATH=${PREFIX} ${arguments})

# What pkg-config says of the shared library, and the same source once more with that.
if(LANGUAGE STREQUAL "cpp" AND SHARED)
    find_program(pkg_config pkg-config REQUIRED)
    file(GLOB_RECURSE pc_file ${PREFIX}/brevanto.pc)
    cmake_path(GET pc_file PARENT_PATH folder)
    set(ENV{PKG_CONFIG_PATH} ${folder})
    run(${pkg_config} --modversion brevanto)
    if(NOT OUTPUT STREQUAL "${VERSION}\n")
        message(FATAL_ERROR "pkg-config takes version ${VERSION} for ${OUTPUT}")
    endif()
endif()
if(pkg_config AND NOT SANITIZE)
    run(${pkg_config} --cflags --libs brevanto Qt6Quick)
    separate_arguments(flags UNIX_COMMAND "${OUTPUT}")
    cmake_path(GET folder PARENT_PATH libraries)
    run(${COMPILER} -std=c++20 -fPIC ${CMAKE_CURRENT_LIST_DIR}/cpp/main.cpp -o ${WORK_DIR}/consumer ${flags}
        -Wl,-rpath,${libraries})
    start(${WORK_DIR}/consumer)
endif()
