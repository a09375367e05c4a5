import QtQuick
import QtQuick.Controls.Basic
import Brevanto.Platform

// Play and pause, the place in the clip and the sound.
Rectangle {
    id: bar

    required property PlayerViewController controller
    readonly property Player player: controller.player
    // Where the finger holds the clip, or where it is.
    readonly property real shownPosition: slider.pressed ? slider.value : player.position
    readonly property bool isHeld: slider.pressed || playButton.down || soundButton.down

    function skip(steps: int) {
        player.seek(player.position + steps * 5000)
        controller.keepControls()
    }

    implicitHeight: 56
    radius: 16
    color: "#b3282828"

    // A tap between the controls, or on a slider that rests, is none on the clip.
    TapHandler {
        gesturePolicy: TapHandler.ReleaseWithinBounds
        onTapped: bar.controller.keepControls()
    }
    PlayerButton {
        id: playButton

        objectName: "playButton"
        x: 6
        anchors.verticalCenter: parent.verticalCenter
        glyph: bar.player.playing ? "pause" : "play"
        name: bar.player.playing ? qsTr("Pause") : qsTr("Play")
        onClicked: {
            bar.player.togglePlaying()
            bar.controller.keepControls()
        }
    }
    Text {
        id: elapsed

        objectName: "elapsedTime"
        anchors.left: playButton.right
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(36, implicitWidth)
        text: bar.controller.timeText(bar.shownPosition)
        font: SystemFont.medium(13)
        color: "white"
        horizontalAlignment: Text.AlignRight
        Accessible.role: Accessible.StaticText
        Accessible.name: qsTr("Elapsed %1").arg(text)
    }
    Slider {
        id: slider

        objectName: "positionSlider"
        anchors.left: elapsed.right
        anchors.right: remaining.left
        anchors.margins: 6
        anchors.verticalCenter: parent.verticalCenter
        height: 44
        enabled: bar.player.seekable
        to: Math.max(1, bar.player.duration)
        stepSize: 0
        Accessible.name: qsTr("Position")
        Accessible.onIncreaseAction: bar.skip(1)
        Accessible.onDecreaseAction: bar.skip(-1)
        // By key; a finger lets go first.
        onMoved: {
            bar.controller.keepControls()
            if (!pressed)
                bar.player.seek(value)
        }
        onPressedChanged: {
            bar.controller.keepControls()
            if (!pressed)
                bar.player.seek(value)
        }
        Keys.onPressed: event => {
            const step = event.key === Qt.Key_Right ? 1 : event.key === Qt.Key_Left ? -1 : 0
            event.accepted = false
            if (step !== 0) {
                event.accepted = true
                bar.skip(step)
            }
        }

        Binding on value {
            when: !slider.pressed
            value: bar.player.position
            restoreMode: Binding.RestoreNone
        }

        background: Rectangle {
            x: slider.leftPadding
            y: (slider.height - height) / 2
            width: slider.availableWidth
            height: 4
            radius: 2
            color: "#55ffffff"

            Rectangle {
                width: slider.visualPosition * parent.width
                height: parent.height
                radius: 2
                color: "white"
            }
        }
        handle: Rectangle {
            x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
            y: (slider.height - height) / 2
            width: slider.pressed ? 20 : 14
            height: width
            radius: width / 2
            color: "white"
            visible: slider.enabled
            border.width: slider.visualFocus ? 3 : 0
            border.color: "#0a84ff"
        }
    }
    Text {
        id: remaining

        objectName: "remainingTime"
        anchors.right: soundButton.left
        anchors.rightMargin: 2
        anchors.verticalCenter: parent.verticalCenter
        width: Math.max(40, implicitWidth)
        text: bar.player.duration > 0 ? "-" + bar.controller.timeText(bar.player.duration - bar.shownPosition) : ""
        font: SystemFont.medium(13)
        color: "white"
        Accessible.role: Accessible.StaticText
        Accessible.name: qsTr("Remaining %1").arg(text)
        Accessible.ignored: text.length === 0
    }
    PlayerButton {
        id: soundButton

        objectName: "soundButton"
        anchors.right: parent.right
        anchors.rightMargin: 6
        anchors.verticalCenter: parent.verticalCenter
        glyph: bar.player.muted ? "muted" : "sound"
        name: bar.player.muted ? qsTr("Unmute") : qsTr("Mute")
        onClicked: {
            bar.player.muted = !bar.player.muted
            bar.controller.keepControls()
        }
    }
}
