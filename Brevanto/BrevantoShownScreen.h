#pragma once

#include "Brevanto/BrevantoExport.h"

class QObject;

// What of the library stands over the window that has the focus (else the first visible one), null when nothing does:
// how a host learns after BrevantoClient::showCameraScreen() whether the camera screen is shown. The object lives until
// the user has closed the screens and they have left the window, which its signal destroyed() tells. It belongs to the
// library. On the main thread only.
BREVANTO_EXPORT QObject *brevantoShownScreen();
