import QtQuick

// Takes the taps of the view it stands in, and its keys.
Item {
    id: root

    property string name
    property real minimumSize: 44
    readonly property Item view: parent

    signal activated

    anchors.centerIn: parent
    width: Math.max(view ? view.width : 0, minimumSize)
    height: Math.max(view ? view.height : 0, minimumSize)
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: activated()
    Keys.onSpacePressed: activated()
    Keys.onReturnPressed: activated()
    Keys.onEnterPressed: activated()

    TapHandler {
        gesturePolicy: TapHandler.WithinBounds
        onTapped: root.activated()
    }

    // Light on dark, so that it is seen on every picture.
    Rectangle {
        anchors.centerIn: parent
        width: (root.view ? root.view.width : 0) + 8
        height: (root.view ? root.view.height : 0) + 8
        radius: width / 2
        visible: root.activeFocus
        color: "transparent"
        border.width: 2
        border.color: "white"

        Rectangle {
            anchors.fill: parent
            anchors.margins: -2
            radius: width / 2
            color: "transparent"
            border.width: 2
            border.color: "#1c1c1e"
        }
    }
}
