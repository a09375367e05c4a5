import QtQuick
import QtQuick.Controls.Basic
import Brevanto

// A small magazine. Whoever holds its printed issue scans the ads in it.
Window {
    id: window

    readonly property bool isPhone: Qt.platform.os === "android" || Qt.platform.os === "ios"
    readonly property bool isOffline: BrevantoClient.reachabilityStatus === BrevantoClient.NotReachable
    readonly property color ink: "#1c2326"
    property int visits: 0

    title: qsTr("Brevanto QML Host")
    width: 390
    height: 844
    visibility: isPhone ? Window.FullScreen : Window.Windowed
    visible: true
    color: "#efeae2"

    Connections {
        target: BrevantoClient

        function onCameraScreenShownChanged() {
            if (!BrevantoClient.cameraScreenShown)
                window.visits += 1
        }
    }

    Column {
        id: masthead

        anchors {
            top: parent.top
            topMargin: 56
            left: parent.left
            right: parent.right
            margins: 24
        }
        spacing: 6

        Label {
            text: qsTr("Paper & Ink")
            font.pixelSize: 34
            font.weight: Font.Bold
            color: window.ink
        }
        Label {
            width: parent.width
            objectName: "greeting"
            text: window.visits === 0 ? qsTr("The printed issue is alive: scan any ad in it.")
                : qsTr("Welcome back. Another page to scan?")
            font.pixelSize: 16
            color: "#66706c"
            wrapMode: Text.WordWrap
        }
    }

    ListView {
        anchors {
            top: masthead.bottom
            topMargin: 24
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        leftMargin: 20
        rightMargin: 20
        bottomMargin: bar.height + 20
        spacing: 14
        clip: true
        model: [
            { section: qsTr("Kitchen"), headline: qsTr("Twelve minutes to a soup that tastes of autumn"), tint: "#e07a3f" },
            { section: qsTr("Rooms"), headline: qsTr("A reading corner in less than a square metre"), tint: "#3f8f86" },
            { section: qsTr("Play"), headline: qsTr("Why we build castles again after thirty"), tint: "#7b64c9" },
            { section: qsTr("Garden"), headline: qsTr("Ferns for people who forget to water"), tint: "#5f9a4a" },
            { section: qsTr("Travel"), headline: qsTr("By night train to the sea, and back by bicycle"), tint: "#3d7fbf" }
        ]
        delegate: Story {
            required property var modelData

            width: ListView.view.width - 40
            section: modelData.section
            headline: modelData.headline
            tint: modelData.tint
        }
    }

    Rectangle {
        id: bar

        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
        }
        height: 128
        gradient: Gradient {
            GradientStop { position: 0; color: "#00efeae2" }
            GradientStop { position: 0.4; color: "#efeae2" }
        }

        Button {
            id: scan

            objectName: "scanButton"
            anchors {
                horizontalCenter: parent.horizontalCenter
                bottom: parent.bottom
                bottomMargin: 32
            }
            width: Math.min(parent.width - 48, 420)
            height: 56
            text: window.isOffline ? qsTr("Scan an ad (offline)") : qsTr("Scan an ad")
            font.pixelSize: 17
            font.weight: Font.DemiBold
            focus: true
            enabled: !BrevantoClient.cameraScreenShown
            onClicked: BrevantoClient.showCameraScreen()

            contentItem: Label {
                text: scan.text
                font: scan.font
                color: "white"
                horizontalAlignment: Text.AlignHCenter
                verticalAlignment: Text.AlignVCenter
            }
            background: Rectangle {
                radius: height / 2
                color: scan.down ? Qt.lighter(window.ink, 1.5) : window.ink

                Rectangle {
                    anchors.fill: parent
                    anchors.margins: -4
                    radius: height / 2
                    color: "transparent"
                    border.width: scan.visualFocus ? 2 : 0
                    border.color: window.ink
                }
            }
        }
    }
}
