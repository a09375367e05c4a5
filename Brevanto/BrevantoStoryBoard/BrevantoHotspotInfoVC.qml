import QtQuick
import Brevanto.Platform
import Brevanto.StoryBoard

// The legend hangs from a bar at the top; around it the screen below shows through.
View {
    id: root

    required property BrevantoHotspotInfoVC controller

    View {
        objectName: "transparentView"
        anchors.fill: parent
        Accessible.role: Accessible.Button
        Accessible.name: qsTr("Close")
        Accessible.onPressAction: root.controller.handleTapOnTransparentView()

        TapHandler {
            gesturePolicy: TapHandler.WithinBounds
            onTapped: root.controller.handleTapOnTransparentView()
        }
    }

    // The rounded corners at its top lie under the bar.
    Rectangle {
        readonly property real corner: 14

        y: topView.height - corner
        width: parent.width
        height: dataTableView.height + corner
        radius: corner
        color: "white"

        // The sheet's own ground: no row, but not the area around it either.
        TapHandler {
            gesturePolicy: TapHandler.WithinBounds
        }
    }

    OptionList {
        id: dataTableView

        objectName: "dataTableView"
        anchors.top: topView.bottom
        width: parent.width
        height: Math.min(root.controller.tableViewHeightConstraint, root.height - topView.height)
        screen: root.controller
        name: qsTr("Information")
        delegate: ActionSheetTableViewCell { }
        KeyNavigation.tab: arrowButton
        KeyNavigation.backtab: arrowButton
    }

    View {
        id: topView

        objectName: "topView"
        width: parent.width
        height: 44
        backgroundColor: "black"

        // All of the bar is the arrow's.
        TapHandler {
            gesturePolicy: TapHandler.WithinBounds
            onTapped: root.controller.arrowButtonAction()
        }
        RoundButton {
            id: arrowButton

            objectName: "arrowButton"
            anchors.centerIn: parent
            text: qsTr("Close")
            iconSource: "../Assets/ic_arrow_up.svg"
            KeyNavigation.tab: dataTableView
            KeyNavigation.backtab: dataTableView
            onClicked: root.controller.arrowButtonAction()
        }
    }
}
