#pragma once

#include "Platform/Capture/CaptureDevice.h"
#include "support/TestImages.h"

#include <QVideoFrame>

#include <algorithm>

// A back camera as a phone has one, as far as the test grants it.
class PhoneCamera : public Platform::CaptureDevice
{
public:
    bool flash = true;
    bool needsPermission = false;
    bool refusesConfiguration = false;
    qreal maximumZoom = 8.0;
    QByteArray jpeg; // what the next photo is
    bool answers = true; // false: the photo waits in `pending`
    Platform::CaptureCompletion pending;

    int startCount = 0;
    bool isDelivering = false;
    qreal zoom = 1.0;
    Platform::CaptureFlashMode mode = Platform::CaptureFlashMode::Auto;
    Platform::CaptureFocusMode focus = Platform::CaptureFocusMode::Locked;

    Platform::CaptureDevicePosition position() const override { return Platform::CaptureDevicePosition::Back; }
    bool requiresAuthorization() const override { return needsPermission; }
    bool hasFlash() const override { return flash; }
    bool isFlashActive() const override { return mode == Platform::CaptureFlashMode::On; }
    Platform::CaptureFlashMode flashMode() const override { return mode; }
    bool isFocusModeSupported(Platform::CaptureFocusMode) const override { return true; }
    Platform::CaptureFocusMode focusMode() const override { return focus; }
    qreal videoZoomFactor() const override { return zoom; }
    qreal activeFormatVideoMaxZoomFactor() const override { return maximumZoom; }

    void captureStillImage(Platform::CaptureCompletion completion) override
    {
        if (!answers) {
            pending = std::move(completion);
            return;
        }
        auto buffer = std::make_shared<Platform::CaptureSampleBuffer>();
        buffer->jpeg = jpeg;
        completion(buffer, {});
    }

protected:
    void applyFlashMode(Platform::CaptureFlashMode flashMode) override { mode = flashMode; }
    void applyFocusMode(Platform::CaptureFocusMode focusMode) override { focus = focusMode; }
    void applyZoom(qreal factor, qreal) override { zoom = factor; }
    bool acquireConfiguration() override { return !refusesConfiguration; }
    void startDelivering(Platform::CaptureSessionPreset, FrameHandler handler) override
    {
        ++startCount;
        isDelivering = true;
        handler(frame());
    }
    void stopDelivering() override { isDelivering = false; }

private:
    // What the camera sees: a picture with dark and bright parts.
    static QVideoFrame frame()
    {
        const QImage picture = TestImages::quarters({600, 800}).convertToFormat(QImage::Format_RGB32);
        QVideoFrame frame(QVideoFrameFormat(picture.size(), QVideoFrameFormat::Format_BGRX8888));
        if (!frame.map(QVideoFrame::WriteOnly))
            return {};
        for (int y = 0; y < picture.height(); ++y)
            std::copy_n(picture.constScanLine(y), picture.bytesPerLine(), frame.bits(0) + y * frame.bytesPerLine(0));
        frame.unmap();
        return frame;
    }
};

// The user's answer to the system's question, as the test gives it.
class Permission : public Platform::CaptureAuthorization
{
public:
    explicit Permission(Platform::CaptureAuthorizationStatus status)
        : m_status(status)
    {
        setCurrent(this);
    }
    ~Permission() override { setCurrent(nullptr); }

    Platform::CaptureAuthorizationStatus status() const override { return m_status; }
    void request(std::function<void(bool)> completion) override
    {
        ++questions;
        m_completion = std::move(completion);
    }
    void answer(bool granted)
    {
        m_status =
            granted ? Platform::CaptureAuthorizationStatus::Authorized : Platform::CaptureAuthorizationStatus::Denied;
        if (const auto completion = std::exchange(m_completion, {}))
            completion(granted);
    }

    int questions = 0;

private:
    Platform::CaptureAuthorizationStatus m_status;
    std::function<void(bool)> m_completion;
};
