import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import Brevanto.Platform

// An alert in the middle of the window over a dimmed backdrop.
View {
    id: scene

    required property AlertController controller
    property bool animated: true
    property alias popup: dialog

    Dialog {
        id: dialog

        // On whole points, so that the lines between the buttons are sharp.
        x: Math.round((scene.width - width) / 2)
        y: Math.round((scene.height - height) / 2)
        width: Math.min(270, scene.width - 32)
        height: Math.min(implicitHeight, scene.height - 48)
        padding: 0
        topPadding: 0
        bottomPadding: 0
        modal: true
        dim: true
        focus: true
        closePolicy: Popup.NoAutoClose
        title: scene.controller.title
        header: null
        footer: null
        onOpened: (contentItem as AlertContents).focusPreferredButton()

        enter: scene.animated ? appear : null
        exit: scene.animated ? disappear : null
        Transition {
            id: appear
            NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 180; easing.type: Easing.OutQuad }
            NumberAnimation { property: "scale"; from: 1.15; to: 1; duration: 220; easing.type: Easing.OutCubic }
        }
        Transition {
            id: disappear
            NumberAnimation { property: "opacity"; to: 0; duration: 160; easing.type: Easing.InQuad }
        }
        T.Overlay.modal: scene.animated ? fadingBackdrop : backdrop
        background: Rectangle {
            radius: 14
            color: "#f7f7f8"
        }
        contentItem: AlertContents {
            controller: scene.controller
        }
    }
    Component {
        id: backdrop

        Rectangle {
            color: "#66000000"
        }
    }
    Component {
        id: fadingBackdrop

        Rectangle {
            color: "#66000000"

            Behavior on opacity {
                NumberAnimation { duration: 180 }
            }
        }
    }
}
