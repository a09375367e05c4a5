#include "Platform/Interface/ImageView.h"

#include "Platform/Interface/ImageProvider.h"
#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

ImageView::ImageView(QQuickItem *parent)
    : View(parent)
    , m_picture(SceneEngine::makeItem(QStringLiteral("Picture"), this))
{
    setUserInteractionEnabled(false);
    connect(m_picture, SIGNAL(hasFailedChanged()), this, SLOT(reportFailure()), Qt::QueuedConnection);
}

ImageView::ImageView(const QRectF &frame)
    : ImageView()
{
    setFrame(frame);
}

void ImageView::setImage(const Image &image)
{
    if (m_image == image)
        return;
    // The picture shown so far is found under its identifier until the new address is set.
    const Image previous = std::exchange(m_image, image);
    m_picture->setProperty("naturalSize", image.size());
    m_picture->setProperty("source", ImageProvider::url(image));
    Q_EMIT imageChanged();
}

void ImageView::setContentMode(ContentMode mode)
{
    if (m_contentMode == mode)
        return;
    m_contentMode = mode;
    m_picture->setProperty("contentMode", static_cast<int>(mode));
    Q_EMIT contentModeChanged();
}

void ImageView::setKeepsPixels(bool keeps)
{
    m_keepsPixels = keeps;
    m_picture->setProperty("keepsPixels", keeps);
}

void ImageView::setDetail(qreal detail)
{
    m_picture->setProperty("detail", detail);
}

void ImageView::reportFailure()
{
    // Another image may have been set meanwhile.
    if (m_picture->property("hasFailed").toBool())
        Q_EMIT imageFailed();
}

bool ImageView::isShowingImage() const
{
    return m_picture->property("isReady").toBool();
}

} // namespace Platform
