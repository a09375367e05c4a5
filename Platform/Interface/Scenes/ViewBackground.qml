import QtQuick

Rectangle {
    anchors.fill: parent
    z: -1
}
