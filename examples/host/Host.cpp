#include "Host.h"

#include "Brevanto/Brevanto.h"

void Host::showCameraScreen()
{
    BrevantoClient::sharedClient()->showCameraScreen();
}
