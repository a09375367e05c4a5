#pragma once

// All that a host application needs of the SDK.
#include "Brevanto/BrevantoClient.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/BrevantoVersion.h"
#include "Brevanto/Reachability/BrevantoReachability.h"
