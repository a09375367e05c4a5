#pragma once

#include "Brevanto/BrevantoExport.h"

// Size in points of the screen that the SDK fills: set whenever the camera screen loads, 0 before.
extern BREVANTO_EXPORT double kScreenWidth;
extern BREVANTO_EXPORT double kScreenHeight;

// Names the constants for a host that looks for a class; it has no contents.
class BREVANTO_EXPORT BrevantoConstants
{
};
