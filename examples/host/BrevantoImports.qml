// What Brevanto's screens import, for Qt's deployment, which reads the folder of an application. Nobody loads it.
import QtMultimedia
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates
import QtQuick.Window
import QtWebView

QtObject { }
