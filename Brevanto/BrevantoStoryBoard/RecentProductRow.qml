pragma ComponentBehavior: Bound

import QtQuick
import Brevanto.StoryBoard

// A row of the grid of recent ads.
Item {
    id: root

    required property int index
    property BrevantoRecentProductsVC screen
    property int columns
    // Of all rows together.
    property int itemCount
    property real itemWidth
    property real inset
    property real spacing
    property bool isListMoving: false
    // The tile that the keyboard has reached, in all rows; -1 when there is none.
    property int currentItemNumber: -1

    function forTiles(action: var) {
        for (let column = 0; column < tiles.count; ++column)
            action(tiles.itemAt(column))
    }

    ListView.onReused: forTiles(tile => tile.show())
    ListView.onPooled: forTiles(tile => screen.didEndDisplaying(tile))

    Repeater {
        id: tiles

        model: root.columns

        RecentProductTile {
            id: tile

            required property int index
            readonly property int item: root.index * root.columns + index

            function show() {
                if (item < root.itemCount)
                    root.screen.cellForItem(tile, item)
            }

            x: root.inset + index * (width + root.spacing)
            width: root.itemWidth
            height: root.height
            visible: item < root.itemCount
            title: root.screen.titleForItem(item)
            isListMoving: root.isListMoving
            isCurrent: item === root.currentItemNumber
            onTapped: root.screen.didSelectItem(item)
            Component.onCompleted: show()
        }
    }
}
