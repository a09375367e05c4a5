# What makes an example host an application of a phone: manifest, permissions, orientation, icon. Nothing on desktops.
function(brevanto_phone_package target name)
    set(folder ${PROJECT_SOURCE_DIR}/examples/phone)
    if(ANDROID)
        # A part of a package's name has no hyphens.
        string(REPLACE "-" "_" package ${target})
        set(package org.brevanto.${package})
        set(package_folder ${CMAKE_CURRENT_BINARY_DIR}/android)
        file(COPY ${folder}/android/res DESTINATION ${package_folder})
        configure_file(${folder}/android/AndroidManifest.xml.in ${package_folder}/AndroidManifest.xml @ONLY)
        # Two digits each for the minor version and the patch: a later version's code is the greater one.
        math(EXPR version_code
            "(${PROJECT_VERSION_MAJOR} * 100 + ${PROJECT_VERSION_MINOR}) * 100 + ${PROJECT_VERSION_PATCH}")
        set_target_properties(${target} PROPERTIES
            QT_ANDROID_PACKAGE_SOURCE_DIR ${package_folder}
            QT_ANDROID_VERSION_NAME ${PROJECT_VERSION}
            QT_ANDROID_VERSION_CODE ${version_code}
            QT_QML_IMPORT_PATH ${PROJECT_BINARY_DIR}/qml)
    elseif(IOS)
        set(icons ${folder}/ios/Assets.xcassets)
        target_sources(${target} PRIVATE ${icons})
        set_source_files_properties(${icons} PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
        set_target_properties(${target} PROPERTIES
            MACOSX_BUNDLE ON
            MACOSX_BUNDLE_INFO_PLIST ${folder}/ios/Info.plist.in
            MACOSX_BUNDLE_BUNDLE_NAME ${name}
            MACOSX_BUNDLE_GUI_IDENTIFIER org.brevanto.${target}
            MACOSX_BUNDLE_BUNDLE_VERSION ${PROJECT_VERSION}
            MACOSX_BUNDLE_SHORT_VERSION_STRING ${PROJECT_VERSION}
            XCODE_ATTRIBUTE_ASSETCATALOG_COMPILER_APPICON_NAME AppIcon
            XCODE_ATTRIBUTE_TARGETED_DEVICE_FAMILY "1,2")
    endif()
endfunction()
