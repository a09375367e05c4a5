#include "Brevanto/Utils/ImageScale.h"

#include "Brevanto/BrevantoBundle.h"
#include "Platform/Graphics/BitmapContext.h"
#include "Platform/Interface/View.h"

#include <QQuickWindow>
#include <QTransform>

using Platform::BitmapContext;
using Platform::Image;
using Platform::ImageOrientation;

namespace scale
{

namespace
{

QSize truncated(const QSizeF &size)
{
    return {int(size.width()), int(size.height())};
}

bool swapsSides(ImageOrientation orientation)
{
    return orientation == ImageOrientation::Left || orientation == ImageOrientation::LeftMirrored
        || orientation == ImageOrientation::Right || orientation == ImageOrientation::RightMirrored;
}

// Transformations that turn a bitmap upright in a bitmap context of the upright size.
void turnUpright(BitmapContext &context, ImageOrientation orientation, const QSizeF &size)
{
    switch (orientation) {
    case ImageOrientation::Down:
    case ImageOrientation::DownMirrored:
        context.translate(size.width(), size.height());
        context.rotate(180);
        break;
    case ImageOrientation::Left:
    case ImageOrientation::LeftMirrored:
        context.translate(size.width(), 0);
        context.rotate(90);
        break;
    case ImageOrientation::Right:
    case ImageOrientation::RightMirrored:
        context.translate(0, size.height());
        context.rotate(-90);
        break;
    case ImageOrientation::Up:
    case ImageOrientation::UpMirrored:
        break;
    }

    switch (orientation) {
    case ImageOrientation::UpMirrored:
    case ImageOrientation::DownMirrored:
        context.translate(size.width(), 0);
        context.scale(-1, 1);
        break;
    case ImageOrientation::LeftMirrored:
    case ImageOrientation::RightMirrored:
        context.translate(size.height(), 0);
        context.scale(-1, 1);
        break;
    default:
        break;
    }
}

QSizeF boxOfRotated(const QSizeF &size, double angle)
{
    return QTransform().rotate(angle).mapRect(QRectF(QPointF(0, 0), size)).size();
}

} // namespace

Image scaleToSize(const Image &image, const QSizeF &size)
{
    BitmapContext context = BitmapContext::imageContext(size);
    if (!context.drawImage(image, QRectF(QPointF(0, 0), size)))
        return {};
    return context.image();
}

Image convertImageToGrayScale(const Image &image)
{
    BitmapContext context(truncated(image.size()), BitmapContext::ColorSpace::DeviceGray);
    if (!context.drawBitmap(image, QRectF(QPointF(0, 0), image.size())))
        return {};
    return context.image();
}

Image rotateByAngle(const Image &image, double angle)
{
    const QSizeF size = image.size();
    const QSizeF box = boxOfRotated(size, angle);
    BitmapContext context = BitmapContext::imageContext(box);
    context.translate(box.width(), box.height());
    context.rotate(angle);
    context.scale(1, -1);
    if (!context.drawBitmap(image, QRectF(QPointF(-size.width(), -size.height()), size)))
        return {};
    return context.image();
}

Image fixOrientation(const Image &image)
{
    const ImageOrientation orientation = image.orientation();
    if (orientation == ImageOrientation::Up)
        return image;

    const Image bitmap(image.bitmap());
    if (bitmap.isNull())
        return {};
    const QSizeF size = image.size();
    BitmapContext context(truncated(size), bitmap.bitmap());
    turnUpright(context, orientation, size);
    context.drawBitmap(bitmap, QRectF(QPointF(0, 0), swapsSides(orientation) ? size.transposed() : size));
    return context.image();
}

Image captureScreenShotOfView(Platform::View *view)
{
    const QSizeF size = view->frame().size();
    QQuickWindow *window = view->window();
    const qreal scale = window ? window->effectiveDevicePixelRatio() : 1.0;
    const bool opaque = view->backgroundColor().alpha() == 255 && view->alpha() == 1.0;
    BitmapContext context = BitmapContext::imageContext(size, opaque, scale);
    if (window) {
        const Image contents(window->grabWindow(), scale);
        context.drawImage(contents, QRectF(-view->mapToScene(QPointF(0, 0)), contents.size()));
    }
    return context.image();
}

ResizableImage resizableButtonBackground()
{
    return {brevantoBundle().imageNamed(QStringLiteral("btn_bg")), QMarginsF(5, 10, 5, 10)};
}

} // namespace scale
