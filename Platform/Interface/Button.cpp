#include "Platform/Interface/Button.h"

#include "Platform/Interface/ImageProvider.h"
#include "Platform/Interface/SceneEngine.h"

namespace Platform
{

Button::Button(QQuickItem *parent)
    : View(parent)
    , m_face(SceneEngine::makeItem(QStringLiteral("ButtonFace"), this))
{
    connect(m_face, SIGNAL(clicked()), this, SIGNAL(touchUpInside()));
    connect(this, &View::backgroundColorChanged, this, &Button::updateFace);
    connect(this, &View::cornerRadiusChanged, this, &Button::updateFace);
    updateFace();
}

Button::Button(const QRectF &frame)
    : Button()
{
    setFrame(frame);
}

void Button::setTitle(const QString &title)
{
    m_title = title;
    updateFace();
}

void Button::setImage(const Image &image)
{
    // The picture shown so far is found under its identifier until the new address is set.
    const Image previous = std::exchange(m_image, image);
    updateFace();
}

void Button::setImageOffset(const QPointF &offset)
{
    m_imageOffset = offset;
    updateFace();
}

void Button::setAccessibleName(const QString &name)
{
    m_accessibleName = name;
    updateFace();
}

void Button::updateFace()
{
    const QColor ground = shownBackgroundColor();
    // The weights are those of perceived brightness.
    const double brightness = 0.299 * ground.redF() + 0.587 * ground.greenF() + 0.114 * ground.blueF();
    const QColor readable = ground.alpha() > 0 && brightness > 0.6 ? Qt::black : Qt::white;
    m_face->setProperty("text", m_title);
    m_face->setProperty("name", accessibleName());
    m_face->setProperty("titleColor", readable);
    m_face->setProperty("cornerRadius", cornerRadius());
    m_face->setProperty("imageSize", m_image.size());
    m_face->setProperty("imageOffset", m_imageOffset);
    m_face->setProperty("imageSource", ImageProvider::url(m_image));
    Q_EMIT faceChanged();
}

} // namespace Platform
