# Configures a host that has the sources inside its own project, and looks at what it gets: two libraries to link, and no
# setting, target, test or file of ours that it did not ask for.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

foreach(shared ON OFF)
    configure(${CMAKE_CURRENT_LIST_DIR}/subproject -DBREVANTO_SOURCE_DIR=${SOURCE_DIR} -DBUILD_SHARED_LIBS=${shared})
    file(REMOVE_RECURSE ${WORK_DIR}/build)
endforeach()
configure(${CMAKE_CURRENT_LIST_DIR}/subproject -DBREVANTO_SOURCE_DIR=${SOURCE_DIR})
