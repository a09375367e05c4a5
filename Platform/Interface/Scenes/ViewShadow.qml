import QtQuick

// A blurred shadow under a view.
BorderImage {
    id: root

    property var shadow: ({ "radius": 0, "opacity": 0, "offset": Qt.size(0, 0) })
    property real cornerRadius
    readonly property int blur: Math.ceil(shadow.radius)
    readonly property int corner: Math.ceil(cornerRadius)

    x: shadow.offset.width - blur
    y: shadow.offset.height - blur
    z: -2
    width: (parent ? parent.width : 0) + 2 * blur
    height: (parent ? parent.height : 0) + 2 * blur
    opacity: shadow.opacity
    source: "image://brevanto-shadow/" + corner + "," + blur
    border {
        left: root.corner + 2 * root.blur
        right: root.corner + 2 * root.blur
        top: root.corner + 2 * root.blur
        bottom: root.corner + 2 * root.blur
    }
}
