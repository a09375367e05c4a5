#pragma once

#include "Brevanto/BrevantoExport.h"

#include <QtGlobal>

// The door of the SDK: a host application asks for the shared client and tells it to show the camera screen. Everything
// that follows happens on the SDK's own screens, over the host's window, until the user closes them. The client holds
// no state between calls.
class BREVANTO_EXPORT BrevantoClient
{
public:
    // The one client of the process, the same from any thread; it lives until the process ends and is never to be
    // deleted.
    static BrevantoClient *sharedClient();

    // Presents a fresh camera screen over the window that has the focus (else the first visible one), animated. On the
    // main thread only. Shows nothing, and reports nothing, when the application has no Qt Quick window on the screen
    // or when something is presented over it already; brevantoShownScreen() tells. Raises Platform::Exception when the
    // library was packaged without its screens.
    void showCameraScreen();

private:
    constexpr BrevantoClient() = default;
    Q_DISABLE_COPY_MOVE(BrevantoClient)
};
