# Makes the packages and looks into them, without installing anything.
include(${CMAKE_CURRENT_LIST_DIR}/Common.cmake)

foreach(generator IN ITEMS TGZ DEB)
    find_program(dpkg_shlibdeps dpkg-shlibdeps)
    if(generator STREQUAL "DEB" AND NOT dpkg_shlibdeps)
        continue()
    endif()
    run(cpack -G ${generator} -C ${CONFIG} --config ${BUILD_DIR}/CPackConfig.cmake -B ${WORK_DIR})
endforeach()

function(check_contents listing)
    foreach(wanted IN ITEMS "include/brevanto/Brevanto/Brevanto.h" "libBrevanto([.]so[.][0-9.]+|Core[.]a)\n"
            "cmake/Brevanto/BrevantoConfig.cmake" "qml/Brevanto/qmldir")
        if(NOT listing MATCHES "${wanted}")
            message(FATAL_ERROR "No ${wanted} in\n${listing}")
        endif()
    endforeach()
    if(listing MATCHES "[^\n]*(tst_|brevanto-host|match-service|catalogue|/tests/|/build/|[.]cmake[.]in)[^\n]*")
        message(FATAL_ERROR "${CMAKE_MATCH_0} is no part of a package")
    endif()
endfunction()

file(GLOB tarball ${WORK_DIR}/*.tar.gz)
run(${CMAKE_COMMAND} -E tar tf ${tarball})
check_contents("${OUTPUT}")

file(GLOB package ${WORK_DIR}/*.deb)
if(package)
    run(dpkg-deb -c ${package})
    check_contents("${OUTPUT}")
    # A static library names no other; what it needs comes with the packages for development.
    set(libraries "")
    if(OUTPUT MATCHES "libBrevanto[.]so")
        set(libraries ".*libqt6core6 .*libqt6quick6 ")
    endif()
    run(dpkg-deb -f ${package} Package Version Depends)
    if(NOT OUTPUT MATCHES "Package: libbrevanto-dev\n.*Version: ${VERSION}\n.*Depends: .*qt6-declarative-dev${libraries}")
        message(FATAL_ERROR "The package says of itself:\n${OUTPUT}")
    endif()

    # A host against what is in it.
    set(unpacked ${WORK_DIR}/unpacked)
    run(dpkg-deb -x ${package} ${unpacked})
    file(GLOB_RECURSE config ${unpacked}/BrevantoConfig.cmake)
    cmake_path(GET config PARENT_PATH folder)
    build_and_run(cpp -DBrevanto_DIR=${folder})
endif()
