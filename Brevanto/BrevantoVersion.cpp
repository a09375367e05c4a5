#include "Brevanto/BrevantoVersion.h"

#include <QtGlobal>

extern "C" {

const char BrevantoVersionString[] =
    "@(#)PROGRAM:Brevanto  PROJECT:Brevanto-" QT_STRINGIFY(BREVANTO_PROJECT_VERSION) "\n";

const double BrevantoVersionNumber = BREVANTO_PROJECT_VERSION;
}
