import QtQuick

Item {
    required property QtObject controller
}
