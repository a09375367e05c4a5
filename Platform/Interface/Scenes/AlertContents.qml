import QtQuick
import QtQuick.Controls.Basic
import Brevanto.Platform

// What an alert says, above its buttons.
Item {
    id: root

    required property AlertController controller

    function focusPreferredButton() {
        buttons.focusPreferred()
    }

    implicitHeight: Math.ceil(texts.contentHeight) + buttons.height
    clip: true

    Flickable {
        id: texts

        width: parent.width
        height: parent.height - buttons.height
        contentWidth: width
        contentHeight: column.height
        clip: true
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar { policy: texts.interactive ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff }

        Column {
            id: column

            x: 16
            width: texts.width - 32
            topPadding: 20
            bottomPadding: 20
            spacing: 4

            Text {
                objectName: "alertTitle"
                width: parent.width
                visible: text.length > 0
                text: root.controller.title
                textFormat: Text.PlainText
                font: SystemFont.semibold(17)
                color: "black"
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                Accessible.role: Accessible.Heading
                Accessible.name: text
            }
            Text {
                objectName: "alertMessage"
                width: parent.width
                visible: text.length > 0
                text: root.controller.message
                textFormat: Text.PlainText
                font: SystemFont.regular(13)
                color: "black"
                horizontalAlignment: Text.AlignHCenter
                wrapMode: Text.Wrap
                Accessible.role: Accessible.StaticText
                Accessible.name: text
            }
        }
    }
    AlertButtons {
        id: buttons

        anchors.bottom: parent.bottom
        width: parent.width
        choices: root.controller.buttons
        onChosen: index => root.controller.choose(index)
    }
}
