import QtQuick
import QtQuick.Controls.Basic
import Brevanto.Platform

AbstractButton {
    id: control

    required property var choice

    implicitHeight: Math.max(44, Math.ceil(implicitContentHeight) + 20)
    implicitWidth: implicitContentWidth + 24
    text: choice.text
    focusPolicy: Qt.StrongFocus
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: control.clicked()
    Keys.onReturnPressed: control.clicked()
    Keys.onEnterPressed: control.clicked()

    background: Rectangle {
        color: control.down ? "#1f000000" : control.hovered ? "#0d000000" : "transparent"

        Rectangle {
            anchors.fill: parent
            anchors.margins: 3
            radius: 8
            visible: control.visualFocus
            color: "transparent"
            border.width: 2
            border.color: "#007aff"
        }
    }
    contentItem: Text {
        text: control.text
        textFormat: Text.PlainText
        font: control.choice.isCancel ? SystemFont.semibold(17) : SystemFont.regular(17)
        color: control.choice.isDestructive ? "#ff3b30" : "#007aff"
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        elide: Text.ElideRight
        maximumLineCount: 2
    }
}
