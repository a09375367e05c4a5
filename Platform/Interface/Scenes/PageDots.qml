pragma ComponentBehavior: Bound

import QtQuick

// The dots of a page control. A row too long for the view is cut: it follows the page, and its ends taper off. Only the
// dots that are seen exist.
Item {
    id: root

    property int count
    property int currentPage
    readonly property real pitch: 16
    // How many dots are seen at once, an odd number when not all are.
    readonly property int shown: {
        const room = Math.max(1, Math.floor((width - 32) / pitch))
        return count <= room ? count : Math.min(11, room - (room + 1) % 2)
    }
    readonly property int first: Math.max(0, Math.min(count - shown, currentPage - (shown - 1) / 2))

    anchors.fill: parent
    Accessible.role: Accessible.Indicator
    Accessible.name: qsTr("Page %1 of %2").arg(currentPage + 1).arg(count)

    ListView {
        anchors.centerIn: parent
        width: root.shown * root.pitch
        height: root.pitch
        clip: root.shown < root.count
        orientation: ListView.Horizontal
        interactive: false
        cacheBuffer: 0
        model: root.count
        contentX: root.first * root.pitch
        delegate: Item {
            id: dot

            required property int index
            // How far from where the row is cut.
            readonly property int fromStart: root.first === 0 ? 2 : index - root.first
            readonly property int fromEnd: root.first + root.shown === root.count ? 2 : root.first + root.shown - 1 - index
            readonly property int fromCut: Math.min(fromStart, fromEnd)

            width: root.pitch
            height: root.pitch

            Rectangle {
                anchors.centerIn: parent
                width: 8
                height: 8
                radius: 4
                color: "white"
                border.width: 1
                border.color: "#40000000"
                opacity: dot.index === root.currentPage ? 1 : 0.45
                scale: dot.fromCut > 1 ? 1 : dot.fromCut === 1 ? 0.75 : dot.fromCut === 0 ? 0.5 : 0

                Behavior on opacity {
                    NumberAnimation { duration: 150 }
                }
                Behavior on scale {
                    NumberAnimation { duration: 150 }
                }
            }
        }

        Behavior on contentX {
            NumberAnimation { duration: 200; easing.type: Easing.OutQuad }
        }
    }
}
