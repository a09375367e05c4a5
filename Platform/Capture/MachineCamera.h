#pragma once

#include "Platform/Capture/CaptureDevice.h"

#include <QCamera>
#include <QCameraDevice>
#include <QImageCapture>
#include <QMediaCaptureSession>
#include <QTemporaryDir>
#include <QVideoSink>

namespace Platform
{

// One of the machine's cameras, through Qt Multimedia. Until the user has granted access it is only known by name: a
// camera opened before that stays black.
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
    bool acquireConfiguration() override { return camera(); }
    void startDelivering(CaptureSessionPreset preset, FrameHandler handler) override;
    void stopDelivering() override;

private:
    // The opened camera; null while access is not granted.
    QCamera *camera() const;

    void takePendingPhoto();
    void readPhoto(const QString &file);
    void failPhoto(const QString &error);
    void checkPlugged();

    QCameraDevice m_description;
    mutable std::unique_ptr<QCamera> m_camera;
    QVideoSink m_sink;
    QImageCapture m_imageCapture;
    QMediaCaptureSession m_session; // after what it uses, so that it goes first
    std::shared_ptr<QTemporaryDir> m_folder;
    CaptureCompletion m_completion; // of the photo under way
    int m_photo = -1; // its number; below zero while the camera is not ready
};

} // namespace Platform
