import QtQuick
import QtQuick.Window
import QtMultimedia
import Brevanto.Platform

// A clip over the whole screen and, above it, the controls.
View {
    id: scene

    required property PlayerViewController controller
    readonly property Player player: controller.player
    readonly property bool isFaulty: player.errorText.length > 0
    readonly property bool areControlsShown: controller.showsPlaybackControls && !isFaulty
                                             && (controller.controlsShown || bar.isHeld)

    backgroundColor: "black"

    Keys.onPressed: event => {
        event.accepted = true
        controller.keepControls()
        switch (event.key) {
        case Qt.Key_Space:
        case Qt.Key_MediaTogglePlayPause:
            player.togglePlaying()
            break
        case Qt.Key_Left:
            bar.skip(-1)
            break
        case Qt.Key_Right:
            bar.skip(1)
            break
        case Qt.Key_Up:
            player.changeVolume(0.1)
            break
        case Qt.Key_Down:
            player.changeVolume(-0.1)
            break
        default:
            event.accepted = false
        }
    }

    Item {
        anchors.fill: parent
        focus: true
        Accessible.role: Accessible.Graphic
        Accessible.name: scene.player.title
        Accessible.ignored: scene.isFaulty

        VideoOutput {
            id: video

            objectName: "video"
            anchors.fill: parent
            fillMode: VideoOutput.PreserveAspectFit
            Component.onCompleted: scene.player.setVideoOutput(video)
        }
        SoundPicture {
            objectName: "soundPicture"
            anchors.fill: parent
            visible: scene.player.hasSoundOnly
            title: scene.player.title
            playing: scene.player.playing && !scene.player.waiting
        }
        TapHandler {
            onTapped: scene.controller.toggleControls()
        }
        HoverHandler {
            acceptedDevices: PointerDevice.Mouse
            onPointChanged: scene.controller.keepControls()
        }
    }

    ActivityWheel {
        objectName: "waiting"
        anchors.fill: undefined
        anchors.centerIn: parent
        width: 44
        height: 44
        running: scene.player.waiting
        visible: running
    }

    Column {
        objectName: "playerError"
        anchors.centerIn: parent
        width: Math.min(parent.width - 64, 320)
        spacing: 10
        visible: scene.isFaulty

        Image {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 52
            height: 52
            source: "glyph_warning.svg"
            sourceSize.width: width * Screen.devicePixelRatio
            sourceSize.height: height * Screen.devicePixelRatio
            opacity: 0.8
        }
        Text {
            width: parent.width
            text: qsTr("This clip cannot be played")
            font: SystemFont.semibold(19)
            color: "white"
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
            Accessible.name: text + ". " + scene.player.errorText
            Accessible.ignored: !scene.isFaulty
        }
        Text {
            objectName: "playerErrorText"
            width: parent.width
            text: scene.player.errorText
            font: SystemFont.regular(15)
            color: "#b8b8bd"
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
        }
    }

    PlayerButton {
        objectName: "closeButton"
        x: 12
        y: 12
        glyph: "close"
        name: qsTr("Close")
        glyphSize: 18
        hasDisc: true
        // There is always a way out by touch.
        opacity: scene.areControlsShown || scene.isFaulty || !scene.controller.showsPlaybackControls ? 1 : 0
        visible: opacity > 0
        onClicked: scene.controller.close()
        Behavior on opacity { NumberAnimation { duration: 250 } }
    }
    PlayerBar {
        id: bar

        objectName: "playerBar"
        anchors.horizontalCenter: parent.horizontalCenter
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 24
        width: Math.min(parent.width - 24, 640)
        controller: scene.controller
        opacity: scene.areControlsShown ? 1 : 0
        visible: opacity > 0
        Behavior on opacity { NumberAnimation { duration: 250 } }
    }
}
