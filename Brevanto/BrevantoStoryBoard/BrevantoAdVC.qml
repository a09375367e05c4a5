import QtQuick
import QtQuick.Controls.Basic as Basic
import Brevanto.Platform
import Brevanto.StoryBoard

// The ad image, whole, on a dark ground.
View {
    id: root

    required property BrevantoAdVC controller

    backgroundColor: "#111114"

    ImageView {
        objectName: "backgroundImageView"
        anchors.fill: parent
    }

    Basic.BusyIndicator {
        anchors.centerIn: parent
        width: 44
        height: 44
        palette.dark: "white"
        running: root.controller.isImageLoading
        Accessible.name: qsTr("Loading")
        Accessible.ignored: !running
    }
}
