import QtQuick
import QtQuick.Controls.Basic
import BrevantoHost

Window {
    id: window

    readonly property bool isPhone: Qt.platform.os === "android" || Qt.platform.os === "ios"
    readonly property color ink: "#1b1b22"
    readonly property color accent: "#ff4347"

    title: qsTr("Brevanto Host")
    width: 390
    height: 844
    visibility: isPhone ? Window.FullScreen : Window.Windowed
    visible: true
    color: "#f6f4f1"

    // A poster as the SDK will see it, with two of its markers.
    Item {
        id: picture

        anchors {
            horizontalCenter: parent.horizontalCenter
            bottom: texts.top
            bottomMargin: 44
        }
        width: Math.min(parent.width * 0.56, parent.height * 0.3)
        height: width * 1.28

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
                    color: "white"

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
                        color: window.accent
                    }
                }
            }
        }
    }

    Column {
        id: texts

        anchors {
            horizontalCenter: parent.horizontalCenter
            bottom: button.top
            bottomMargin: 48
        }
        width: parent.width - 64
        spacing: 12

        Label {
            width: parent.width
            text: qsTr("See more in every ad")
            font.pixelSize: 26
            font.weight: Font.DemiBold
            color: window.ink
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
        }
        Label {
            width: parent.width
            text: qsTr("Photograph a printed ad or a product, then tap the dots.")
            font.pixelSize: 16
            lineHeight: 1.25
            color: "#6b6a70"
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.WordWrap
        }
    }

    Button {
        id: button

        objectName: "scanButton"
        anchors {
            horizontalCenter: parent.horizontalCenter
            bottom: parent.bottom
            bottomMargin: Math.max(48, parent.height * 0.09)
        }
        width: Math.min(parent.width - 48, 420)
        height: 56
        text: qsTr("Scan an ad")
        Accessible.name: text
        font.pixelSize: 17
        font.weight: Font.DemiBold
        focus: true
        onClicked: Host.showCameraScreen()

        contentItem: Label {
            text: button.text
            font: button.font
            color: "white"
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
        }
        background: Rectangle {
            radius: height / 2
            color: button.down ? Qt.darker(window.accent, 1.15) : window.accent

            Rectangle {
                anchors.fill: parent
                anchors.margins: -4
                radius: height / 2
                color: "transparent"
                border.width: button.visualFocus ? 2 : 0
                border.color: window.ink
            }
        }
    }
}
