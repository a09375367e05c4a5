#pragma once

#include "Platform/Capture/CaptureSampleBuffer.h"
#include "Platform/Foundation/Export.h"

#include <QObject>
#include <QVideoFrame>

#include <functional>
#include <memory>
#include <vector>

namespace Platform
{

// Whether the application may use the camera: not asked yet, forbidden on this device, refused by the user, allowed.
enum class CaptureAuthorizationStatus { NotDetermined = 0, Restricted = 1, Denied = 2, Authorized = 3 };
// Where a camera looks: unknown, away from the user, at the user.
enum class CaptureDevicePosition { Unspecified = 0, Back = 1, Front = 2 };
// When the flash fires.
enum class CaptureFlashMode { Off = 0, On = 1, Auto = 2 };
// How the lens finds its distance.
enum class CaptureFocusMode { Locked = 0, ContinuousAutoFocus = 2 };
// What a session asks of a camera: good pictures in motion, or the best photo.
enum class CaptureSessionPreset { High, Photo };

// A camera: one of the machine's, or one that the host registers. Lives on the main thread, and all its operations are
// for the main thread only. Its settings change only between lockForConfiguration() and unlockForConfiguration().
class BREVANTO_EXPORT CaptureDevice : public QObject
{
    Q_OBJECT

public:
    CaptureDevice();
    ~CaptureDevice() override;

    // The video devices: registered ones first, in the order of their registration, since a host that registers a
    // camera wants it used; then the machine's, in the system's order. A device keeps its identity while somebody holds
    // it.
    static std::vector<std::shared_ptr<CaptureDevice>> devices();
    // Adds a device to devices(); null and a device that is registered already are ignored.
    static void registerDevice(const std::shared_ptr<CaptureDevice> &device);
    // Takes it off the list; sessions that use it go on.
    static void unregisterDevice(const std::shared_ptr<CaptureDevice> &device);

    // The user's permission for this application to use the machine's cameras. Where nothing asks for one, as on a
    // desktop, it is there.
    static CaptureAuthorizationStatus authorizationStatus();
    // Asks the user unless that has been done before. The completion runs on the main thread, once.
    static void requestAccess(std::function<void(bool granted)> completion);

    // A camera that does not know its position, such as a desktop's, counts as a back camera.
    virtual CaptureDevicePosition position() const = 0;
    // Whether the user's permission is needed before a session may start this device.
    virtual bool requiresAuthorization() const { return false; }
    // Gets the hardware ready; before that it has no flash, focus or zoom. Called once the user's permission is there,
    // by inputs and before every start.
    virtual void open() { }

    // Whether there is a flash at all.
    virtual bool hasFlash() const = 0;
    // Whether the flash would fire now.
    virtual bool isFlashActive() const = 0;
    // Off on a device without flash.
    virtual CaptureFlashMode flashMode() const = 0;
    // Raises InvalidArgument on a device without flash.
    void setFlashMode(CaptureFlashMode mode);

    // Whether the lens knows that mode.
    virtual bool isFocusModeSupported(CaptureFocusMode mode) const = 0;
    // The mode in use.
    virtual CaptureFocusMode focusMode() const = 0;
    // Raises InvalidArgument when the device does not support the mode.
    void setFocusMode(CaptureFocusMode mode);

    // The zoom in use; 1.0 shows the whole picture.
    virtual qreal videoZoomFactor() const = 0;
    // The largest zoom; 1.0 on a device without one.
    virtual qreal activeFormatVideoMaxZoomFactor() const = 0;
    // Moves the zoom towards `factor`, kept between 1.0 and the maximum, at `rate` doublings per second. A device
    // without moving parts may arrive at once.
    void rampToVideoZoomFactor(qreal factor, qreal rate);

    // False when the device refuses; the settings above raise InternalInconsistency outside a successful lock. Locks
    // nest.
    bool lockForConfiguration();
    // Ends the innermost successful lock; without effect when there is none.
    void unlockForConfiguration();

    // What a session does with a device.

    // Receives preview frames; on any thread.
    using FrameHandler = std::function<void(const QVideoFrame &)>;

    // Delivers preview frames to `handler`, on any thread, for `owner`. Another owner's delivery ends: a camera serves
    // one.
    void start(const void *owner, CaptureSessionPreset preset, FrameHandler handler);
    // Ends the delivery for `owner`; without effect when the device serves another by now. A photo under way may fail.
    void stop(const void *owner);
    // Whether the device delivers for `owner` now; never for null.
    bool isStartedBy(const void *owner) const { return owner && m_owner == owner; }

    // Takes one photo. The completion runs exactly once, on any thread. Only while started.
    virtual void captureStillImage(CaptureCompletion completion) = 0;

protected:
    // Sets the flash. setFlashMode() has seen that the device is locked and has one.
    virtual void applyFlashMode(CaptureFlashMode mode) = 0;
    // Sets the focus. setFocusMode() has seen that the device is locked and knows the mode.
    virtual void applyFocusMode(CaptureFocusMode mode) = 0;
    // Moves the zoom. rampToVideoZoomFactor() has seen that the device is locked and kept the factor within bounds.
    virtual void applyZoom(qreal factor, qreal rate) = 0;
    // Whether the device may be configured now.
    virtual bool acquireConfiguration() { return true; }

    // Begins to deliver preview frames; open() was called.
    virtual void startDelivering(CaptureSessionPreset preset, FrameHandler handler) = 0;
    // Ends it; each begin is ended before the next.
    virtual void stopDelivering() = 0;

private:
    void requireLock() const;

    int m_locks = 0;
    const void *m_owner = nullptr;
};

} // namespace Platform
