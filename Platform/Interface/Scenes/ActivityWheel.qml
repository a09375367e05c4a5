import QtQuick
import QtQuick.Controls.Basic

// A wheel of spokes that fade behind the one in front.
BusyIndicator {
    id: wheel

    property color wheelColor: "white"
    readonly property int spokes: 10

    anchors.fill: parent
    padding: 0
    running: false
    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Loading")
    Accessible.ignored: !running

    contentItem: Item {
        id: turning

        Repeater {
            model: wheel.visible ? wheel.spokes : 0

            Rectangle {
                required property int index

                x: (turning.width - width) / 2
                width: Math.max(2, turning.width * 0.095)
                height: turning.height * 0.28
                radius: width / 2
                color: wheel.wheelColor
                opacity: 0.2 + 0.8 * index / (wheel.spokes - 1)
                antialiasing: true
                transform: Rotation {
                    origin.x: turning.width / 2 - x
                    origin.y: turning.height / 2
                    angle: index * 360 / wheel.spokes
                }
            }
        }
        RotationAnimator on rotation {
            running: wheel.running && wheel.visible
            from: 0
            to: 360
            duration: 1000
            loops: Animation.Infinite
        }
    }
}
