import QtQuick
import Brevanto.Platform
import Brevanto.StoryBoard

// One image after another on black, with an arrow on either side and a row of dots below.
View {
    id: root

    required property BrevantoPhotoGalleryVC controller

    backgroundColor: "black"

    Keys.onLeftPressed: controller.prevButtonClicked()
    Keys.onRightPressed: controller.nextButtonClicked()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Plus || event.key === Qt.Key_Equal)
            controller.zoomIn()
        else if (event.key === Qt.Key_Minus)
            controller.zoomOut()
        else
            return
        event.accepted = true
    }

    ScrollArea {
        objectName: "imagesScrollView"
        width: root.width
        height: root.height
    }
    PushButton {
        objectName: "prevButton"
        x: 8
        y: (root.height - height) / 2
        width: 48
        height: 48
        cornerRadius: 24
        backgroundColor: "#a6ffffff"
        accessibleName: qsTr("Previous image")
        // The arrow's own picture is not centred.
        imageOffset: Qt.point(-4, 0)
    }
    PushButton {
        objectName: "nextButton"
        x: root.width - width - 8
        y: (root.height - height) / 2
        width: 48
        height: 48
        cornerRadius: 24
        backgroundColor: "#a6ffffff"
        accessibleName: qsTr("Next image")
        imageOffset: Qt.point(7, 0)
    }
    PageControl {
        objectName: "pageControl"
        y: root.height - height
        width: root.width
        height: 20
    }
}
