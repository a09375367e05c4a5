#include "Platform/Capture/CaptureVideoPreviewLayer.h"

#include "Platform/Capture/CaptureSessionPrivate.h"
#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

namespace
{

Qt::AspectRatioMode fillMode(CaptureVideoGravity gravity)
{
    switch (gravity) {
    case CaptureVideoGravity::Resize:
        return Qt::IgnoreAspectRatio;
    case CaptureVideoGravity::ResizeAspectFill:
        return Qt::KeepAspectRatioByExpanding;
    case CaptureVideoGravity::ResizeAspect:
        break;
    }
    return Qt::KeepAspectRatio;
}

} // namespace

CaptureVideoPreviewLayer::CaptureVideoPreviewLayer(const std::shared_ptr<CaptureSession> &session, QQuickItem *parent)
    : View(parent)
    , m_session(session)
{
    setBackgroundColor(Qt::black);
    setClip(true);
    m_videoOutput = SceneEngine::loadScene(
                        QUrl(QStringLiteral("qrc:/qt/qml/Brevanto/Platform/Capture/Scenes/CapturePreview.qml")), {})
                        .release();
    m_videoOutput->setParent(this);
    m_videoOutput->setParentItem(this);
    setVideoGravity(m_videoGravity);
    if (session)
        session->d->relay->addSink(m_videoOutput->property("videoSink").value<QVideoSink *>());
}

CaptureVideoPreviewLayer::~CaptureVideoPreviewLayer() = default;

void CaptureVideoPreviewLayer::setVideoGravity(CaptureVideoGravity gravity)
{
    m_videoGravity = gravity;
    m_videoOutput->setProperty("fillMode", int(fillMode(gravity)));
}

void CaptureVideoPreviewLayer::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    View::geometryChange(newGeometry, oldGeometry);
    if (m_videoOutput)
        m_videoOutput->setSize(newGeometry.size());
}

} // namespace Platform
