import QtQuick

// Content that two fingers and double taps zoom.
Flickable {
    id: area

    required property Item content
    // The item inside the content that grows; null when nothing does.
    property Item zoomed
    property real minimumZoom: 1
    property real maximumZoom: 1
    property string accessibleName
    property real zoom: 1
    // Where the zoom leads that changes by itself.
    readonly property real restingZoom: movement.running ? movement.to : zoom
    property bool scrolls: true
    // Two fingers zoom, and nothing else moves then.
    readonly property bool areTwoDown: first.active && second.active
    // Whether the scroll view around is to stand still.
    readonly property bool isHolding: zoom > minimumZoom || areTwoDown

    // The point of the content that stays where it is while the zoom changes, and its place in the view.
    property point anchorInContent
    property point anchorInView

    signal zoomEnded

    function limited(value: real): real {
        return Math.max(minimumZoom, Math.min(maximumZoom, value))
    }
    function anchorAt(place: point) {
        anchorInView = place
        anchorInContent = Qt.point((contentX + place.x) / zoom, (contentY + place.y) / zoom)
    }
    function follow() {
        contentX = Math.max(0, Math.min(width * zoom - width, anchorInContent.x * zoom - anchorInView.x))
        contentY = Math.max(0, Math.min(height * zoom - height, anchorInContent.y * zoom - anchorInView.y))
    }
    function zoomTo(value: real, animated: bool) {
        anchorAt(Qt.point(width / 2, height / 2))
        glide(value, animated)
    }
    function glide(value: real, animated: bool) {
        if (!zoomed || limited(value) === zoom)
            return
        cancelFlick()
        movement.to = limited(value)
        movement.restart()
        if (!animated)
            movement.complete()
    }

    anchors.fill: parent
    contentWidth: width * zoom
    contentHeight: height * zoom
    boundsBehavior: Flickable.StopAtBounds
    // Unzoomed there is nothing to move, and drags are left to the scroll view around.
    interactive: scrolls && zoom > minimumZoom && !areTwoDown
    onZoomChanged: follow()
    Accessible.role: Accessible.Graphic
    Accessible.name: accessibleName

    Component.onCompleted: content.parent = contentItem

    NumberAnimation {
        id: movement

        target: area
        property: "zoom"
        duration: 220
        easing.type: Easing.InOutQuad
        onFinished: area.zoomEnded()
    }
    Binding {
        target: area.zoomed
        property: "scale"
        value: area.zoom
        when: area.zoomed
        restoreMode: Binding.RestoreNone
    }
    PointHandler {
        id: first
    }
    PointHandler {
        id: second
    }
    PinchHandler {
        property real initialZoom: 1

        target: null
        enabled: area.zoomed
        onActiveChanged: {
            if (active) {
                movement.stop()
                initialZoom = area.zoom
                area.anchorAt(area.mapFromItem(null, centroid.scenePosition))
            } else {
                area.zoomEnded()
            }
        }
        onUpdated: {
            area.anchorInView = area.mapFromItem(null, centroid.scenePosition)
            area.zoom = area.limited(initialZoom * activeScale)
            area.follow()
        }
    }
    TapHandler {
        onDoubleTapped: eventPoint => {
            area.anchorAt(area.mapFromItem(null, eventPoint.scenePosition))
            area.glide(area.zoom > area.minimumZoom ? area.minimumZoom : area.maximumZoom, true)
        }
    }
}
