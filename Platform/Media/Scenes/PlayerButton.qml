import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Window

// A glyph in a round touch target.
AbstractButton {
    id: control

    property string glyph
    property string name
    property real glyphSize: 22
    property bool hasDisc: false

    implicitWidth: 44
    implicitHeight: 44
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        radius: width / 2
        color: control.hasDisc ? "#99282828" : control.hovered ? "#22ffffff" : "transparent"
        border.width: control.visualFocus ? 2 : 0
        border.color: "white"
    }
    contentItem: Item {
        Image {
            anchors.centerIn: parent
            width: control.glyphSize
            height: control.glyphSize
            source: Qt.resolvedUrl("glyph_" + control.glyph + ".svg")
            sourceSize.width: width * Screen.devicePixelRatio
            sourceSize.height: height * Screen.devicePixelRatio
            opacity: control.down ? 0.5 : 1
        }
    }
}
