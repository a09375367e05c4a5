import QtQuick
import Brevanto.Platform

// A white card with the ad image of one group.
View {
    id: tile

    // The row on show; -1 while out of sight. Kept by the screen.
    property int row: -1
    // What a screen reader says.
    property string title
    property bool isCurrent: false
    property bool isListMoving: false

    signal tapped

    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.onPressAction: tapped()

    ImageView {
        tag: 1213
        x: 3
        y: 3
        width: tile.width - 6
        height: tile.height - 6
        clip: true
        contentMode: ImageView.ScaleAspectFit
    }
    Rectangle {
        anchors.fill: parent
        radius: tile.cornerRadius
        color: "black"
        opacity: tap.pressed && !tap.stopsList ? 0.12 : 0
    }
    Rectangle {
        anchors.fill: parent
        anchors.margins: -2
        radius: tile.cornerRadius + 2
        color: "transparent"
        border.width: 2
        border.color: "#2f6fed"
        visible: tile.isCurrent
    }
    TapHandler {
        id: tap

        // A touch that stops the moving list is no tap.
        property bool stopsList: false

        onPressedChanged: if (pressed) stopsList = tile.isListMoving
        onTapped: if (!stopsList) tile.tapped()
    }
}
