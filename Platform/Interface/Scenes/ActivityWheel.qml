import QtQuick
import QtQuick.Controls.Basic

// A wheel of spokes that fade behind the one in front.
BusyIndicator {
    id: wheel

    property color wheelColor: "white"

    anchors.fill: parent
    padding: 0
    running: false
    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Loading")
    Accessible.ignored: !running

    contentItem: WheelSpokes {
        count: wheel.visible ? 10 : 0
        color: wheel.wheelColor

        RotationAnimator on rotation {
            running: wheel.running && wheel.visible
            from: 0
            to: 360
            duration: 1000
            loops: Animation.Infinite
        }
    }
}
