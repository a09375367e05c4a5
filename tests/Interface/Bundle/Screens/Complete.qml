import QtQuick
import Brevanto.Platform

View {
    required property QtObject controller

    Item {
        View {
            objectName: "deep"
            tag: 7
        }
    }
    Item {
        property int tag: 8

        objectName: "item"
    }
    Label {
        objectName: "label"
        text: controller.greeting
    }
}
