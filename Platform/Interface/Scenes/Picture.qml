import QtQuick
import QtQuick.Window

// An image decoded off the main thread at the size in which it is drawn.
Item {
    id: root

    property url source
    property size naturalSize
    property int contentMode
    property bool keepsPixels: true
    property real detail: 1
    readonly property bool isReady: picture.status === Image.Ready
    readonly property bool isFit: contentMode === 1
    readonly property bool isFill: contentMode === 2
    readonly property bool isCentred: contentMode === 4
    readonly property bool isEmpty: naturalSize.width <= 0 || naturalSize.height <= 0 || width <= 0 || height <= 0
    readonly property real fitScale: Math.min(width / naturalSize.width, height / naturalSize.height)
    readonly property real fillScale: Math.max(width / naturalSize.width, height / naturalSize.height)
    readonly property real factor: isCentred ? 1 : isFill ? fillScale : fitScale

    anchors.fill: parent

    Image {
        id: picture

        anchors.centerIn: parent
        width: root.isEmpty ? 0 : root.isFit || root.isFill || root.isCentred ? root.naturalSize.width * root.factor : root.width
        height: root.isEmpty ? 0 : root.isFit || root.isFill || root.isCentred ? root.naturalSize.height * root.factor : root.height
        // Without a size the picture would be decoded whole.
        source: root.isEmpty || !root.keepsPixels ? "" : root.source
        sourceSize: Qt.size(Math.ceil(width * Screen.devicePixelRatio), Math.ceil(height * Screen.devicePixelRatio))
        asynchronous: true
        cache: false
        smooth: true
        mipmap: false
        fillMode: Image.Stretch
    }
    // Stands over the picture once it is decoded, so that nothing blinks meanwhile.
    Loader {
        anchors.fill: picture
        active: root.detail > 1 && root.isReady && root.naturalSize.width > picture.sourceSize.width
        sourceComponent: Image {
            source: picture.source
            sourceSize: {
                const factor = Math.min(root.detail, root.naturalSize.width / picture.sourceSize.width)
                return Qt.size(Math.ceil(picture.sourceSize.width * factor), Math.ceil(picture.sourceSize.height * factor))
            }
            asynchronous: true
            cache: false
        }
    }
}
