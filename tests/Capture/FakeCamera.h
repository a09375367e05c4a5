#pragma once

#include "Platform/Capture/CaptureDevice.h"

#include <QVideoFrame>

// A camera that does what the test says, and nothing by itself.
class FakeCamera : public Platform::CaptureDevice
{
public:
    bool needsPermission = false;
    bool refusesConfiguration = false;
    bool flash = false;
    FrameHandler frames; // null while stopped
    Platform::CaptureCompletion photo; // null while no photo is under way

    Platform::CaptureDevicePosition position() const override { return Platform::CaptureDevicePosition::Front; }
    bool requiresAuthorization() const override { return needsPermission; }
    bool hasFlash() const override { return flash; }
    bool isFlashActive() const override { return false; }
    Platform::CaptureFlashMode flashMode() const override { return Platform::CaptureFlashMode::Off; }
    bool isFocusModeSupported(Platform::CaptureFocusMode) const override { return false; }
    Platform::CaptureFocusMode focusMode() const override { return Platform::CaptureFocusMode::Locked; }
    qreal videoZoomFactor() const override { return m_zoom; }
    qreal activeFormatVideoMaxZoomFactor() const override { return 4.0; }
    void captureStillImage(Platform::CaptureCompletion completion) override { photo = std::move(completion); }

    void sendFrame() const
    {
        QVideoFrame frame(QVideoFrameFormat(QSize(4, 4), QVideoFrameFormat::Format_BGRX8888));
        if (frames)
            frames(frame);
    }

protected:
    void applyFlashMode(Platform::CaptureFlashMode) override { }
    void applyFocusMode(Platform::CaptureFocusMode) override { }
    void applyZoom(qreal factor, qreal) override { m_zoom = factor; }
    bool acquireConfiguration() override { return !refusesConfiguration; }
    void startDelivering(Platform::CaptureSessionPreset, FrameHandler handler) override { frames = std::move(handler); }
    void stopDelivering() override { frames = {}; }

private:
    qreal m_zoom = 1.0;
};
