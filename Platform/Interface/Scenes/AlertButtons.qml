pragma ComponentBehavior: Bound

import QtQuick

// The buttons of an alert with lines between them: one below the other, and two short ones side by side.
Grid {
    id: root

    property var choices: []
    readonly property bool isRow: choices.length === 2 && Math.max(first.implicitWidth, second.implicitWidth) <= width / 2
    readonly property color hairline: "#333c3c43"

    signal chosen(int index)

    function focusPreferred() {
        const cancel = choices.findIndex(choice => choice.isCancel)
        const preferred = buttons.itemAt(Math.max(0, cancel))
        if (preferred)
            preferred.forceActiveFocus(Qt.OtherFocusReason)
    }

    columns: isRow ? 2 : 1

    // Measure only; what is seen are the repeater's buttons.
    AlertButton { id: first; visible: false; choice: root.choices.length > 0 ? root.choices[0] : ({ "text": "" }) }
    AlertButton { id: second; visible: false; choice: root.choices.length > 1 ? root.choices[1] : ({ "text": "" }) }

    Repeater {
        id: buttons

        model: root.choices

        AlertButton {
            id: button

            required property int index
            required property var modelData

            objectName: "alertButton" + index
            choice: modelData
            width: root.isRow ? root.width / 2 : root.width
            onClicked: root.chosen(index)

            Rectangle {
                width: parent.width
                height: 1
                color: root.hairline
            }
            Rectangle {
                width: 1
                height: parent.height
                visible: root.isRow && button.index === 1
                color: root.hairline
            }
        }
    }
}
