#include "Platform/Graphics/PixelOrientation.h"

#include <QColorSpace>
#include <QTransform>

namespace Platform
{

PixelOrientation PixelOrientation::uprightFrom(ImageOrientation orientation)
{
    switch (orientation) {
    case ImageOrientation::Up:
        return {};
    case ImageOrientation::Down:
        return {.mirroredX = true, .mirroredY = true};
    case ImageOrientation::Left:
        return {.transposed = true, .mirroredY = true};
    case ImageOrientation::Right:
        return {.transposed = true, .mirroredX = true};
    case ImageOrientation::UpMirrored:
        return {.mirroredX = true};
    case ImageOrientation::DownMirrored:
        return {.mirroredY = true};
    case ImageOrientation::LeftMirrored:
        return {.transposed = true};
    case ImageOrientation::RightMirrored:
        return {.transposed = true, .mirroredX = true, .mirroredY = true};
    }
    return {};
}

namespace
{

QImage mirrored(const QImage &image, bool mirrorX, bool mirrorY)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
    return image.flipped((mirrorX ? Qt::Horizontal : Qt::Orientations())
                         | (mirrorY ? Qt::Vertical : Qt::Orientations()));
#else
    return image.mirrored(mirrorX, mirrorY);
#endif
}

} // namespace

QImage PixelOrientation::apply(const QImage &image) const
{
    // A quarter turn clockwise is an exchange of rows and columns followed by a mirroring, and Qt has a fast one.
    const QImage turned = transposed ? image.transformed(QTransform().rotate(90)) : image;
    const bool mirrorX = transposed ? !mirroredX : mirroredX;
    QImage result = mirrorX || mirroredY ? mirrored(turned, mirrorX, mirroredY) : turned;
    result.setColorSpace(image.colorSpace()); // which the mirroring forgets
    return result;
}

} // namespace Platform
