#include "Brevanto/Utils/ImageResizeAndCrop.h"

#include "Platform/Graphics/BitmapContext.h"

#include <cmath>

using Platform::BitmapContext;
using Platform::Image;

namespace resizeAndCropExample
{

namespace
{

// To the nearest whole number, in single precision.
qreal rounded(qreal value)
{
    return std::round(float(value));
}

QSizeF fitted(const QSizeF &size, const QSizeF &target)
{
    const QSizeF byHeight(rounded(size.width() * (target.height() / size.height())), target.height());
    if (byHeight.width() <= target.width())
        return byHeight;
    return {target.width(), rounded(size.height() * (target.width() / size.width()))};
}

} // namespace

Image resizeToSize(const Image &image, const QSizeF &targetSize, const QRectF &cropRect)
{
    if (image.isNull())
        return {};
    const QSizeF size = fitted(image.size(), targetSize);
    BitmapContext context = BitmapContext::imageContext(size);
    if (!context.drawBitmap(image, QRectF(QPointF(0, 0), size)))
        return {};
    Image resized = context.image();

    if (cropRect.left() >= size.width() || cropRect.top() >= size.height())
        return resized;
    QRectF clamped = cropRect;
    if (clamped.right() >= size.width())
        clamped.setRight(size.width());
    if (clamped.bottom() >= size.height())
        clamped.setBottom(size.height());

    const QImage bitmap = resized.bitmap();
    const QRect cut = clamped.toAlignedRect() & bitmap.rect();
    return cut.isEmpty() ? resized : Image(bitmap.copy(cut));
}

} // namespace resizeAndCropExample
