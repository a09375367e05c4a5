import QtQuick
import QtQuick.Controls.Basic

// The dots of a page control. A row too long for the view is cut: it follows the page, and its ends taper off.
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

    Item {
        anchors.centerIn: parent
        width: root.shown * root.pitch
        height: parent.height
        clip: root.shown < root.count

        PageIndicator {
            x: -root.first * root.pitch
            anchors.verticalCenter: parent.verticalCenter
            padding: 0
            spacing: 0
            count: root.count
            currentIndex: root.currentPage
            delegate: Item {
                id: dot

                required property int index
                readonly property int fromEnd: Math.min(index - root.first, root.first + root.shown - 1 - index)
                readonly property bool isCut: root.shown < root.count && index !== 0 && index !== root.count - 1

                implicitWidth: root.pitch
                implicitHeight: root.pitch

                Rectangle {
                    anchors.centerIn: parent
                    width: 8
                    height: 8
                    radius: 4
                    color: "white"
                    border.width: 1
                    border.color: "#40000000"
                    opacity: dot.index === root.currentPage ? 1 : 0.45
                    scale: !dot.isCut || dot.fromEnd > 1 ? 1 : dot.fromEnd === 1 ? 0.75 : dot.fromEnd === 0 ? 0.5 : 0

                    Behavior on opacity {
                        NumberAnimation { duration: 150 }
                    }
                    Behavior on scale {
                        NumberAnimation { duration: 150 }
                    }
                }
            }

            Behavior on x {
                NumberAnimation { duration: 200; easing.type: Easing.OutQuad }
            }
        }
    }
}
