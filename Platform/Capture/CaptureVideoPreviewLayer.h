#pragma once

#include "Platform/Capture/CaptureSession.h"
#include "Platform/Interface/View.h"

namespace Platform
{

enum class CaptureVideoGravity { ResizeAspect, ResizeAspectFill };

// Shows what a session sees, by the stock VideoOutput; black until the first frame, and the last frame while the
// session is stopped. For the main thread only.
class CaptureVideoPreviewLayer : public View
{
    Q_OBJECT

public:
    // `session` may be null: the preview stays black.
    explicit CaptureVideoPreviewLayer(const std::shared_ptr<CaptureSession> &session, QQuickItem *parent = nullptr);
    ~CaptureVideoPreviewLayer() override;

    // How the picture fills the frame; ResizeAspect (all of the picture, bars beside it) unless set.
    void setVideoGravity(CaptureVideoGravity gravity);

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    QQuickItem *m_videoOutput = nullptr;
};

} // namespace Platform
