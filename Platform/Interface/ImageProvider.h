#pragma once

#include "Platform/Graphics/Image.h"

#include <QColor>
#include <QQuickAsyncImageProvider>
#include <QThreadPool>
#include <QUrl>

namespace Platform
{

// Gives the scenes of SceneEngine the platform's images under image://, decoded off the main thread at the size drawn,
// those from anywhere one after the other so that memory is taken for one only. One's own do not wait for them.
class ImageProvider final : public QQuickAsyncImageProvider
{
public:
    ImageProvider();
    static QString name();
    // Address of `image` for a scene, good while a copy of it lives; empty for a null image. With a colour, the image's
    // shape is shown in that colour.
    static QUrl url(const Platform::Image &image, const QColor &tintColor = {});

    QQuickImageResponse *requestImageResponse(const QString &id, const QSize &requestedSize) override;

private:
    // Of their own, so that pictures and the network's answers do not wait for each other.
    QThreadPool m_ownImages;
    QThreadPool m_imagesFromAnywhere;
};

// Pictures of blurred round-cornered shadows, to be stretched in the middle: "<corner radius>,<blur radius>".
class ShadowProvider final : public QQuickImageProvider
{
public:
    ShadowProvider();
    static QString name();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

// Pictures of discs in a colour, "<rrggbb>", as large as they are asked for.
class DiscProvider final : public QQuickImageProvider
{
public:
    DiscProvider();
    static QString name();

    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace Platform
