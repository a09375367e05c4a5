import QtQuick

Text {
    anchors.fill: parent
    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    wrapMode: Text.WordWrap
    elide: Text.ElideRight
    maximumLineCount: 1
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
