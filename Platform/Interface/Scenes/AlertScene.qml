import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T
import Brevanto.Platform

// An alert in the middle of the window over a dimmed backdrop.
View {
    id: scene

    required property AlertController controller
    property bool animated: true
    property alias popup: dialog
    readonly property var buttons: controller.buttons
    readonly property color hairline: "#333c3c43"

    Dialog {
        id: dialog

        // Two short buttons stand side by side.
        readonly property bool isRow: scene.buttons.length === 2 && Math.max(first.implicitWidth, second.implicitWidth) <= width / 2

        function preferredIndex(): int {
            const cancel = scene.buttons.findIndex(button => button.isCancel)
            return cancel < 0 ? 0 : cancel
        }

        // On whole points, so that the lines between the buttons are sharp.
        x: Math.round((scene.width - width) / 2)
        y: Math.round((scene.height - height) / 2)
        width: Math.min(270, scene.width - 32)
        height: Math.min(implicitHeight, scene.height - 48)
        padding: 0
        topPadding: 0
        bottomPadding: 0
        modal: true
        dim: true
        focus: true
        closePolicy: Popup.NoAutoClose
        title: scene.controller.title
        header: null
        footer: null
        onOpened: {
            const preferred = buttonRepeater.itemAt(preferredIndex())
            if (preferred)
                preferred.forceActiveFocus(Qt.OtherFocusReason)
        }

        enter: scene.animated ? appear : null
        exit: scene.animated ? disappear : null
        Transition {
            id: appear
            NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 180; easing.type: Easing.OutQuad }
            NumberAnimation { property: "scale"; from: 1.15; to: 1; duration: 220; easing.type: Easing.OutCubic }
        }
        Transition {
            id: disappear
            NumberAnimation { property: "opacity"; to: 0; duration: 160; easing.type: Easing.InQuad }
        }
        T.Overlay.modal: Rectangle {
            color: "#66000000"
            Behavior on opacity {
                enabled: scene.animated
                NumberAnimation { duration: 180 }
            }
        }
        background: Rectangle {
            radius: 14
            color: "#f7f7f8"
        }
        contentItem: Item {
            implicitHeight: Math.ceil(texts.contentHeight) + buttonsArea.height
            clip: true

            // Measure only; what is seen are the repeater's buttons.
            AlertButton { id: first; visible: false; choice: scene.buttons.length > 0 ? scene.buttons[0] : ({ "text": "" }) }
            AlertButton { id: second; visible: false; choice: scene.buttons.length > 1 ? scene.buttons[1] : ({ "text": "" }) }

            Flickable {
                id: texts

                width: parent.width
                height: parent.height - buttonsArea.height
                contentWidth: width
                contentHeight: column.height
                clip: true
                interactive: contentHeight > height
                boundsBehavior: Flickable.StopAtBounds
                ScrollBar.vertical: ScrollBar { policy: texts.interactive ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff }

                Column {
                    id: column

                    readonly property bool hasTitle: scene.controller.title.length > 0
                    readonly property bool hasMessage: scene.controller.message.length > 0

                    x: 16
                    width: texts.width - 32
                    topPadding: 20
                    bottomPadding: 20
                    spacing: 4

                    Text {
                        objectName: "alertTitle"
                        width: parent.width
                        visible: column.hasTitle
                        text: scene.controller.title
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
                        visible: column.hasMessage
                        text: scene.controller.message
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

            Grid {
                id: buttonsArea

                anchors.bottom: parent.bottom
                width: parent.width
                columns: dialog.isRow ? 2 : 1

                Repeater {
                    id: buttonRepeater

                    model: scene.buttons

                    AlertButton {
                        id: button

                        required property int index
                        required property var modelData

                        objectName: "alertButton" + index
                        choice: modelData
                        width: dialog.isRow ? buttonsArea.width / 2 : buttonsArea.width
                        onClicked: scene.controller.choose(index)

                        Rectangle {
                            width: parent.width
                            height: 1
                            color: scene.hairline
                        }
                        Rectangle {
                            width: 1
                            height: parent.height
                            visible: dialog.isRow && button.index === 1
                            color: scene.hairline
                        }
                    }
                }
            }
        }
    }
}
