import QtQuick
import QtQuick.Controls.Basic

BusyIndicator {
    property color wheelColor: "white"

    anchors.fill: parent
    padding: 0
    palette.dark: wheelColor
    running: false
    Accessible.role: Accessible.ProgressBar
    Accessible.name: qsTr("Loading")
    Accessible.ignored: !running
}
