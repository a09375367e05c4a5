import QtQuick
import Brevanto.Platform

View {
    required property QtObject controller

    width: nothingOfThatName.width
    NoSuchType {}
}
