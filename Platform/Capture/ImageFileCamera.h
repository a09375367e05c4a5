#pragma once

#include "Platform/Capture/CaptureDevice.h"
#include "Platform/Foundation/Export.h"

#include <QStringList>

namespace Platform
{

// A back camera that sees picture files: for demos, tests and machines without a camera. A host puts it to use with
//     CaptureDevice::registerDevice(std::make_shared<ImageFileCamera>(path));
// The preview shows the picture, and a photo is the picture. The next photo, and the next start after a photo, move on
// to the next file of a folder. Needs no permission. Zoom cuts the middle out of preview and photo, at once; at
// zoom 1.0 a JPEG is delivered byte for byte.
class BREVANTO_EXPORT ImageFileCamera : public CaptureDevice
{
    Q_OBJECT

public:
    // A JPEG or PNG file, or a folder, whose JPEG and PNG files are taken in the order of their names, over and over. A
    // path without such files makes a camera whose photos fail.
    explicit ImageFileCamera(const QString &path);
    ~ImageFileCamera() override;

    // The file that the camera sees now; empty when there is none.
    QString currentFile() const;

    // As CaptureDevice says.
    CaptureDevicePosition position() const override { return CaptureDevicePosition::Back; }
    bool hasFlash() const override { return true; }
    bool isFlashActive() const override { return m_flashMode == CaptureFlashMode::On; }
    CaptureFlashMode flashMode() const override { return m_flashMode; }
    bool isFocusModeSupported(CaptureFocusMode) const override { return true; }
    CaptureFocusMode focusMode() const override { return m_focusMode; }
    qreal videoZoomFactor() const override { return m_zoom; }
    qreal activeFormatVideoMaxZoomFactor() const override;

    // As CaptureDevice says.
    void captureStillImage(CaptureCompletion completion) override;

protected:
    // As CaptureDevice says.
    void applyFlashMode(CaptureFlashMode mode) override { m_flashMode = mode; }
    void applyFocusMode(CaptureFocusMode mode) override { m_focusMode = mode; }
    void applyZoom(qreal factor, qreal rate) override;
    void startDelivering(CaptureSessionPreset preset, FrameHandler handler) override;
    void stopDelivering() override;

private:
    class Preview;

    void moveOnAfterPhoto();
    void showCurrent();

    QStringList m_files;
    qsizetype m_index = 0;
    bool m_isPhotographed = false; // the current file has been delivered
    CaptureFlashMode m_flashMode = CaptureFlashMode::Off;
    CaptureFocusMode m_focusMode = CaptureFocusMode::ContinuousAutoFocus;
    qreal m_zoom = 1.0;
    std::shared_ptr<Preview> m_preview; // while started
};

} // namespace Platform
