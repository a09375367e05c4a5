#include "Brevanto/BrevantoVersion.h"

// The build says which version this is.
#define TEXT_OF(value) #value
#define TEXT(macro) TEXT_OF(macro)

extern "C" {

const char BrevantoVersionString[] = "@(#)PROGRAM:Brevanto  PROJECT:Brevanto-" TEXT(BREVANTO_PROJECT_VERSION) "\n";

const double BrevantoVersionNumber = BREVANTO_PROJECT_VERSION;
}
