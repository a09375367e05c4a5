import QtQuick

// The buttons of a bar or of one side of it, side by side, with the spaces between them.
Item {
    id: row

    property var items: []
    property color tintColor: "white"
    readonly property real flexibleWidth: {
        const spaces = items.filter(item => item.isFlexible).length
        return spaces === 0 ? 0 : Math.max(0, (width - fixedWidth) / spaces)
    }
    readonly property real fixedWidth: items.reduce((sum, item) => sum + widthOf(item, 0), 0)

    signal activated(int index)

    function widthOf(item: var, flexible: real): real {
        return item.isFlexible ? flexible : item.isSpace ? item.size.width : Math.max(item.size.width, 44)
    }
    function offsetOf(index: int): real {
        return items.slice(0, index).reduce((sum, item) => sum + widthOf(item, flexibleWidth), 0)
    }

    implicitWidth: fixedWidth
    implicitHeight: 44

    Repeater {
        model: row.items.length

        Loader {
            required property int index
            readonly property var item_: row.items[index]

            x: row.offsetOf(index)
            active: item_ !== undefined && !item_.isSpace
            sourceComponent: BarButton {
                item: parent.item_
                tintColor: row.tintColor
                onClicked: row.activated(parent.index)
            }
        }
    }
}
