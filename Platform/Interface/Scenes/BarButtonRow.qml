pragma ComponentBehavior: Bound

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
    // A row that gets shorter has its buttons a moment longer than its items.
    readonly property var nothing: ({
        "isSpace": true,
        "enabled": false,
        "size": Qt.size(0, 0),
        "accessibleName": "",
        "source": () => ""
    })
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

        BarButton {
            required property int index

            x: row.offsetOf(index)
            visible: !item.isSpace
            item: row.items[index] ?? row.nothing
            tintColor: row.tintColor
            onClicked: row.activated(index)
        }
    }
}
