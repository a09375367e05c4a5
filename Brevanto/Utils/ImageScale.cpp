#include "Brevanto/Utils/ImageScale.h"

#include "Brevanto/BrevantoBundle.h"
#include "Platform/Graphics/BitmapContext.h"
#include "Platform/Interface/View.h"

#include <QQuickItemGrabResult>
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

QSizeF boxOfRotated(const QSizeF &size, double angle)
{
    return QTransform().rotate(angle).mapRect(QRectF(QPointF(0, 0), size)).size();
}

// A view that moves has the size that it is moving to.
QSizeF sizeOf(const QQuickItem &item)
{
    const auto *view = qobject_cast<const Platform::View *>(&item);
    return view ? view->frame().size() : item.size();
}

bool isOpaque(const QQuickItem &item)
{
    const auto *view = qobject_cast<const Platform::View *>(&item);
    return view && view->backgroundColor().alpha() == 255 && view->alpha() == 1.0;
}

// What the view draws, with everything in it; null while the window is not shown.
QImage layerOf(QQuickItem &view, QQuickWindow &window, qreal scale)
{
    const QSharedPointer<QQuickItemGrabResult> layer = view.grabToImage((view.size() * scale).toSize());
    if (!layer)
        return {};
    // The layer is drawn with the window's next frame, which this is.
    window.grabWindow();
    return layer->image();
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
    if (image.orientation() == ImageOrientation::Up)
        return image;
    return Image(image.upright(truncated(image.size())));
}

Image captureScreenShotOfView(QQuickItem *view)
{
    const QSizeF size = sizeOf(*view);
    QQuickWindow *window = view->window();
    const qreal scale = window ? window->effectiveDevicePixelRatio() : 1.0;
    const QImage layer = window ? layerOf(*view, *window, scale) : QImage();
    const bool opaque = !layer.isNull() && isOpaque(*view);
    BitmapContext context = BitmapContext::imageContext(size, opaque, scale);
    context.drawImage(Image(layer, scale), QRectF(QPointF(0, 0), size));
    return context.image();
}

ResizableImage resizableButtonBackground()
{
    return {brevantoBundle().imageNamed(QStringLiteral("btn_bg")), QMarginsF(5, 10, 5, 10)};
}

} // namespace scale
