#pragma once

#include "Platform/Capture/CaptureFrameRelay.h"
#include "Platform/Capture/CaptureSession.h"

#include <QObject>

#include <atomic>

namespace Platform
{

// A photo that has been asked for. Whoever answers first wins; when nobody has answered by the time the last holder
// lets go, the completion is told so. Any thread.
class PendingPhoto
{
public:
    explicit PendingPhoto(CaptureCompletion completion);
    ~PendingPhoto();

    bool isAnswered() const { return m_isAnswered; }
    // Runs the completion on the capture queue, unless it has been run.
    void answer(const std::shared_ptr<const CaptureSampleBuffer> &buffer, const QString &error);
    void fail(const QString &error) { answer(nullptr, error); }

private:
    Q_DISABLE_COPY_MOVE(PendingPhoto)

    CaptureCompletion m_completion;
    std::atomic<bool> m_isAnswered = false;
};

// The part of a session that lives on the main thread, where the devices are.
class CaptureSession::Private : public QObject
{
public:
    Private();
    ~Private() override;

    // Any thread.
    void setRunning(bool running);
    bool isRunning() const { return m_isRunning; }
    void takePhoto(const std::shared_ptr<PendingPhoto> &photo);
    void close();

    // Main thread only.
    std::shared_ptr<CaptureDeviceInput> input;
    std::shared_ptr<CaptureStillImageOutput> output;
    CaptureSessionPreset preset = CaptureSessionPreset::High;
    std::function<void(bool granted)> accessHandler;
    const std::shared_ptr<CaptureFrameRelay> relay = std::make_shared<CaptureFrameRelay>();

    // Makes the device do what the session wants of it.
    void update();

private:
    // Asks for access where that is open; when it is granted the session updates itself.
    bool hasAccess();
    void take(const std::shared_ptr<PendingPhoto> &photo);
    void onMainThread(const std::function<void()> &block);

    std::atomic<bool> m_isRunning = false;
    bool m_isSuspended = false;
    bool m_isAskingForAccess = false;
    std::weak_ptr<PendingPhoto> m_photo; // the last one asked for
};

} // namespace Platform
