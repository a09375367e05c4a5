#include "Platform/Capture/MachineCamera.h"

#include "Platform/Capture/CaptureQueue.h"

#include <QFile>
#include <QHash>
#include <QMediaDevices>

#include <algorithm>

namespace Platform
{

namespace
{

QCamera::FlashMode translated(CaptureFlashMode mode)
{
    switch (mode) {
    case CaptureFlashMode::On:
        return QCamera::FlashOn;
    case CaptureFlashMode::Auto:
        return QCamera::FlashAuto;
    case CaptureFlashMode::Off:
        break;
    }
    return QCamera::FlashOff;
}

// The platform's single automatic focusing has no counterpart.
QCamera::FocusMode translated(CaptureFocusMode mode)
{
    return mode == CaptureFocusMode::Locked ? QCamera::FocusModeManual : QCamera::FocusModeAuto;
}

} // namespace

std::vector<std::shared_ptr<CaptureDevice>> MachineCamera::cameras()
{
    static QHash<QByteArray, std::weak_ptr<CaptureDevice>> known;
    std::vector<std::shared_ptr<CaptureDevice>> cameras;
    for (const QCameraDevice &description : QMediaDevices::videoInputs()) {
        std::shared_ptr<CaptureDevice> camera = known.value(description.id()).lock();
        if (!camera) {
            camera = std::make_shared<MachineCamera>(description);
            known.insert(description.id(), camera);
        }
        cameras.push_back(camera);
    }
    return cameras;
}

MachineCamera::MachineCamera(const QCameraDevice &description)
    : m_description(description)
{
    m_imageCapture.setFileFormat(QImageCapture::JPEG);
    connect(&m_imageCapture, &QImageCapture::readyForCaptureChanged, this, &MachineCamera::takePendingPhoto);
    connect(&m_imageCapture, &QImageCapture::imageSaved, this, [this](int photo, const QString &file) {
        if (photo == m_photo)
            readPhoto(file);
    });
    connect(&m_imageCapture, &QImageCapture::errorOccurred, this,
            [this](int photo, QImageCapture::Error, const QString &error) {
                if (photo < 0 || photo == m_photo)
                    failPhoto(error);
            });
    connect(new QMediaDevices(this), &QMediaDevices::videoInputsChanged, this, &MachineCamera::checkPlugged);
}

MachineCamera::~MachineCamera() = default;

QCamera *MachineCamera::camera() const
{
    if (!m_camera && authorizationStatus() == CaptureAuthorizationStatus::Authorized) {
        m_camera = std::make_unique<QCamera>(m_description);
        connect(m_camera.get(), &QCamera::errorOccurred, this,
                [self = const_cast<MachineCamera *>(this)](QCamera::Error, const QString &error) {
                    self->failPhoto(error);
                });
    }
    return m_camera.get();
}

CaptureDevicePosition MachineCamera::position() const
{
    return m_description.position() == QCameraDevice::FrontFace ? CaptureDevicePosition::Front
                                                                : CaptureDevicePosition::Back;
}

bool MachineCamera::hasFlash() const
{
    return camera() && camera()->isFlashModeSupported(QCamera::FlashOn);
}

bool MachineCamera::isFlashActive() const
{
    return flashMode() == CaptureFlashMode::On;
}

CaptureFlashMode MachineCamera::flashMode() const
{
    switch (camera() ? camera()->flashMode() : QCamera::FlashOff) {
    case QCamera::FlashOn:
        return CaptureFlashMode::On;
    case QCamera::FlashAuto:
        return CaptureFlashMode::Auto;
    case QCamera::FlashOff:
        break;
    }
    return CaptureFlashMode::Off;
}

bool MachineCamera::isFocusModeSupported(CaptureFocusMode mode) const
{
    return mode != CaptureFocusMode::AutoFocus && camera() && camera()->isFocusModeSupported(translated(mode));
}

CaptureFocusMode MachineCamera::focusMode() const
{
    return camera() && camera()->focusMode() != QCamera::FocusModeManual ? CaptureFocusMode::ContinuousAutoFocus
                                                                         : CaptureFocusMode::Locked;
}

qreal MachineCamera::videoZoomFactor() const
{
    return camera() ? qreal(camera()->zoomFactor()) : 1.0;
}

qreal MachineCamera::activeFormatVideoMaxZoomFactor() const
{
    return camera() ? std::max(1.0, qreal(camera()->maximumZoomFactor())) : 1.0;
}

void MachineCamera::applyFlashMode(CaptureFlashMode mode)
{
    camera()->setFlashMode(translated(mode));
}

void MachineCamera::applyFocusMode(CaptureFocusMode mode)
{
    camera()->setFocusMode(translated(mode));
}

void MachineCamera::applyZoom(qreal factor, qreal rate)
{
    camera()->zoomTo(float(factor), float(rate));
}

void MachineCamera::startDelivering(CaptureSessionPreset preset, FrameHandler handler)
{
    if (!camera())
        return;
    m_imageCapture.setQuality(preset == CaptureSessionPreset::Photo ? QImageCapture::VeryHighQuality
                                                                    : QImageCapture::HighQuality);
    connect(&m_sink, &QVideoSink::videoFrameChanged, this, std::move(handler), Qt::DirectConnection);
    m_session.setCamera(camera());
    m_session.setImageCapture(&m_imageCapture);
    m_session.setVideoSink(&m_sink);
    camera()->start();
}

void MachineCamera::stopDelivering()
{
    disconnect(&m_sink, nullptr, this, nullptr);
    if (m_camera)
        m_camera->stop();
    failPhoto(QStringLiteral("The camera has been stopped"));
}

// A camera's own JPEG reaches the outside only as a file.
void MachineCamera::captureStillImage(CaptureCompletion completion)
{
    failPhoto(QStringLiteral("A newer photo has taken its place"));
    if (!m_folder)
        m_folder = std::make_shared<QTemporaryDir>();
    m_completion = std::move(completion);
    takePendingPhoto();
}

void MachineCamera::takePendingPhoto()
{
    if (!m_completion || m_photo >= 0 || !m_imageCapture.isReadyForCapture())
        return;
    m_photo = m_imageCapture.captureToFile(m_folder->filePath(QStringLiteral("photo.jpg")));
}

void MachineCamera::readPhoto(const QString &file)
{
    m_photo = -1;
    captureQueue().async([path = file, folder = m_folder, completion = std::exchange(m_completion, {})] {
        QFile saved(path);
        auto buffer = std::make_shared<CaptureSampleBuffer>();
        if (saved.open(QIODevice::ReadOnly))
            buffer->jpeg = saved.readAll();
        saved.remove();
        if (buffer->jpeg.isEmpty())
            completion(nullptr, saved.errorString());
        else
            completion(buffer, {});
    });
}

void MachineCamera::failPhoto(const QString &error)
{
    m_photo = -1;
    if (const CaptureCompletion completion = std::exchange(m_completion, {}))
        completion(nullptr, error);
}

void MachineCamera::checkPlugged()
{
    const QList<QCameraDevice> plugged = QMediaDevices::videoInputs();
    if (!plugged.contains(m_description))
        failPhoto(QStringLiteral("The camera has been unplugged"));
}

} // namespace Platform
