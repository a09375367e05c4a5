#include "Brevanto/HotspotPlacement.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace HotspotPlacement
{

namespace
{

// Toward zero, and to the nearest end where the value does not fit: percentages come from outside and may be anything.
qint64 truncated(double value)
{
    constexpr double limit = 9223372036854775808.0;
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<qint64>::max();
    if (value <= -limit)
        return std::numeric_limits<qint64>::min();
    return static_cast<qint64>(value);
}

// One coordinate on an axis on which the image starts at `origin` and is `length` long.
double pulledIn(qint64 coordinate, double origin, double length)
{
    constexpr double half = markerSize / 2;
    return std::max(std::min(static_cast<double>(coordinate), origin + length - half), origin + half);
}

qint64 namedCoordinate(float percent, double origin, double length)
{
    return truncated(length * (static_cast<double>(percent) / 100) + origin);
}

qint64 diagonalCoordinate(double start, qint32 index, double origin, double length)
{
    const qint64 first = truncated(start * length + origin);
    return truncated(static_cast<double>(first) + length * (0.1 * index));
}

} // namespace

QRectF aspectFitRect(QSizeF imageSize, QSizeF viewSize)
{
    if (imageSize.isEmpty() || viewSize.isEmpty())
        return {};

    const auto imageWidth = static_cast<float>(imageSize.width());
    const auto imageHeight = static_cast<float>(imageSize.height());
    const auto viewWidth = static_cast<float>(viewSize.width());
    const auto viewHeight = static_cast<float>(viewSize.height());
    const float imageRatio = imageWidth / imageHeight;
    const float viewRatio = viewWidth / viewHeight;
    if (viewRatio > imageRatio) {
        const float scale = viewHeight / imageHeight;
        const float width = scale * imageWidth;
        return {(viewWidth - width) * 0.5f, 0, width, viewHeight};
    }
    const float scale = viewWidth / imageWidth;
    const float height = scale * imageHeight;
    return {0, (viewHeight - height) * 0.5f, viewWidth, height};
}

QPointF markerCenter(const QRectF &imageRect, std::optional<float> xPercent, std::optional<float> yPercent,
                     qint32 index)
{
    const bool isNamed = xPercent && yPercent;
    const qint64 x = isNamed ? namedCoordinate(*xPercent, imageRect.x(), imageRect.width())
                             : diagonalCoordinate(0.3, index, imageRect.x(), imageRect.width());
    const qint64 y = isNamed ? namedCoordinate(*yPercent, imageRect.y(), imageRect.height())
                             : diagonalCoordinate(0.5, index, imageRect.y(), imageRect.height());
    return {pulledIn(x, imageRect.x(), imageRect.width()), pulledIn(y, imageRect.y(), imageRect.height())};
}

} // namespace HotspotPlacement
