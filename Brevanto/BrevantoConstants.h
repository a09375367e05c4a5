#pragma once

#include "Brevanto/BrevantoExport.h"

// Width in points of the screen that the SDK fills: set whenever the camera screen loads, 0 before. On the main thread
// only.
extern BREVANTO_EXPORT double kScreenWidth;
// Its height, likewise.
extern BREVANTO_EXPORT double kScreenHeight;

// Names the constants for a host that looks for a class; it has no contents.
class BREVANTO_EXPORT BrevantoConstants
{
};
