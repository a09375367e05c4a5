import QtQuick
import QtQuick.Controls.Basic
import Brevanto.StoryBoard

// The list of an option screen. Arrow keys walk through the rows, Return and Space choose the current one.
ListView {
    id: list

    required property OptionListController screen
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
        implicitHeight: (ListView.view as OptionList).screen.headerHeight
    }
    footer: Item {
        implicitHeight: (ListView.view as OptionList).screen.footerHeight
    }
    Keys.onReturnPressed: screen.didSelectRow(currentIndex)
    Keys.onEnterPressed: screen.didSelectRow(currentIndex)
    Keys.onSpacePressed: screen.didSelectRow(currentIndex)
}
