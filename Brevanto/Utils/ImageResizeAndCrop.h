#pragma once

#include "Brevanto/BrevantoExport.h"
#include "Platform/Graphics/Image.h"

#include <QRectF>

// Fitting and cutting images.
namespace resizeAndCropExample
{

// Fits the stored bitmap into `targetSize`, aspect ratio kept, and cuts `cropRect` out of the result, as far as it lies
// inside; both in pixels of the result, whose scale is 1. Without anything inside, the fitted picture comes back whole.
// The picture is upside down: the bitmap is drawn raw. Null for an image that is null or does not decode, and for an
// empty target. Any thread.
BREVANTO_EXPORT Platform::Image resizeToSize(const Platform::Image &image, const QSizeF &targetSize,
                                             const QRectF &cropRect);

} // namespace resizeAndCropExample
