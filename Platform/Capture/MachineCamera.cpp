#include "Platform/Capture/MachineCamera.h"

#include <QCamera>
#include <QHash>
#include <QImageCapture>
#include <QMediaCaptureSession>
#include <QMediaDevices>
#include <QVideoSink>

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

struct MachineCamera::Pipeline {
    explicit Pipeline(const QCameraDevice &description)
        : camera(description)
    {
        imageCapture.setFileFormat(QImageCapture::JPEG);
        session.setCamera(&camera);
        session.setImageCapture(&imageCapture);
        session.setVideoSink(&sink);
    }

    QCamera camera;
    QVideoSink sink;
    QImageCapture imageCapture;
    QMediaCaptureSession session; // after what it uses, so that it goes first
};

MachineCamera::MachineCamera(const QCameraDevice &description)
    : m_description(description)
    , m_photos([this](const QString &file) { return shoot(file); })
{
}

MachineCamera::~MachineCamera() = default;

void MachineCamera::open()
{
    if (m_pipeline)
        return;
    m_pipeline = std::make_unique<Pipeline>(m_description);
    connect(&m_pipeline->camera, &QCamera::errorOccurred, this,
            [this](QCamera::Error, const QString &error) { m_photos.fail(error); });
    const QImageCapture *images = &m_pipeline->imageCapture;
    connect(images, &QImageCapture::readyForCaptureChanged, this, [this] { m_photos.becameReady(); });
    connect(images, &QImageCapture::imageSaved, this,
            [this](int photo, const QString &file) { m_photos.saved(photo, file); });
    connect(images, &QImageCapture::errorOccurred, this,
            [this](int photo, QImageCapture::Error, const QString &error) { m_photos.failed(photo, error); });
    connect(new QMediaDevices(this), &QMediaDevices::videoInputsChanged, this, [this] {
        if (!QMediaDevices::videoInputs().contains(m_description))
            m_photos.fail(QStringLiteral("The camera has been unplugged"));
    });
}

const QCamera *MachineCamera::camera() const
{
    return m_pipeline ? &m_pipeline->camera : nullptr;
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
    return camera() && camera()->isFocusModeSupported(translated(mode));
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
    m_pipeline->camera.setFlashMode(translated(mode));
}

void MachineCamera::applyFocusMode(CaptureFocusMode mode)
{
    m_pipeline->camera.setFocusMode(translated(mode));
}

void MachineCamera::applyZoom(qreal factor, qreal rate)
{
    m_pipeline->camera.zoomTo(float(factor), float(rate));
}

void MachineCamera::startDelivering(CaptureSessionPreset preset, FrameHandler handler)
{
    m_pipeline->imageCapture.setQuality(preset == CaptureSessionPreset::Photo ? QImageCapture::VeryHighQuality
                                                                              : QImageCapture::HighQuality);
    connect(&m_pipeline->sink, &QVideoSink::videoFrameChanged, this, std::move(handler), Qt::DirectConnection);
    m_pipeline->camera.start();
}

void MachineCamera::stopDelivering()
{
    disconnect(&m_pipeline->sink, nullptr, this, nullptr);
    m_pipeline->camera.stop();
    m_photos.fail(QStringLiteral("The camera has been stopped"));
}

void MachineCamera::captureStillImage(CaptureCompletion completion)
{
    m_photos.take(std::move(completion));
}

int MachineCamera::shoot(const QString &file)
{
    QImageCapture &images = m_pipeline->imageCapture;
    return images.isReadyForCapture() ? images.captureToFile(file) : -1;
}

} // namespace Platform
