#include "Platform/Capture/CaptureDevice.h"

#include "Platform/Capture/CaptureAuthorization.h"
#include "Platform/Capture/MachineCamera.h"
#include "Platform/Foundation/Exception.h"

#include <algorithm>

namespace Platform
{

namespace
{

std::vector<std::shared_ptr<CaptureDevice>> &registeredDevices()
{
    static auto &devices = *new std::vector<std::shared_ptr<CaptureDevice>>; // no camera goes after the application
    return devices;
}

} // namespace

CaptureDevice::CaptureDevice() = default;

CaptureDevice::~CaptureDevice() = default;

std::vector<std::shared_ptr<CaptureDevice>> CaptureDevice::devices()
{
    std::vector<std::shared_ptr<CaptureDevice>> devices = registeredDevices();
    const auto cameras = MachineCamera::cameras();
    devices.insert(devices.end(), cameras.begin(), cameras.end());
    return devices;
}

void CaptureDevice::registerDevice(const std::shared_ptr<CaptureDevice> &device)
{
    auto &devices = registeredDevices();
    if (device && std::find(devices.begin(), devices.end(), device) == devices.end())
        devices.push_back(device);
}

void CaptureDevice::unregisterDevice(const std::shared_ptr<CaptureDevice> &device)
{
    std::erase(registeredDevices(), device);
}

CaptureAuthorizationStatus CaptureDevice::authorizationStatus()
{
    return CaptureAuthorization::current().status();
}

void CaptureDevice::requestAccess(std::function<void(bool)> completion)
{
    CaptureAuthorization::current().request(std::move(completion));
}

void CaptureDevice::setFlashMode(CaptureFlashMode mode)
{
    requireLock();
    if (!hasFlash())
        throw Exception(Exception::Name::InvalidArgument, QStringLiteral("The device has no flash"));
    applyFlashMode(mode);
}

void CaptureDevice::setFocusMode(CaptureFocusMode mode)
{
    requireLock();
    if (!isFocusModeSupported(mode))
        throw Exception(Exception::Name::InvalidArgument, QStringLiteral("The device does not support the focus mode"));
    applyFocusMode(mode);
}

void CaptureDevice::rampToVideoZoomFactor(qreal factor, qreal rate)
{
    requireLock();
    applyZoom(std::clamp(factor, 1.0, std::max(1.0, activeFormatVideoMaxZoomFactor())), rate);
}

bool CaptureDevice::lockForConfiguration()
{
    if (!acquireConfiguration())
        return false;
    ++m_locks;
    return true;
}

void CaptureDevice::unlockForConfiguration()
{
    if (m_locks > 0)
        --m_locks;
}

void CaptureDevice::requireLock() const
{
    if (m_locks == 0)
        throw Exception(Exception::Name::InternalInconsistency,
                        QStringLiteral("The device is not locked for configuration"));
}

void CaptureDevice::start(const void *owner, CaptureSessionPreset preset, FrameHandler handler)
{
    if (isStartedBy(owner))
        return;
    if (m_owner)
        stopDelivering();
    m_owner = owner;
    open();
    startDelivering(preset, std::move(handler));
}

void CaptureDevice::stop(const void *owner)
{
    if (!isStartedBy(owner))
        return;
    m_owner = nullptr;
    stopDelivering();
}

} // namespace Platform
