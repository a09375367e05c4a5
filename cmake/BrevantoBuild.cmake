# Settings that every target of this project shares.
function(brevanto_target_defaults target)
    target_compile_features(${target} PUBLIC cxx_std_20)
    set_target_properties(${target} PROPERTIES
        CXX_EXTENSIONS OFF
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON
        AUTOMOC ON)
    target_compile_definitions(${target} PRIVATE
        QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS QT_NO_FOREACH
        QT_DISABLE_DEPRECATED_BEFORE=0x060400)
    if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
        target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Woverloaded-virtual -Wshadow)
        if(BREVANTO_WARNINGS_AS_ERRORS)
            target_compile_options(${target} PRIVATE -Werror)
        endif()
        # As Qt is built: -O3, which CMake takes by itself, is larger. And so that the linker can leave out what nothing calls.
        target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O2 -ffunction-sections -fdata-sections>)
        if(BREVANTO_SANITIZE)
            list(JOIN BREVANTO_SANITIZE "," sanitizers)
            # Without vptr: it knows objects by their RTTI, and Qt WebEngine's items are built without.
            target_compile_options(${target} PRIVATE
                -fsanitize=${sanitizers} -fno-sanitize=vptr -fno-omit-frame-pointer)
            target_link_options(${target} PUBLIC -fsanitize=${sanitizers})
            get_target_property(type ${target} TYPE)
            if(type STREQUAL "EXECUTABLE")
                target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/sanitizers/KeepLibraries.cpp)
            endif()
        endif()
    endif()
endfunction()

# Ends the configuration when the address in that variable is neither this machine's nor one of HTTPS.
function(brevanto_require_secure_address variable)
    if(NOT "${${variable}}" MATCHES "^(https://|http://(127[.]0[.]0[.]1|localhost|\\[::1\\])(:[0-9]+)?(/|$))")
        message(FATAL_ERROR "${variable} is \"${${variable}}\": beyond this machine it has to be an https address")
    endif()
endfunction()

# The QML compiler's C++ is not ours to mend; and there is so much of it that its speed is not worth its room.
# After qt_add_qml_module, in the same folder.
function(brevanto_silence_generated_sources target)
    get_target_property(generated ${target} SOURCES)
    list(FILTER generated INCLUDE REGEX "qmlcache.*\\.cpp$")
    set_property(SOURCE ${generated} APPEND PROPERTY COMPILE_OPTIONS -w $<$<CONFIG:Release>:-Os>)
endfunction()

# As generated, a QML module's types, resources and compiled scenes are registered while the library is loaded. Makes them
# wait for a call of `void register<target>()`. After qt_add_qml_module, with its OUTPUT_TARGETS.
function(brevanto_register_on_demand target resource_targets)
    get_target_property(module ${target} QT_QML_MODULE_URI)
    string(REPLACE "." "_" module ${module})
    if(resource_targets)
        set_target_properties(${resource_targets} PROPERTIES AUTOMOC OFF)
    endif()
    # Which of the targets has which source depends on Qt's version.
    set(calls "")
    foreach(owner IN ITEMS ${target} ${resource_targets})
        get_target_property(sources ${owner} SOURCES)
        foreach(source IN LISTS sources)
            if(source MATCHES "/qrc_[^/]+_init[.]cpp$")
                set(header References.h)
            elseif(source MATCHES "/qrc_([^/]+)[.]cpp$")
                set(header Resources.h)
                string(APPEND calls "        Q_INIT_RESOURCE(${CMAKE_MATCH_1});\n")
            elseif(source MATCHES "_qmlcache_loader[.]cpp$")
                set(header Types.h)
                string(APPEND calls "        Q_INIT_RESOURCE(qmlcache_${target});\n")
            elseif(source MATCHES "qmltyperegistrations[.]cpp$")
                set(header Types.h)
            else()
                continue()
            endif()
            set_source_files_properties(${source} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
            set_property(SOURCE ${source} APPEND PROPERTY
                COMPILE_OPTIONS -include ${PROJECT_SOURCE_DIR}/cmake/on-demand/${header})
        endforeach()
    endforeach()
    file(CONFIGURE OUTPUT ${target}Registration.cpp CONTENT [[
#include <QtCore/qglobal.h>

extern void qml_register_types_@module@();

void register@target@()
{
    static const bool isRegistered = [] {
        qml_register_types_@module@();
@calls@        return true;
    }();
    Q_UNUSED(isRegistered)
}
]] @ONLY)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${target}Registration.cpp)
endfunction()

# What nearly every source of a target includes through others, compiled once. Sources still include what they use:
# script/lint reads them without this.
function(brevanto_precompile target)
    target_precompile_headers(${target} PRIVATE
        <algorithm> <array> <atomic> <chrono> <functional> <memory> <optional> <vector>
        <QByteArray> <QCoreApplication> <QDateTime> <QFile> <QHash> <QImage> <QJsonObject> <QMutex> <QObject>
        <QPointer> <QQmlEngine> <QQuickWindow> <QString> <QUrl> <QVariant> <QtQmlIntegration>
        ${ARGN})
endfunction()
