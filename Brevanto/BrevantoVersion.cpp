#include "Brevanto/BrevantoVersion.h"

extern "C" {

const char BrevantoVersionString[] =
    "@(#)PROGRAM:Brevanto  PROJECT:Brevanto-" QT_STRINGIFY(BREVANTO_VERSION_MAJOR) "\n";

const double BrevantoVersionNumber = BREVANTO_VERSION_MAJOR;
}
