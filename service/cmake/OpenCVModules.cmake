# Targets opencv_<module> for the modules given. The package configuration is used where there is one; distributions that
# package the modules one by one ship libraries and headers without it.
function(find_opencv_modules)
    find_package(OpenCV 4.5 QUIET CONFIG COMPONENTS ${ARGN})
    if(OpenCV_FOUND)
        return()
    endif()
    find_path(OpenCV_INCLUDE_DIR opencv2/core.hpp PATH_SUFFIXES opencv4 REQUIRED)
    foreach(module ${ARGN})
        find_library(OpenCV_${module}_LIBRARY opencv_${module} REQUIRED)
        add_library(opencv_${module} UNKNOWN IMPORTED GLOBAL)
        set_target_properties(opencv_${module} PROPERTIES
            IMPORTED_LOCATION ${OpenCV_${module}_LIBRARY}
            INTERFACE_INCLUDE_DIRECTORIES ${OpenCV_INCLUDE_DIR})
        if(NOT module STREQUAL core)
            target_link_libraries(opencv_${module} INTERFACE opencv_core)
        endif()
    endforeach()
endfunction()
