import Brevanto.StoryBoard

// A row of the details popover.
OptionCell {
}
