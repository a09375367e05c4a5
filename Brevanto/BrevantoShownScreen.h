#pragma once

#include "Brevanto/BrevantoExport.h"

class QObject;

// The screen that was presented first of those over the key window; null when there is none. It is destroyed when it
// has left. For the library's own QML module; not installed. On the main thread only.
BREVANTO_EXPORT QObject *brevantoShownScreen();
