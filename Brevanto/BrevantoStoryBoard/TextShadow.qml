pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Window

// The blurred shadow of a text, made of faint copies that scatter about its place like a bell curve. Where all of them
// overlap the shadow is as dark as `color`.
Item {
    id: root

    required property Text source
    property point offset: Qt.point(2, 2)
    property real blur: 5
    property color color: Qt.rgba(0, 0, 0, 0.8)

    readonly property int copies: 24
    readonly property real copyAlpha: 1 - Math.pow(1 - color.a, 1 / copies)

    anchors.fill: parent

    Repeater {
        // A label out of sight does without, which keeps long galleries light. One that has left its window counts as
        // visible for Qt.
        model: root.visible && root.Window.window ? root.copies : 0

        Text {
            required property int index
            readonly property real angle: index * 2.4 // the golden angle: no two copies in one direction
            readonly property real distance: root.blur / 2 * Math.sqrt(-2 * Math.log(1 - (index + 0.5) / root.copies))

            x: root.source.x + root.offset.x + distance * Math.cos(angle)
            y: root.source.y + root.offset.y + distance * Math.sin(angle)
            width: root.source.width
            height: root.source.height
            text: root.source.text
            textFormat: root.source.textFormat
            font: root.source.font
            color: Qt.rgba(root.color.r, root.color.g, root.color.b, root.copyAlpha)
            horizontalAlignment: root.source.horizontalAlignment
            verticalAlignment: root.source.verticalAlignment
            wrapMode: root.source.wrapMode
            elide: root.source.elide
            maximumLineCount: root.source.maximumLineCount
            Accessible.ignored: true
        }
    }
}
