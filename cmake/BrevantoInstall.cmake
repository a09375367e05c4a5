# What `cmake --install` puts where: the library, its public headers, and what finds them again.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Brevanto)
# A folder of its own, because hosts may have folders of these names too.
set(headers_dir ${CMAKE_INSTALL_INCLUDEDIR}/brevanto)
set(BREVANTO_INSTALL_QMLDIR ${CMAKE_INSTALL_LIBDIR}/qt6/qml CACHE STRING "Folder of QML modules, within the prefix")
# A library calls what its Qt has; an older one may lack it.
set(qt_version ${Qt6_VERSION_MAJOR}.${Qt6_VERSION_MINOR})
set(qt_modules Core Gui Network Multimedia ${BREVANTO_PHONE_QT_MODULES})

set(targets Brevanto)
if(NOT BUILD_SHARED_LIBS)
    get_property(resource_targets GLOBAL PROPERTY BREVANTO_RESOURCE_TARGETS)
    list(APPEND targets BrevantoCore BrevantoPlatform ${resource_targets})
    list(APPEND qt_modules Qml Quick QuickControls2)
endif()
# Said here too for a CMake of hosts that does not know file sets yet.
target_include_directories(Brevanto INTERFACE $<INSTALL_INTERFACE:${headers_dir}>)
install(TARGETS ${targets} EXPORT BrevantoTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    OBJECTS DESTINATION ${CMAKE_INSTALL_LIBDIR}/brevanto
    FILE_SET HEADERS DESTINATION ${headers_dir})
install(EXPORT BrevantoTargets NAMESPACE Brevanto:: DESTINATION ${package_dir})

if(BREVANTO_BUILD_QML)
    get_property(module_targets GLOBAL PROPERTY BREVANTO_QML_MODULE_TARGETS)
    list(REMOVE_ITEM module_targets BrevantoQmlPlugin)
    install(TARGETS BrevantoQml ${module_targets} EXPORT BrevantoQmlTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        OBJECTS DESTINATION ${CMAKE_INSTALL_LIBDIR}/brevanto)
    install(EXPORT BrevantoQmlTargets NAMESPACE Brevanto:: DESTINATION ${package_dir})
    install(FILES ${PROJECT_SOURCE_DIR}/Brevanto/Qml/BrevantoQmlImport.cpp
        DESTINATION ${CMAKE_INSTALL_DATADIR}/brevanto)
    set(module_dir ${BREVANTO_INSTALL_QMLDIR}/Brevanto)
    if(TARGET BrevantoQmlPlugin)
        file(RELATIVE_PATH libraries_from_module /prefix/${module_dir} /prefix/${CMAKE_INSTALL_LIBDIR})
        set_target_properties(BrevantoQmlPlugin PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_module}")
        install(TARGETS BrevantoQmlPlugin LIBRARY DESTINATION ${module_dir} RUNTIME DESTINATION ${module_dir})
    endif()
    install(FILES ${PROJECT_BINARY_DIR}/qml/Brevanto/qmldir ${PROJECT_BINARY_DIR}/qml/Brevanto/BrevantoQml.qmltypes
        DESTINATION ${module_dir})
endif()

# For hosts in C++ on phones.
install(FILES ${PROJECT_SOURCE_DIR}/examples/host/BrevantoImports.qml DESTINATION ${CMAKE_INSTALL_DATADIR}/brevanto)

list(JOIN qt_modules " " qt_modules_text)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/BrevantoConfig.cmake.in BrevantoConfig.cmake
    INSTALL_DESTINATION ${package_dir}
    PATH_VARS BREVANTO_INSTALL_QMLDIR
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(BrevantoConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/BrevantoConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/BrevantoConfigVersion.cmake
    DESTINATION ${package_dir})

# The static library is more than an archive: what it needs is for CMake alone to say.
if(BUILD_SHARED_LIBS)
    list(TRANSFORM qt_modules PREPEND "Qt6" OUTPUT_VARIABLE pkg_config_requires)
    list(JOIN pkg_config_requires " >= ${qt_version}, " pkg_config_requires)
    # Where the libraries stand is said by where this file is, so that a prefix can be moved.
    file(RELATIVE_PATH pkg_config_prefix /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/brevanto.pc.in brevanto.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/brevanto.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()

if(PROJECT_IS_TOP_LEVEL)
    set(CPACK_GENERATOR DEB TGZ)
    set(CPACK_PACKAGE_VENDOR "The Brevanto developers")
    set(CPACK_PACKAGE_CONTACT "The Brevanto developers <brevanto@localhost>")
    set(CPACK_PACKAGE_DESCRIPTION "A host application links the library and calls one object: its user photographs a printed
 advertisement and sees it with hotspots on everything that can be opened there.")
    set(CPACK_STRIP_FILES ON)
    set(CPACK_DEBIAN_PACKAGE_NAME libbrevanto-dev)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    # What is looked for at run time or included by the headers is nothing that the binaries tell.
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-base-dev, qt6-declarative-dev, qt6-multimedia-dev, qml6-module-qtquick, \
qml6-module-qtquick-controls, qml6-module-qtquick-templates, qml6-module-qtquick-window, \
qml6-module-qtqml-workerscript, qml6-module-qtmultimedia, qt6-svg-plugins | libqt6svg6 (<< 6.5)")
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-webview-dev, qt6-webview-plugins, qml6-module-qtwebview, \
gstreamer1.0-plugins-good, gstreamer1.0-libav")
    include(CPack)
endif()
