#include "Platform/Graphics/BitmapContext.h"

#include "Platform/Graphics/Luma.h"
#include "Platform/Graphics/PixelOrientation.h"

#include <QPainter>

#include <cmath>
#include <optional>

namespace Platform
{

namespace
{

// Sizes and places come out of trigonometry; a difference below this is no part of a pixel.
constexpr qreal tolerance = 1e-6;

bool isWhole(qreal value)
{
    return std::abs(value - std::round(value)) < tolerance;
}

bool isNone(qreal value)
{
    return std::abs(value) < tolerance;
}

// Longer than any bitmap, and shorter than what a row of pixels can count.
constexpr qreal longestSide = 1e6;

// 0 where there are too many.
int wholePixels(qreal length)
{
    return length > longestSide ? 0 : int(std::ceil(qMax(0.0, length - tolerance)));
}

QTransform bottomLeftOrigin(const QSize &pixels)
{
    return {1, 0, 0, -1, 0, qreal(pixels.height())};
}

QImage blank(const QSize &pixels, QImage::Format format)
{
    if (pixels.isEmpty() || qint64(pixels.width()) * pixels.height() > Image::largestPixelCount)
        return {};
    QImage image(pixels, format);
    image.fill(image.hasAlphaChannel() ? Qt::transparent : Qt::black);
    return image;
}

// Where a bitmap lands whose edges stay parallel to the rows and columns and lie between pixels.
struct GridPlacement {
    PixelOrientation orientation;
    QRect pixels;
};

std::optional<GridPlacement> gridPlacement(const QTransform &transform, const QSize &size)
{
    const bool straight = isNone(transform.m12()) && isNone(transform.m21());
    const bool turned = isNone(transform.m11()) && isNone(transform.m22());
    if (!straight && !turned)
        return {};
    const QRectF target = transform.mapRect(QRectF(QPointF(0, 0), QSizeF(size)));
    if (std::abs(target.left()) > longestSide || std::abs(target.top()) > longestSide || target.width() > longestSide
        || target.height() > longestSide)
        return {};
    if (!isWhole(target.left()) || !isWhole(target.top()) || !isWhole(target.right()) || !isWhole(target.bottom()))
        return {};
    const PixelOrientation orientation = straight
        ? PixelOrientation{.mirroredX = transform.m11() < 0, .mirroredY = transform.m22() < 0}
        : PixelOrientation{.transposed = true, .mirroredX = transform.m21() < 0, .mirroredY = transform.m12() < 0};
    return GridPlacement{orientation, target.toRect()};
}

} // namespace

BitmapContext::BitmapContext(QImage pixels, const QTransform &transform, qreal scale)
    : m_pixels(std::move(pixels))
    , m_transform(transform)
    , m_scale(scale)
{
}

BitmapContext::BitmapContext(const QSize &pixels, ColorSpace colorSpace)
    : BitmapContext(
        blank(pixels,
              colorSpace == ColorSpace::DeviceGray ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied),
        bottomLeftOrigin(pixels), 1.0)
{
    m_colorSpace = colorSpace;
}

BitmapContext BitmapContext::imageContext(const QSizeF &size, bool opaque, qreal scale)
{
    const QSize pixels(wholePixels(size.width() * scale), wholePixels(size.height() * scale));
    return {blank(pixels, opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied),
            QTransform::fromScale(scale, scale), scale};
}

template <typename Decode>
bool BitmapContext::draw(Decode decode, const QSize &size, const QTransform &placement)
{
    const QTransform transform = placement * m_transform;
    const std::optional<GridPlacement> grid = gridPlacement(transform, size);
    const QImage bitmap = decode(grid ? grid->orientation.apply(grid->pixels.size()) : QSize());
    if (bitmap.isNull())
        return false;

    QPainter painter(&m_pixels);
    if (grid) {
        painter.drawImage(grid->pixels.topLeft(), grid->orientation.apply(bitmap));
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setTransform(transform);
        painter.drawImage(QPointF(0, 0), bitmap);
    }
    return true;
}

bool BitmapContext::drawBitmap(const Image &image, const QRectF &rect)
{
    const QSize size = image.bitmapSize();
    if (!isValid() || size.isEmpty())
        return false;
    const QTransform placement(rect.width() / size.width(), 0, 0, -rect.height() / size.height(), rect.left(),
                               rect.bottom());
    return draw([&image](const QSize &decodedSize) { return image.bitmap(decodedSize); }, size, placement);
}

bool BitmapContext::drawImage(const Image &image, const QRectF &rect)
{
    const QSize size = PixelOrientation::uprightFrom(image.orientation()).apply(image.bitmapSize());
    if (!isValid() || size.isEmpty())
        return false;
    const QTransform placement(rect.width() / size.width(), 0, 0, rect.height() / size.height(), rect.left(),
                               rect.top());
    return draw([&image](const QSize &decodedSize) { return image.upright(decodedSize); }, size, placement);
}

Image BitmapContext::image() const
{
    return Image(m_colorSpace == ColorSpace::DeviceGray && isValid() ? Luma::of(m_pixels) : m_pixels, m_scale);
}

} // namespace Platform
