pragma ComponentBehavior: Bound

import QtQuick

// Content that moves from side to side, one page at a time. The list itself has empty pages: the content lies over them.
ListView {
    id: list

    required property Item content
    property int pageCount: 0
    property bool scrolls: true
    property string accessibleName
    // Whether the content moves by itself to the current page.
    property bool gliding: false
    // Of the content at the left edge. At rest it is reckoned: the list's own follows a new width with delay.
    readonly property real offset: moving || gliding ? contentX - contentOrigin : restingX
    readonly property real restingX: Math.max(0, currentIndex) * width
    // Where the list, which reckons with estimates, has its first page.
    readonly property real contentOrigin: currentItem ? currentItem.x - currentIndex * width : 0

    signal tapped

    function showPage(page: int, animated: bool) {
        cancelFlick()
        highlightMoveDuration = animated ? 300 : 0
        currentIndex = page
        gliding = animated && !isAtRest()
        if (!animated) {
            positionViewAtIndex(page, ListView.Beginning)
            highlightMoveDuration = 300
        }
    }

    function isAtRest(): bool {
        return Math.abs(contentX - contentOrigin - restingX) < 0.5
    }

    anchors.fill: parent
    onContentXChanged: if (gliding && isAtRest()) gliding = false
    onMovementStarted: gliding = false
    onWidthChanged: gliding = false
    interactive: scrolls
    orientation: ListView.Horizontal
    snapMode: ListView.SnapOneItem
    highlightRangeMode: ListView.StrictlyEnforceRange
    highlightMoveVelocity: -1
    highlightMoveDuration: 300
    highlightResizeDuration: 0
    preferredHighlightBegin: 0
    preferredHighlightEnd: 0
    maximumFlickVelocity: 4 * width
    boundsBehavior: Flickable.DragOverBounds
    keyNavigationEnabled: false
    model: pageCount
    delegate: Item {
        width: list.width
        height: list.height
    }
    Accessible.role: Accessible.PageTabList
    Accessible.name: accessibleName

    Component.onCompleted: content.parent = contentItem

    Binding {
        target: list.content
        property: "x"
        value: list.contentOrigin
    }
    TapHandler {
        onSingleTapped: list.tapped()
    }
}
