import QtQuick
import Brevanto.Platform

// A navigation bar's title, in the middle and between the buttons on either side.
Item {
    id: root

    required property NavigationController controller
    property real sideMargin

    BarButtonRow {
        id: left

        objectName: "leftBarButtonItems"
        x: root.sideMargin
        items: root.controller.topItem.leftBarButtonItems
        tintColor: root.controller.tintColor
        onActivated: index => root.controller.topItem.activateLeft(index)
    }
    Text {
        readonly property real room: 2 * Math.min(parent.width / 2 - (left.width > 0 ? left.x + left.width : 0),
                                                  parent.width / 2 - (right.width > 0 ? right.width + root.sideMargin : 0)) - 16

        objectName: "navigationBarTitle"
        anchors.centerIn: parent
        width: Math.max(0, room)
        text: root.controller.topItem.title
        textFormat: Text.PlainText
        font: root.controller.titleFont
        color: root.controller.titleColor
        horizontalAlignment: Text.AlignHCenter
        elide: Text.ElideRight
        maximumLineCount: 1
        Accessible.role: Accessible.Heading
        Accessible.name: text
    }
    BarButtonRow {
        id: right

        objectName: "rightBarButtonItems"
        anchors.right: parent.right
        anchors.rightMargin: root.sideMargin
        items: root.controller.topItem.rightBarButtonItems
        tintColor: root.controller.tintColor
        onActivated: index => root.controller.topItem.activateRight(index)
    }
}
