# What makes an example host an application of a phone: manifest, permissions, orientation, icon. Nothing on desktops.
function(brevanto_phone_package target name)
    set(folder ${PROJECT_SOURCE_DIR}/examples/phone)
    if(ANDROID)
        set_target_properties(${target} PROPERTIES
            QT_ANDROID_PACKAGE_SOURCE_DIR ${folder}/android
            QT_ANDROID_VERSION_NAME ${PROJECT_VERSION}
            QT_ANDROID_VERSION_CODE 1
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
