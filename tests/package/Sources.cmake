# Builds and runs hosts from outside, in C++ and in QML, that have the sources inside their own project. The two ways build in
# the same folder, so that the second compiles next to nothing.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

set(CONFIG "") # whatever compiles fastest
set(sources -DFETCHCONTENT_SOURCE_DIR_BREVANTO=${SOURCE_DIR})
build_and_run(cpp -DWAY=FetchContent -DBUILD_SHARED_LIBS=ON -DBREVANTO_INSTALL=ON ${sources})
start(${WORK_DIR}/build/qml/qml_consumer)

# A host that installs itself takes the library along.
run(${CMAKE_COMMAND} --install ${WORK_DIR}/build --prefix ${WORK_DIR}/prefix)
file(RENAME ${WORK_DIR}/build ${WORK_DIR}/moved)
start(${WORK_DIR}/prefix/bin/cpp_consumer)
file(RENAME ${WORK_DIR}/moved ${WORK_DIR}/build)

build_and_run(cpp -DWAY=add_subdirectory -DBUILD_SHARED_LIBS=OFF -DBREVANTO_INSTALL=OFF ${sources})
start(${WORK_DIR}/build/qml/qml_consumer)
