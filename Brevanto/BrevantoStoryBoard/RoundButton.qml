import QtQuick
import QtQuick.Templates as T

// A round translucent button with one icon. `text` is what assistive technology reads.
T.AbstractButton {
    id: control

    property url iconSource
    // What the button's translucent disc is made of: dark over a picture, light on a dark ground.
    property color tint: "black"
    // Shown lit: what the button switches is on.
    property bool selected: false

    implicitWidth: 44
    implicitHeight: 44
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.4
    scale: pressed ? 0.92 : 1

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.checkable: checkable
    Accessible.checked: selected
    Accessible.onPressAction: control.clicked()

    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        radius: width / 2
        color: control.selected ? "#f2ffffff" : Qt.alpha(control.tint, control.pressed ? 0.6 : control.hovered ? 0.45 : 0.35)
        border.width: control.visualFocus ? 2 : 0
        border.color: "#4da3ff"
    }
    contentItem: Item {
        Image {
            anchors.centerIn: parent
            width: 24
            height: 24
            source: control.iconSource
            sourceSize.width: 24
            sourceSize.height: 24
        }
    }

    Behavior on scale {
        NumberAnimation { duration: 90; easing.type: Easing.OutQuad }
    }
}
