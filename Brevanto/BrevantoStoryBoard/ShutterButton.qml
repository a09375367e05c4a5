import QtQuick
import QtQuick.Templates as T

// The white ring that takes the photo.
T.AbstractButton {
    id: control

    implicitWidth: 72
    implicitHeight: 72
    focusPolicy: Qt.StrongFocus
    opacity: enabled ? 1 : 0.4

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: control.clicked()

    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        radius: width / 2
        color: "transparent"
        border.width: 4
        border.color: control.visualFocus ? "#4da3ff" : "white"
    }
    contentItem: Item {
        Rectangle {
            anchors.centerIn: parent
            width: parent.width - 14
            height: width
            radius: width / 2
            color: control.pressed ? "#d0d0d0" : "white"
            scale: control.pressed ? 0.88 : 1

            Behavior on scale {
                NumberAnimation { duration: 90; easing.type: Easing.OutQuad }
            }
        }
    }
}
