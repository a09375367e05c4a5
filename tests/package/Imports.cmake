# Qt packs into an application for a phone the QML modules that the application's own folder imports. What the library's
# scenes import is inside the library, so that each host has to name it, by `import Brevanto` or by a file of its own.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

function(scan result folder import_path)
    run(${SCANNER} -rootPath ${folder} -importPath ${import_path} -importPath ${QT_QML})
    string(REGEX MATCHALL "\"name\": \"[A-Za-z.]+\"" names "${OUTPUT}")
    list(TRANSFORM names REPLACE ".*: \"(.*)\"" "\\1")
    list(FILTER names EXCLUDE REGEX "^Brevanto")
    set(${result} ${names} PARENT_SCOPE)
endfunction()

scan(platform ${SOURCE_DIR}/Platform ${BUILD_DIR}/qml)
scan(sdk ${SOURCE_DIR}/Brevanto ${BUILD_DIR}/qml)
set(wanted ${platform} ${sdk})
list(REMOVE_DUPLICATES wanted)
foreach(module IN ITEMS QtMultimedia QtQuick.Controls.Basic QtWebView)
    if(NOT module IN_LIST wanted)
        message(FATAL_ERROR "The scanner does not find ${module} in the library's scenes: ${wanted}")
    endif()
endforeach()

function(check folder import_path)
    scan(found ${folder} ${import_path})
    set(missing ${wanted})
    list(REMOVE_ITEM missing ${found})
    if(missing)
        message(FATAL_ERROR "${folder} on a phone comes without ${missing}")
    endif()
endfunction()

check(${SOURCE_DIR}/examples/host ${BUILD_DIR}/qml)
check(${SOURCE_DIR}/examples/qml-host ${BUILD_DIR}/qml)
file(GLOB_RECURSE module ${PREFIX}/qmldir)
cmake_path(GET module PARENT_PATH module)
cmake_path(GET module PARENT_PATH installed)
check(${CMAKE_CURRENT_LIST_DIR}/qml ${installed})
# What a host in C++ copies.
check(${PREFIX}/share/brevanto ${installed})
