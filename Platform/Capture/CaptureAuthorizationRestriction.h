#pragma once

namespace Platform
{

// Whether it is the device, not the user, that keeps the application from the camera: parental controls or a company's
// rules. Qt counts both as denied. On iOS only.
bool isCaptureRestricted();

} // namespace Platform
