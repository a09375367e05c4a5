import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Window

// A button of a bar: its image in a touch target that is never smaller than a finger.
AbstractButton {
    id: control

    property var item
    property color tintColor: "white"

    implicitWidth: Math.max(item.size.width, 44)
    implicitHeight: 44
    enabled: item.enabled
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: item.accessibleName
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        anchors.centerIn: parent
        width: 40
        height: 40
        radius: 8
        color: control.hovered && control.enabled ? Qt.alpha(control.tintColor, 0.12) : "transparent"
        border.width: control.visualFocus ? 2 : 0
        border.color: control.tintColor
    }
    contentItem: Item {
        Image {
            readonly property size naturalSize: control.item.size.width > 0 ? control.item.size : Qt.size(27, 27)

            anchors.centerIn: parent
            width: naturalSize.width
            height: naturalSize.height
            source: control.item.source(control.tintColor)
            sourceSize.width: width * Screen.devicePixelRatio
            sourceSize.height: height * Screen.devicePixelRatio
            fillMode: Image.PreserveAspectFit
            opacity: !control.enabled ? 0.35 : control.down ? 0.4 : 1
        }
    }
}
