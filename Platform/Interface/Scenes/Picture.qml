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
    readonly property bool hasFailed: picture.status === Image.Error
    readonly property bool isFit: contentMode === 1
    readonly property bool isFill: contentMode === 2
    readonly property bool isCentred: contentMode === 4
    readonly property bool isEmpty: naturalSize.width <= 0 || naturalSize.height <= 0 || width <= 0 || height <= 0
    readonly property real fitScale: Math.min(width / naturalSize.width, height / naturalSize.height)
    readonly property real fillScale: Math.max(width / naturalSize.width, height / naturalSize.height)
    readonly property real factor: isCentred ? 1 : isFill ? fillScale : fitScale

    // In pixels. The picture is decoded for the first place that it has; while the view's size changes it is scaled, for
    // it would be blank while it is decoded anew. A finer one is put over it once the view has grown and rests.
    readonly property size drawn: isEmpty ? Qt.size(0, 0) : Qt.size(Math.ceil(picture.width * Screen.devicePixelRatio),
                                                                    Math.ceil(picture.height * Screen.devicePixelRatio))
    property alias decoded: picture.sourceSize
    property size rested: Qt.size(0, 0)
    readonly property real growth: decoded.width <= 0 || decoded.height <= 0 ? 1 :
        Math.min(detail * Math.max(rested.width / decoded.width, rested.height / decoded.height),
                 naturalSize.width / decoded.width)

    anchors.fill: parent
    onSourceChanged: begin()
    onKeepsPixelsChanged: begin()
    onIsReadyChanged: refine()
    onGrowthChanged: refine()
    onDrawnChanged: {
        if (decoded.width <= 0)
            begin()
        rest.restart()
    }

    function begin() {
        decoded = drawn
        rested = drawn
    }
    function refine() {
        const isFine = isReady && growth > 1.2
        if (isFine)
            finer.sourceSize = Qt.size(Math.ceil(decoded.width * growth), Math.ceil(decoded.height * growth))
        finer.source = isFine ? picture.source : ""
    }

    Timer {
        id: rest

        interval: 200
        onTriggered: root.rested = root.drawn
    }

    Image {
        id: picture

        anchors.centerIn: parent
        width: root.isEmpty ? 0 : root.isFit || root.isFill || root.isCentred ? root.naturalSize.width * root.factor : root.width
        height: root.isEmpty ? 0 : root.isFit || root.isFill || root.isCentred ? root.naturalSize.height * root.factor : root.height
        // Without a size the picture would be decoded whole.
        source: root.decoded.width <= 0 || !root.keepsPixels ? "" : root.source
        asynchronous: true
        cache: false
        smooth: true
        mipmap: false
        fillMode: Image.Stretch
    }
    Image {
        id: finer

        anchors.fill: picture
        asynchronous: true
        cache: false
    }
}
