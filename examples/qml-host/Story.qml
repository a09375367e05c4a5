import QtQuick
import QtQuick.Controls.Basic

// One story of the magazine's front page.
Rectangle {
    id: story

    required property string section
    required property string headline
    required property color tint

    implicitHeight: 116
    radius: 18
    color: "white"

    Rectangle {
        id: picture

        x: 12
        anchors.verticalCenter: parent.verticalCenter
        width: 92
        height: 92
        radius: 12
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.lighter(story.tint, 1.25) }
            GradientStop { position: 1; color: story.tint }
        }

        Rectangle {
            x: 18
            y: 20
            width: 40
            height: 40
            radius: 20
            color: "#66ffffff"
        }
        Rectangle {
            x: 40
            y: 44
            width: 34
            height: 34
            radius: 8
            rotation: 18
            color: "#99ffffff"
        }
    }
    Column {
        anchors {
            left: picture.right
            leftMargin: 16
            right: parent.right
            rightMargin: 16
            verticalCenter: parent.verticalCenter
        }
        spacing: 6

        Label {
            text: story.section
            font.pixelSize: 12
            font.weight: Font.DemiBold
            font.letterSpacing: 1.2
            font.capitalization: Font.AllUppercase
            color: Qt.darker(story.tint, 1.15)
        }
        Label {
            width: parent.width
            text: story.headline
            font.pixelSize: 17
            font.weight: Font.DemiBold
            lineHeight: 1.15
            color: "#1c2326"
            wrapMode: Text.WordWrap
            maximumLineCount: 3
            elide: Text.ElideRight
        }
    }
}
