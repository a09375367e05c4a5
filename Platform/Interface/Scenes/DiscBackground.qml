import QtQuick
import QtQuick.Window

// A disc as a picture: it has four corners for the graphics processor to place, where a Rectangle has a hundred, and
// fading changes none of them.
Image {
    property color color

    anchors.fill: parent
    z: -1
    source: "image://brevanto-disc/" + color.toString().substring(1)
    sourceSize {
        width: Math.ceil(width * Screen.devicePixelRatio)
        height: Math.ceil(height * Screen.devicePixelRatio)
    }
}
