#pragma once

#include "Platform/Foundation/DispatchQueue.h"

namespace Platform
{

// The serial queue of the capture layer, on which photos are read and handed over.
DispatchQueue &captureQueue();

} // namespace Platform
