#pragma once

#include "Platform/Capture/CaptureDevice.h"
#include "Platform/Capture/PhotoTaker.h"

#include <QCameraDevice>

class QCamera;

namespace Platform
{

// One of the machine's cameras, through Qt Multimedia. Until it is opened it is only known by name.
class MachineCamera : public CaptureDevice
{
    Q_OBJECT

public:
    // The cameras that are plugged in, in the system's order.
    static std::vector<std::shared_ptr<CaptureDevice>> cameras();

    explicit MachineCamera(const QCameraDevice &description);
    ~MachineCamera() override;

    CaptureDevicePosition position() const override;
    bool requiresAuthorization() const override { return true; }
    void open() override;

    bool hasFlash() const override;
    bool isFlashActive() const override;
    CaptureFlashMode flashMode() const override;
    bool isFocusModeSupported(CaptureFocusMode mode) const override;
    CaptureFocusMode focusMode() const override;
    qreal videoZoomFactor() const override;
    qreal activeFormatVideoMaxZoomFactor() const override;

    void captureStillImage(CaptureCompletion completion) override;

protected:
    void applyFlashMode(CaptureFlashMode mode) override;
    void applyFocusMode(CaptureFocusMode mode) override;
    void applyZoom(qreal factor, qreal rate) override;
    bool acquireConfiguration() override { return m_pipeline != nullptr; }
    void startDelivering(CaptureSessionPreset preset, FrameHandler handler) override;
    void stopDelivering() override;

private:
    struct Pipeline;

    const QCamera *camera() const;
    int shoot(const QString &file);

    QCameraDevice m_description;
    PhotoTaker m_photos;
    std::unique_ptr<Pipeline> m_pipeline; // null until opened
};

} // namespace Platform
