import QtQuick
import Brevanto.Platform
import Brevanto.StoryBoard

// Two columns of tiles, one for each ad seen. Nothing else: no labels, no word about an empty grid.
View {
    id: root

    required property BrevantoRecentProductsVC controller

    backgroundColor: "#efeff4"

    Loader {
        anchors.fill: parent
        active: root.controller.isGridBuilt
        focus: true
        // Rows of tiles and not the stock grid, which makes its tiles anew where a list uses them again.
        sourceComponent: ListView {
            id: grid

            readonly property size itemSize: root.controller.sizeForItem(root.width)
            readonly property real inset: root.controller.insetForSection()
            readonly property int itemCount: root.controller.numberOfItemsInSection()
            readonly property int columns: Math.max(1, Math.floor((width - inset) / (itemSize.width + spacing)))
            // The tile that the keyboard has reached; -1 before the first key.
            property int currentItemNumber: -1

            function moveTo(item: int) {
                if (item < 0 || item >= itemCount)
                    return
                currentItemNumber = item
                currentIndex = Math.floor(item / columns)
            }

            objectName: "recentCollectionView"
            model: Math.ceil(itemCount / columns)
            spacing: root.controller.minimumLineSpacingForSection()
            topMargin: inset
            bottomMargin: inset
            reuseItems: true
            cacheBuffer: itemSize.height + spacing
            focus: true
            activeFocusOnTab: true
            currentIndex: -1
            highlightMoveDuration: 150
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Recent Products")

            delegate: Item {
                id: line

                required property int index

                function forTiles(action: var) {
                    for (let column = 0; column < tiles.count; ++column)
                        action(tiles.itemAt(column))
                }

                width: grid.width
                height: grid.itemSize.height
                ListView.onReused: forTiles(tile => tile.show())
                ListView.onPooled: forTiles(tile => root.controller.didEndDisplaying(tile))

                Repeater {
                    id: tiles

                    model: grid.columns

                    RecentProductTile {
                        id: tile

                        required property int modelData
                        readonly property int item: line.index * grid.columns + modelData

                        function show() {
                            if (item < grid.itemCount)
                                root.controller.cellForItem(tile, item)
                        }

                        x: grid.inset + modelData * (width + grid.spacing)
                        width: grid.itemSize.width
                        height: grid.itemSize.height
                        visible: item < grid.itemCount
                        title: root.controller.titleForItem(item)
                        isListMoving: grid.moving
                        isCurrent: item === grid.currentItemNumber && grid.activeFocus
                        onTapped: root.controller.didSelectItem(item)
                        Component.onCompleted: show()
                    }
                }
            }
            Keys.onLeftPressed: moveTo(currentItemNumber - 1)
            Keys.onRightPressed: moveTo(currentItemNumber + 1)
            Keys.onUpPressed: moveTo(currentItemNumber - columns)
            Keys.onDownPressed: moveTo(currentItemNumber < 0 ? 0 : currentItemNumber + columns)
            Keys.onReturnPressed: root.controller.didSelectItem(currentItemNumber)
            Keys.onEnterPressed: root.controller.didSelectItem(currentItemNumber)
            Keys.onSpacePressed: root.controller.didSelectItem(currentItemNumber)
        }
    }
}
