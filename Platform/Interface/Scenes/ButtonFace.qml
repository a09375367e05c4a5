import QtQuick
import QtQuick.Templates as T
import Brevanto.Platform

// What a button shows above its view's background: the image or else the title, the focus and the press.
T.AbstractButton {
    id: control

    property string name
    property color titleColor: "white"
    property real cornerRadius: 0
    property url imageSource
    property size imageSize
    property point imageOffset

    anchors.fill: parent
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        radius: control.cornerRadius
        color: control.down ? "#40000000" : "transparent"
        border.width: control.visualFocus ? 2 : 0
        border.color: "#4da3ff"
    }
    contentItem: Item {
        opacity: control.enabled ? 1 : 0.4

        Image {
            x: (parent.width - width) / 2 + control.imageOffset.x
            y: (parent.height - height) / 2 + control.imageOffset.y
            width: control.imageSize.width
            height: control.imageSize.height
            source: control.imageSource
            cache: false
        }
        Text {
            anchors.fill: parent
            visible: control.imageSize.width <= 0
            text: control.text
            textFormat: Text.PlainText
            font: SystemFont.medium(16)
            color: control.titleColor
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
        }
    }
}
