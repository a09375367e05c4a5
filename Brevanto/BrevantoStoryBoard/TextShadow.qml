import QtQuick
import QtQuick.Window

// The blurred shadow of a text, made of faint copies that scatter about its place like a bell curve. Where all of them
// overlap the shadow is as dark as `color`.
Item {
    id: shadow

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
        model: shadow.visible && shadow.Window.window ? shadow.copies : 0

        Text {
            required property int index
            readonly property real angle: index * 2.4 // the golden angle: no two copies in one direction
            readonly property real distance: shadow.blur / 2 * Math.sqrt(-2 * Math.log(1 - (index + 0.5) / shadow.copies))

            x: shadow.source.x + shadow.offset.x + distance * Math.cos(angle)
            y: shadow.source.y + shadow.offset.y + distance * Math.sin(angle)
            width: shadow.source.width
            height: shadow.source.height
            text: shadow.source.text
            textFormat: shadow.source.textFormat
            font: shadow.source.font
            color: Qt.rgba(shadow.color.r, shadow.color.g, shadow.color.b, shadow.copyAlpha)
            horizontalAlignment: shadow.source.horizontalAlignment
            verticalAlignment: shadow.source.verticalAlignment
            wrapMode: shadow.source.wrapMode
            elide: shadow.source.elide
            maximumLineCount: shadow.source.maximumLineCount
            Accessible.ignored: true
        }
    }
}
