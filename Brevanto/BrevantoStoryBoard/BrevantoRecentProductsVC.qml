import QtQuick
import Brevanto.Platform
import Brevanto.StoryBoard

// Two columns of tiles, one for each ad seen. Nothing else: no labels, no word about an empty grid.
View {
    id: root

    required property BrevantoRecentProductsVC controller

    backgroundColor: "#efeff4"

    Loader {
        readonly property bool isDue: root.controller.isGridBuilt

        anchors.fill: parent
        focus: true
        onIsDueChanged: setSource("RecentProductGrid.qml", { "screen": root.controller })
    }
}
