#include "Platform/Capture/CaptureAuthorizationRestriction.h"

#include <AVFoundation/AVFoundation.h>

namespace Platform
{

bool isCaptureRestricted()
{
    return [AVCaptureDevice authorizationStatusForMediaType:AVMediaTypeVideo] == AVAuthorizationStatusRestricted;
}

} // namespace Platform
