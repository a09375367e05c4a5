pragma ComponentBehavior: Bound

import QtQuick
import Brevanto.StoryBoard

// The tiles of the screen of recent ads. Rows of tiles and not the stock grid, which makes its tiles anew where a list
// uses them again.
ListView {
    id: grid

    required property BrevantoRecentProductsVC screen
    readonly property size itemSize: screen.sizeForItem(width)
    readonly property real inset: screen.insetForSection()
    readonly property int itemCount: screen.numberOfItemsInSection()
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
    spacing: screen.minimumLineSpacingForSection()
    topMargin: inset
    bottomMargin: inset
    reuseItems: true
    cacheBuffer: itemSize.height + spacing
    focus: true
    activeFocusOnTab: true
    currentIndex: -1
    highlightMoveDuration: 150
    delegate: RecentProductRow {
        width: grid.width
        height: grid.itemSize.height
        screen: grid.screen
        columns: grid.columns
        itemCount: grid.itemCount
        itemWidth: grid.itemSize.width
        inset: grid.inset
        spacing: grid.spacing
        isListMoving: grid.moving
        currentItemNumber: grid.activeFocus ? grid.currentItemNumber : -1
    }
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Recent Products")
    Keys.onLeftPressed: moveTo(currentItemNumber - 1)
    Keys.onRightPressed: moveTo(currentItemNumber + 1)
    Keys.onUpPressed: moveTo(currentItemNumber - columns)
    Keys.onDownPressed: moveTo(currentItemNumber < 0 ? 0 : currentItemNumber + columns)
    Keys.onReturnPressed: screen.didSelectItem(currentItemNumber)
    Keys.onEnterPressed: screen.didSelectItem(currentItemNumber)
    Keys.onSpacePressed: screen.didSelectItem(currentItemNumber)
}
