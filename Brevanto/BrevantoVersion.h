#pragma once

#include "Brevanto/BrevantoExport.h"

// This is where the version stands: the build reads it here.

// The version that a host is compiled against, for its preprocessor. Another major version may take something away.
#define BREVANTO_VERSION_MAJOR 1
// A greater minor version has more to use.
#define BREVANTO_VERSION_MINOR 0
// A greater patch version has faults mended.
#define BREVANTO_VERSION_PATCH 0
// The three as one number, to be compared with QT_VERSION_CHECK(1, 1, 0) and the like.
#define BREVANTO_VERSION QT_VERSION_CHECK(BREVANTO_VERSION_MAJOR, BREVANTO_VERSION_MINOR, BREVANTO_VERSION_PATCH)

extern "C" {

// The major version of the library that the host runs with, in the form that the `what` tool finds in a binary: "@(#)",
// program, project, version, line feed.
BREVANTO_EXPORT extern const char BrevantoVersionString[];

// The same as a number.
BREVANTO_EXPORT extern const double BrevantoVersionNumber;
}
