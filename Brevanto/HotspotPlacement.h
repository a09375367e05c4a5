#pragma once

#include <QRectF>

#include <optional>

// Where hotspot markers stand on an ad image. Pure geometry: rectangles and points are in the coordinates of the image
// view, in points.
namespace HotspotPlacement
{

// Width and height of a marker.
inline constexpr qreal markerSize = 30;

// The rectangle that an image of `imageSize` covers when it is fitted, whole and centred, into a view of `viewSize`.
// Reckoned in single precision, offsets not rounded. Empty when either size is.
QRectF aspectFitRect(QSizeF imageSize, QSizeF viewSize);

// Centre of the marker of the match at `index`: the point that the percentages name within `imageRect`, or, when either
// is missing, a point on the falling diagonal that markers without coordinates share. Its fraction is dropped; then it
// is pulled in so that the whole marker lies within the rectangle, the left and upper edge winning where it is too
// small.
QPointF markerCenter(const QRectF &imageRect, std::optional<float> xPercent, std::optional<float> yPercent,
                     qint32 index);

} // namespace HotspotPlacement
