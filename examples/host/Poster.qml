pragma ComponentBehavior: Bound

import QtQuick

// A poster as the SDK will see it, with two of its markers.
Item {
    id: root

    required property color markerColor

    Rectangle {
        anchors.fill: poster
        anchors.topMargin: 14
        anchors.bottomMargin: -14
        radius: poster.radius
        rotation: poster.rotation
        color: "#14000000"
    }
    Rectangle {
        id: poster

        anchors.fill: parent
        radius: 18
        rotation: -4
        gradient: Gradient {
            GradientStop { position: 0; color: "#ffb56b" }
            GradientStop { position: 1; color: "#ff5d62" }
        }

        Rectangle {
            x: parent.width * 0.16
            y: parent.height * 0.16
            width: parent.width * 0.68
            height: width
            radius: width / 2
            color: "#fff3e2"
        }
        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            y: parent.height * 0.26
            width: parent.width * 0.26
            height: parent.height * 0.42
            radius: width * 0.36
            color: "#2f6f73"
        }
        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            y: parent.height * 0.17
            width: parent.width * 0.12
            height: parent.height * 0.12
            radius: 4
            color: "#245558"
        }
        Column {
            anchors {
                left: parent.left
                leftMargin: parent.width * 0.16
                bottom: parent.bottom
                bottomMargin: parent.height * 0.09
            }
            spacing: 8

            Repeater {
                model: [0.68, 0.44]

                Rectangle {
                    required property real modelData

                    width: poster.width * modelData
                    height: 8
                    radius: 4
                    color: "#ccffffff"
                }
            }
        }
        Repeater {
            model: [Qt.point(0.5, 0.36), Qt.point(0.74, 0.62)]

            Rectangle {
                id: marker

                required property point modelData
                required property int index

                x: poster.width * modelData.x - width / 2
                y: poster.height * modelData.y - height / 2
                width: 30
                height: 30
                radius: 15

                SequentialAnimation on color {
                    loops: Animation.Infinite
                    ColorAnimation { to: "#00ffffff"; duration: 1000 }
                    ColorAnimation { to: "white"; duration: 1000 }
                }
                Rectangle {
                    anchors.centerIn: parent
                    width: 16
                    height: 16
                    radius: 8
                    color: root.markerColor
                }
            }
        }
    }
}
