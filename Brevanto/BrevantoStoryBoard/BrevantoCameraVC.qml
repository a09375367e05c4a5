import QtQuick
import Brevanto.Platform
import Brevanto.StoryBoard

// The camera: preview over the whole screen, controls within the thumb's reach. The bar with the shutter stands at the
// bottom, in landscape at the right.
View {
    id: root

    required property BrevantoCameraVC controller

    readonly property bool landscape: width > height
    readonly property real barSize: Math.min(width, height) < 360 ? 108 : 124
    // Clear of the offline banner and of a camera cut-out.
    readonly property real topMargin: 40
    readonly property real sideMargin: 16

    backgroundColor: "black"

    Keys.onPressed: event => {
        if (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal)
            controller.zoomIn()
        else if (event.key === Qt.Key_Minus)
            controller.zoomOut()
        else
            return
        event.accepted = true
    }

    View {
        id: preview
        objectName: "previewView"
        anchors.fill: parent
        clip: true

        PinchHandler {
            target: null
            onActiveChanged: root.controller.pinched(active ? BrevantoCameraVC.Began : BrevantoCameraVC.Ended, activeScale)
            onActiveScaleChanged: if (active) root.controller.pinched(BrevantoCameraVC.Changed, activeScale)
        }
    }

    View {
        objectName: "blurView"
        anchors.fill: preview
        backgroundColor: "#99000000"
    }

    View {
        id: dashed
        objectName: "dashedView"
        visible: false
        x: root.landscape ? 76 : 24
        y: root.landscape ? 40 : root.topMargin + 44 + 20
        width: (root.landscape ? bar.x : root.width) - 2 * x
        height: (root.landscape ? root.height - 24 : bar.y - 24) - y
    }

    View {
        id: spinner
        objectName: "spinnerView"

        property bool running: false

        x: ((root.landscape ? bar.x : root.width) - width) / 2
        y: ((root.landscape ? root.height : bar.y) - height) / 2
        width: 88
        height: 88
        cornerRadius: 44
        backgroundColor: "#99000000"

        ActivityIndicator {
            animating: spinner.running
            anchors.centerIn: parent
            width: 37
            height: 37
        }
    }

    View {
        id: bar
        objectName: "bottomBar"
        x: root.landscape ? root.width - width : 0
        y: root.landscape ? 0 : root.height - height
        width: root.landscape ? root.barSize : root.width
        height: root.landscape ? root.height : root.barSize
        backgroundColor: "black"

        // Places from the bar's one end to the other, as the thumb meets them.
        function along(part: real, size: real): real {
            return (root.landscape ? (1 - part) * height : part * width) - size / 2
        }
        function across(size: real): real {
            return ((root.landscape ? width : height) - size) / 2
        }

        RoundButton {
            id: recents
            objectName: "recentsButton"
            x: root.landscape ? bar.across(width) : bar.along(1 / 6, width)
            y: root.landscape ? bar.along(1 / 6, height) : bar.across(height)
            text: "Recents"
            tint: "white"
            iconSource: "../Assets/ic_recents.svg"
            onClicked: root.controller.recentsButtonAction()
        }
        Text {
            anchors.top: recents.bottom
            anchors.topMargin: 4
            anchors.horizontalCenter: recents.horizontalCenter
            text: recents.text
            color: "white"
            font: SystemFont.regular(12)
            Accessible.ignored: true
        }
        ShutterButton {
            objectName: "captureButton"
            x: root.landscape ? bar.across(width) : bar.along(1 / 2, width)
            y: root.landscape ? bar.along(1 / 2, height) : bar.across(height)
            text: "Take photo"
            focus: true
            onClicked: root.controller.captureButtonAction()
        }
        RoundButton {
            objectName: "flashButton"
            x: root.landscape ? bar.across(width) : bar.along(5 / 6, width)
            y: root.landscape ? bar.along(5 / 6, height) : bar.across(height)
            text: "Flash"
            tint: "white"
            iconSource: selected ? "../Assets/ic_flash_on.svg" : "../Assets/ic_flash_off.svg"
            onClicked: root.controller.flashButtonAction()
        }
    }

    RoundButton {
        objectName: "infoButton"
        x: (root.landscape ? bar.x : root.width) - width - root.sideMargin
        y: root.topMargin
        text: "Framing guide"
        selected: dashed.visible
        iconSource: selected ? "../Assets/ic_guide_on.svg" : "../Assets/ic_guide_off.svg"
        onClicked: root.controller.infoButtonAction()
    }
    RoundButton {
        objectName: "closeButton"
        x: root.sideMargin
        y: root.topMargin
        text: "Close"
        iconSource: "../Assets/ic_close.svg"
        onClicked: root.controller.closeButtonAction()
    }
}
