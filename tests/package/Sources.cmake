# Builds and runs a host application from outside that has the sources inside its own project. The two ways build in the
# same folder, so that the second compiles next to nothing.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(CONFIG "") # whatever compiles fastest
set(sources -DFETCHCONTENT_SOURCE_DIR_BREVANTO=${SOURCE_DIR} -DBREVANTO_BUILD_QML=OFF)
build_and_run(cpp -DWAY=FetchContent -DBUILD_SHARED_LIBS=ON ${sources})
build_and_run(cpp -DWAY=add_subdirectory -DBUILD_SHARED_LIBS=OFF ${sources})
