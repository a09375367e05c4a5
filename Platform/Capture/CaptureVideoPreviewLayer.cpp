#include "Platform/Capture/CaptureVideoPreviewLayer.h"

#include "Platform/Capture/CaptureSessionPrivate.h"
#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

CaptureVideoPreviewLayer::CaptureVideoPreviewLayer(const std::shared_ptr<CaptureSession> &session, QQuickItem *parent)
    : View(parent)
{
    setBackgroundColor(Qt::black);
    setClip(true);
    m_videoOutput = SceneEngine::loadScene(
                        QUrl(QStringLiteral("qrc:/qt/qml/Brevanto/Platform/Capture/Scenes/CapturePreview.qml")), {})
                        .release();
    m_videoOutput->setParent(this);
    m_videoOutput->setParentItem(this);
    setVideoGravity(CaptureVideoGravity::ResizeAspect);
    if (session)
        session->d->relay->addSink(m_videoOutput->property("videoSink").value<QVideoSink *>());
}

CaptureVideoPreviewLayer::~CaptureVideoPreviewLayer() = default;

void CaptureVideoPreviewLayer::setVideoGravity(CaptureVideoGravity gravity)
{
    const bool fills = gravity == CaptureVideoGravity::ResizeAspectFill;
    m_videoOutput->setProperty("fillMode", int(fills ? Qt::KeepAspectRatioByExpanding : Qt::KeepAspectRatio));
}

void CaptureVideoPreviewLayer::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    View::geometryChange(newGeometry, oldGeometry);
    if (m_videoOutput)
        m_videoOutput->setSize(newGeometry.size());
}

} // namespace Platform
