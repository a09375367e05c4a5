pragma ComponentBehavior: Bound

import QtQuick

// Bars that dance while sound is playing.
Row {
    id: root

    property bool playing: false

    height: 28
    spacing: 5

    Repeater {
        model: 7

        Rectangle {
            id: beat

            required property int index

            anchors.verticalCenter: parent.verticalCenter
            width: 4
            height: 6
            radius: 2
            color: "#ccffffff"

            SequentialAnimation {
                running: root.playing
                loops: Animation.Infinite
                onRunningChanged: if (!running) beat.height = 6
                NumberAnimation {
                    target: beat
                    property: "height"
                    to: 28 - (beat.index % 3) * 7
                    duration: 260 + 70 * (beat.index % 4)
                    easing.type: Easing.InOutSine
                }
                NumberAnimation {
                    target: beat
                    property: "height"
                    to: 6 + (beat.index % 2) * 5
                    duration: 320 + 50 * (beat.index % 3)
                    easing.type: Easing.InOutSine
                }
            }
        }
    }
}
