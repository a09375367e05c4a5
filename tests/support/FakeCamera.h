#pragma once

#include "Platform/Capture/CaptureAuthorization.h"

#include <QVideoFrame>

#include <algorithm>

// A back camera as a phone has one, as far as the test grants it.
class FakeCamera : public Platform::CaptureDevice
{
public:
    bool flash = true;
    bool needsPermission = false;
    bool refusesConfiguration = false;
    qreal maximumZoom = 8.0;
    QImage scene; // what it sees from its start on; null for what the test hands to `frames`
    QByteArray jpeg; // what the next photo is; while it is empty, photos wait in `photo`

    bool isOpen = false;
    int startCount = 0;
    FrameHandler frames; // null while stopped
    Platform::CaptureCompletion photo;
    qreal zoom = 1.0;
    Platform::CaptureFlashMode mode = Platform::CaptureFlashMode::Auto;
    Platform::CaptureFocusMode focus = Platform::CaptureFocusMode::Locked;
    Platform::CaptureSessionPreset preset = Platform::CaptureSessionPreset::High;

    bool isDelivering() const { return bool(frames); }
    static QVideoFrame frameOf(const QImage &picture)
    {
        const QImage image = picture.convertToFormat(QImage::Format_RGB32);
        QVideoFrame frame(QVideoFrameFormat(image.size(), QVideoFrameFormat::Format_BGRX8888));
        if (!frame.map(QVideoFrame::WriteOnly))
            return {};
        for (int y = 0; y < image.height(); ++y)
            std::copy_n(image.constScanLine(y), image.bytesPerLine(), frame.bits(0) + y * frame.bytesPerLine(0));
        frame.unmap();
        return frame;
    }

    Platform::CaptureDevicePosition position() const override { return Platform::CaptureDevicePosition::Back; }
    bool requiresAuthorization() const override { return needsPermission; }
    void open() override { isOpen = true; }
    bool hasFlash() const override { return flash && isOpen; }
    bool isFlashActive() const override { return mode == Platform::CaptureFlashMode::On; }
    Platform::CaptureFlashMode flashMode() const override { return mode; }
    bool isFocusModeSupported(Platform::CaptureFocusMode) const override { return flash; }
    Platform::CaptureFocusMode focusMode() const override { return focus; }
    qreal videoZoomFactor() const override { return zoom; }
    qreal activeFormatVideoMaxZoomFactor() const override { return maximumZoom; }
    void captureStillImage(Platform::CaptureCompletion completion) override
    {
        if (jpeg.isEmpty()) {
            photo = std::move(completion);
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
    void startDelivering(Platform::CaptureSessionPreset startPreset, FrameHandler handler) override
    {
        ++startCount;
        preset = startPreset;
        frames = std::move(handler);
        if (!scene.isNull())
            frames(frameOf(scene));
    }
    void stopDelivering() override { frames = {}; }
};

// The user's permission, and the answer to the question for it, as the test gives it.
class FakePermission : public Platform::CaptureAuthorization
{
public:
    explicit FakePermission(Platform::CaptureAuthorizationStatus status)
        : m_status(status)
    {
        setCurrent(this);
    }
    ~FakePermission() override { setCurrent(nullptr); }

    Platform::CaptureAuthorizationStatus status() const override { return m_status; }
    void request(std::function<void(bool)> completion) override { questions.push_back(std::move(completion)); }
    void answer(bool granted)
    {
        m_status =
            granted ? Platform::CaptureAuthorizationStatus::Authorized : Platform::CaptureAuthorizationStatus::Denied;
        for (const auto &completion : std::exchange(questions, {}))
            completion(granted);
    }

    std::vector<std::function<void(bool)>> questions; // not answered yet

private:
    Platform::CaptureAuthorizationStatus m_status;
};
