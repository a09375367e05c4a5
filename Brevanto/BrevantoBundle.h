#pragma once

#include "Platform/Foundation/Bundle.h"
#include "Platform/Interface/Storyboard.h"

// The SDK's own resources: the storyboard "BrevantoStoryBoard" and the image assets. Made on first use.
const Platform::Bundle &brevantoBundle();

// The storyboard of that bundle.
Platform::Storyboard brevantoStoryboard();
