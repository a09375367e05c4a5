import QtQuick
import Brevanto.Platform
import Brevanto.StoryBoard

// What a hotspot offers.
View {
    id: root

    required property BrevantoDetailsPopOverVC controller

    backgroundColor: "white"

    OptionList {
        objectName: "popOverTableView"
        anchors.fill: parent
        screen: root.controller
        name: qsTr("Options")
        delegate: DetailsTableViewCell { }
    }
}
