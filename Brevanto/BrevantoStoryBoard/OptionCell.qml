import QtQuick
import QtQuick.Templates as T
import Brevanto.Platform
import Brevanto.StoryBoard

// A row of an OptionList: an icon, where there is one, and a title.
T.AbstractButton {
    id: cell

    required property int index
    required property string modelData
    readonly property OptionListController screen: (ListView.view as OptionList).screen
    readonly property bool isCurrent: ListView.isCurrentItem && ListView.view.activeFocus
    readonly property alias titleLabel: label
    readonly property alias iconImageView: image

    objectName: "row" + index
    width: ListView.view.width
    height: screen.rowHeight
    leftPadding: 16
    rightPadding: 16
    focusPolicy: Qt.NoFocus
    hoverEnabled: true
    font: SystemFont.regular(16)
    text: modelData
    onClicked: screen.didSelectRow(index)

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: cell.clicked()

    background: Rectangle {
        color: cell.down || cell.hovered || cell.isCurrent ? Qt.rgba(0, 0, 0, 0.07) : "transparent"
    }

    Item {
        x: cell.leftPadding
        width: cell.availableWidth
        height: cell.height

        Image {
            id: image

            anchors.verticalCenter: parent.verticalCenter
            width: 24
            height: 24
            // A row whose icon is unknown keeps its place in line.
            visible: cell.screen.iconUrls.length > 0
            source: cell.screen.iconUrls[cell.index] ?? ""
            sourceSize.width: 24
            sourceSize.height: 24
            fillMode: Image.PreserveAspectFit
        }
        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            x: image.visible ? image.width + 16 : 0
            width: parent.width - x
            text: cell.text
            textFormat: Text.PlainText
            font: cell.font
            color: "#1c1c1e"
            wrapMode: Text.Wrap
            maximumLineCount: 2
            elide: Text.ElideRight
        }
    }
}
