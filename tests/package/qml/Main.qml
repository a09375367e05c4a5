import QtQuick
import Brevanto

// A host in QML: opens the camera screen, sees that it stands there, and sees it go as the user goes back.
Window {
    id: window

    property int changes: 0

    width: 390
    height: 844
    visible: true

    function fail(code) {
        console.error("step", changes, "status", code)
        Qt.exit(code)
    }

    Connections {
        target: BrevantoClient

        function onCameraScreenShownChanged() {
            window.changes += 1
            if (window.changes === 2)
                Qt.exit(BrevantoClient.cameraScreenShown ? 5 : 0)
        }
    }
    Timer {
        interval: 0
        running: true
        onTriggered: {
            const knowsNetwork = BrevantoClient.reachabilityStatus >= BrevantoClient.NotReachable
            const isVersioned = BrevantoClient.versionString.endsWith("-" + BrevantoClient.versionNumber)
            if (!isVersioned || !knowsNetwork || BrevantoClient.cameraScreenShown)
                window.fail(2)
            else if (!BrevantoClient.showCameraScreen() || !BrevantoClient.cameraScreenShown || window.changes !== 1)
                window.fail(3)
            else if (BrevantoClient.showCameraScreen() || window.changes !== 1)
                window.fail(4)
        }
    }
}
