#pragma once

#include "Platform/Capture/CaptureDevice.h"

#include <memory>

class QVideoSink;

namespace Platform
{

class CaptureStillImageOutput;

// A device as a source of a session.
class CaptureDeviceInput
{
public:
    // Opens the device. Null when the device is null, or when it needs a permission that the user has denied or that is
    // restricted; while that is still open, the device waits for a session to ask for it.
    static std::shared_ptr<CaptureDeviceInput> deviceInputWithDevice(const std::shared_ptr<CaptureDevice> &device);

    const std::shared_ptr<CaptureDevice> &device() const { return m_device; }

private:
    explicit CaptureDeviceInput(std::shared_ptr<CaptureDevice> device);

    std::shared_ptr<CaptureDevice> m_device;
};

// Brings the frames of one input to previews and its photos to one still-image output. Starting and stopping may be
// called from any thread, the rest from the main thread only; the last owner may let go on any thread.
class CaptureSession
{
public:
    CaptureSession();
    // Stops the device. A photo under way may fail; its completion runs all the same.
    ~CaptureSession();

    // False for null and when there is an input, respectively an output, already.
    bool canAddInput(const std::shared_ptr<CaptureDeviceInput> &input) const;
    bool canAddOutput(const std::shared_ptr<CaptureStillImageOutput> &output) const;
    // Raise InvalidArgument for what cannot be added.
    void addInput(const std::shared_ptr<CaptureDeviceInput> &input);
    void addOutput(const std::shared_ptr<CaptureStillImageOutput> &output);

    // Takes effect at the next start.
    void setSessionPreset(CaptureSessionPreset preset);

    // What to call, on the main thread, when the user has answered the session's question for permission.
    void setAccessHandler(std::function<void(bool granted)> handler);

    // Once startRunning() returns the session counts as running. The device, which lives on the main thread, follows as
    // soon as that thread is free. Where permission is still open the session asks the user, and the device waits for
    // the answer. Once stopRunning() returns no further frame is shown: previews keep their last one. Neither waits for
    // the main thread's events; stopping waits for a frame that is being shown at that moment.
    void startRunning();
    void stopRunning();
    bool isRunning() const;

private:
    Q_DISABLE_COPY_MOVE(CaptureSession)
    friend class CaptureStillImageOutput;
    friend class CaptureVideoPreviewLayer;

    class Private;
    std::shared_ptr<Private> d;
};

} // namespace Platform
