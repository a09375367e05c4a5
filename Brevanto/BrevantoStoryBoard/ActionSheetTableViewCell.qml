import QtQuick
import Brevanto.StoryBoard

// A row of the legend.
OptionCell {
    readonly property Item titleIconImageView: iconImageView
}
