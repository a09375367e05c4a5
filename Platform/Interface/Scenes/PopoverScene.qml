import QtQuick
import QtQuick.Controls.Basic
import Brevanto.Platform

// A bubble with an arrow, somewhere over the whole window.
View {
    id: scene

    required property PopoverPresentationController controller
    property bool animated: true
    property alias popup: popup
    property alias contents: contents

    objectName: "popover"

    Popup {
        id: popup

        property real growth: 1

        width: scene.width
        height: scene.height
        padding: 0
        modal: true
        dim: false
        focus: true
        closePolicy: Popup.NoAutoClose
        background: Item { }

        enter: scene.animated ? appear : null
        exit: scene.animated ? disappear : null
        Transition {
            id: appear
            NumberAnimation { property: "opacity"; from: 0; to: 1; duration: 150; easing.type: Easing.OutQuad }
            NumberAnimation { target: popup; property: "growth"; from: 0.85; to: 1; duration: 220; easing.type: Easing.OutCubic }
        }
        Transition {
            id: disappear
            NumberAnimation { property: "opacity"; to: 0; duration: 150; easing.type: Easing.InQuad }
        }

        Item {
            objectName: "popoverOutside"
            anchors.fill: parent
            Accessible.role: Accessible.Button
            Accessible.name: qsTr("Close")
            Accessible.onPressAction: scene.controller.requestDismissal()

            // Not while it appears: the second tap of two in a row on what opened it is no wish to close it.
            TapHandler {
                enabled: popup.opened
                gesturePolicy: TapHandler.WithinBounds
                onTapped: scene.controller.requestDismissal()
            }
        }

        Item {
            id: bubble

            anchors.fill: parent
            // Out of the arrow's tip.
            transform: Scale {
                origin.x: scene.controller.arrowTip.x
                origin.y: scene.controller.arrowTip.y
                xScale: popup.growth
                yScale: popup.growth
            }

            // Below the arrow, which it would darken.
            Item {
                x: card.x
                y: card.y
                width: card.width
                height: card.height

                ViewShadow {
                    shadow: ({ "radius": 16, "opacity": 0.3, "offset": Qt.size(0, 4) })
                    cornerRadius: scene.controller.cornerRadius
                }
            }

            // One corner of a square that stands on its tip; the rest lies behind the card.
            Item {
                readonly property point vector: scene.controller.arrowVector
                readonly property point tip: scene.controller.arrowTip

                x: tip.x - width / 2 - vector.x * width / 2
                y: tip.y - height / 2 - vector.y * height / 2
                width: 26
                height: 26
                visible: vector.x !== 0 || vector.y !== 0
                clip: true

                Rectangle {
                    x: (parent.width - width) / 2 + parent.vector.x * 1.5
                    y: (parent.height - height) / 2 + parent.vector.y * 1.5
                    width: 18
                    height: 18
                    radius: 3
                    rotation: 45
                    antialiasing: true
                    color: scene.controller.arrowColor
                }
            }

            Rectangle {
                id: card

                objectName: "popoverCard"
                x: scene.controller.frame.x
                y: scene.controller.frame.y
                width: scene.controller.frame.width
                height: scene.controller.frame.height
                radius: scene.controller.cornerRadius
                color: scene.controller.backgroundColor

                // A tap beside the contents' controls is none outside.
                TapHandler {
                    gesturePolicy: TapHandler.WithinBounds
                }
                View {
                    id: contents

                    anchors.fill: parent
                    clip: true
                }
            }
        }
    }
}
