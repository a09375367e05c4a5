#pragma once

#include "Brevanto/BrevantoExport.h"

extern "C" {

// The library's version in the form that the `what` tool finds in a binary: "@(#)", program, project, version, line
// feed.
BREVANTO_EXPORT extern const char BrevantoVersionString[];

// The same version as a number.
BREVANTO_EXPORT extern const double BrevantoVersionNumber;
}
