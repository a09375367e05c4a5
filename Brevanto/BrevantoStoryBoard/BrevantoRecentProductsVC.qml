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
        sourceComponent: GridView {
            id: grid

            readonly property size itemSize: root.controller.sizeForItem()
            readonly property real inset: root.controller.insetForSection()
            readonly property real spacing: root.controller.minimumLineSpacingForSection()

            objectName: "recentCollectionView"
            model: root.controller.numberOfItemsInSection()
            cellWidth: itemSize.width + spacing
            cellHeight: itemSize.height + spacing
            // The trailing cell of each row and column brings the spacing that makes the other two insets.
            leftMargin: inset
            topMargin: inset
            reuseItems: true
            cacheBuffer: cellHeight
            focus: true
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightFollowsCurrentItem: true
            currentIndex: -1
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Recent Products")

            delegate: RecentProductTile {
                required property int index

                width: grid.itemSize.width
                height: grid.itemSize.height
                title: root.controller.titleForItem(index)
                isCurrent: GridView.isCurrentItem && grid.activeFocus
                onTapped: root.controller.didSelectItem(index)

                Component.onCompleted: root.controller.cellForItem(this, index)
                GridView.onReused: root.controller.cellForItem(this, index)
                GridView.onPooled: root.controller.didEndDisplaying(this)
            }
            Keys.onReturnPressed: root.controller.didSelectItem(currentIndex)
            Keys.onEnterPressed: root.controller.didSelectItem(currentIndex)
            Keys.onSpacePressed: root.controller.didSelectItem(currentIndex)
        }
    }
}
