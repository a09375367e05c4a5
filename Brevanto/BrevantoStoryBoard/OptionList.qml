import QtQuick
import QtQuick.Controls.Basic

// The list of a controller that answers for its rows: titlesArray, iconForRow(), heightForRow(), didSelectRow() and the
// heights of header and footer. Arrow keys walk through the rows, Return and Space choose the current one.
ListView {
    id: list

    required property var screen
    // What a screen reader calls the list.
    property string name

    model: screen.titlesArray
    clip: true
    focus: true
    activeFocusOnTab: true
    keyNavigationEnabled: true
    currentIndex: -1
    highlightMoveDuration: 0
    boundsBehavior: Flickable.StopAtBounds
    interactive: contentHeight > height
    Accessible.role: Accessible.List
    Accessible.name: name
    ScrollBar.vertical: ScrollBar {
        policy: list.interactive ? ScrollBar.AsNeeded : ScrollBar.AlwaysOff
    }

    header: Item {
        implicitHeight: list.screen.heightForHeader()
    }
    footer: Item {
        implicitHeight: list.screen.heightForFooter()
    }
    Keys.onReturnPressed: screen.didSelectRow(currentIndex)
    Keys.onEnterPressed: screen.didSelectRow(currentIndex)
    Keys.onSpacePressed: screen.didSelectRow(currentIndex)
}
