#include "Brevanto/BrevantoVersion.h"

extern "C" {

const char BrevantoVersionString[] = "@(#)PROGRAM:Brevanto  PROJECT:Brevanto-1\n";

const double BrevantoVersionNumber = 1.0;
}
