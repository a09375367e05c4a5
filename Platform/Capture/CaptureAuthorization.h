#pragma once

#include "Platform/Capture/CaptureDevice.h"

#include <functional>

namespace Platform
{

// The user's permission for this application to use the camera. For the main thread only.
class CaptureAuthorization
{
public:
    virtual ~CaptureAuthorization() = default;

    // The permission in use: the system's, unless a test has put its own in place.
    static CaptureAuthorization &current();
    // Replaces the permission; null restores the system's. The caller keeps ownership.
    static void setCurrent(CaptureAuthorization *authorization);

    virtual CaptureAuthorizationStatus status() const = 0;
    // Asks the user unless that has been done before. The completion runs on the main thread, once.
    virtual void request(std::function<void(bool granted)> completion) = 0;
};

} // namespace Platform
