import QtMultimedia

VideoOutput {
    objectName: "videoOutput"
}
