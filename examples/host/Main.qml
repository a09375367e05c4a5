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

    Poster {
        anchors {
            horizontalCenter: parent.horizontalCenter
            bottom: texts.top
            bottomMargin: 44
        }
        width: Math.min(parent.width * 0.56, parent.height * 0.3)
        height: width * 1.28
        markerColor: window.accent
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
