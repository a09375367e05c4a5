import QtQuick
import Brevanto.Platform
import Brevanto.StoryBoard

// The ad image, whole, on a dark ground.
View {
    id: root

    required property BrevantoAdVC controller

    backgroundColor: "#111114"

    ImageView {
        objectName: "backgroundImageView"
        anchors.fill: parent
    }

    ActivityIndicator {
        anchors.centerIn: parent
        width: 37
        height: 37
        animating: root.controller.isImageLoading
    }
}
