pragma ComponentBehavior: Bound

import QtQuick

// The spokes of an ActivityWheel, the last one the brightest.
Item {
    id: root

    property int count
    property color color

    Repeater {
        model: root.count

        Rectangle {
            id: spoke

            required property int index

            x: (root.width - width) / 2
            width: Math.max(2, root.width * 0.095)
            height: root.height * 0.28
            radius: width / 2
            color: root.color
            opacity: 0.2 + 0.8 * index / (root.count - 1)
            antialiasing: true
            transform: Rotation {
                origin.x: root.width / 2 - spoke.x
                origin.y: root.height / 2
                angle: spoke.index * 360 / root.count
            }
        }
    }
}
