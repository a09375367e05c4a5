import QtQuick
import QtQuick.Window
import Brevanto.Platform

// What stands in place of a video for a clip that has sound only.
Item {
    id: root

    property string title
    property bool playing: false

    Rectangle {
        anchors.fill: parent
        gradient: Gradient {
            GradientStop { position: 0; color: "#3a3550" }
            GradientStop { position: 1; color: "#121018" }
        }
    }
    Column {
        anchors.centerIn: parent
        width: parent.width - 48
        spacing: 28

        Rectangle {
            anchors.horizontalCenter: parent.horizontalCenter
            width: Math.min(220, root.width - 80, root.height * 0.45)
            height: width
            radius: 28
            gradient: Gradient {
                GradientStop { position: 0; color: "#ff6482" }
                GradientStop { position: 1; color: "#a03ce0" }
            }

            Image {
                anchors.centerIn: parent
                width: parent.width * 0.5
                height: width
                source: "glyph_note.svg"
                sourceSize.width: width * Screen.devicePixelRatio
                sourceSize.height: height * Screen.devicePixelRatio
            }
        }
        Text {
            objectName: "soundTitle"
            width: parent.width
            text: root.title
            textFormat: Text.PlainText
            font: SystemFont.medium(17)
            color: "white"
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideMiddle
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        SoundBeats {
            anchors.horizontalCenter: parent.horizontalCenter
            playing: root.playing && root.visible
        }
    }
}
