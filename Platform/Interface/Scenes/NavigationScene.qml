import QtQuick
import QtQuick.Controls.Basic
import Brevanto.Platform

// A stack of screens between a navigation bar and a toolbar.
View {
    id: scene

    required property NavigationController controller
    readonly property real sideMargin: 12

    function pushItem(item: Item) {
        stack.push(item, {}, StackView.Immediate)
    }
    function popItem() {
        stack.pop(StackView.Immediate)
    }

    StackView {
        id: stack

        anchors.fill: parent
        clip: true
        focus: true
    }

    // A swipe from the left edge leads back.
    Item {
        width: 16
        height: parent.height
        visible: scene.controller.canPop

        DragHandler {
            property real distance: 0

            target: null
            yAxis.enabled: false
            onTranslationChanged: distance = translation.x
            onActiveChanged: {
                if (!active && distance > 60)
                    scene.controller.interactivePop()
                distance = 0
            }
        }
    }

    ToolBar {
        id: bar

        objectName: "navigationBar"
        width: parent.width
        height: 44 + scene.controller.safeAreaTop
        topPadding: scene.controller.safeAreaTop
        leftPadding: 0
        rightPadding: 0
        bottomPadding: 0
        visible: !scene.controller.navigationBarHidden

        background: Rectangle {
            color: scene.controller.barColor

            Rectangle {
                readonly property var shadow: scene.controller.shadow

                anchors.top: parent.bottom
                width: parent.width
                height: shadow.offset.height + shadow.radius
                visible: shadow.opacity > 0
                gradient: Gradient {
                    GradientStop {
                        position: 0
                        color: Qt.alpha(scene.controller.shadow.color, scene.controller.shadow.opacity)
                    }
                    GradientStop {
                        position: 1
                        color: Qt.alpha(scene.controller.shadow.color, 0)
                    }
                }
            }
        }
        contentItem: NavigationBarContents {
            controller: scene.controller
            sideMargin: scene.sideMargin
        }
    }

    ToolBar {
        objectName: "toolbar"
        anchors.bottom: parent.bottom
        width: parent.width
        height: 44
        padding: 0
        visible: !scene.controller.toolbarHidden
        background: Rectangle {
            color: scene.controller.toolbarColor

            Rectangle {
                width: parent.width
                height: 1
                color: Qt.alpha(scene.controller.toolbarTintColor, 0.2)
            }
        }
        contentItem: Item {
            BarButtonRow {
                objectName: "toolbarItems"
                x: scene.sideMargin
                width: parent.width - 2 * scene.sideMargin
                items: scene.controller.toolbarItems
                tintColor: scene.controller.toolbarTintColor
                onActivated: index => scene.controller.activateToolbarItem(index)
            }
        }
    }
}
