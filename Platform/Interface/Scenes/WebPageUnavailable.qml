import QtQuick
import Brevanto.Platform

// Stands where a page would, on machines that cannot show pages.
Rectangle {
    anchors.fill: parent
    color: "white"

    Text {
        objectName: "webPageUnavailable"
        anchors.centerIn: parent
        width: Math.min(parent.width - 64, 320)
        text: qsTr("Web pages cannot be shown on this device.")
        textFormat: Text.PlainText
        font: SystemFont.medium(17)
        color: "#3c3c43"
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
}
