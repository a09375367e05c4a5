#pragma once

#include "Platform/Graphics/Image.h"

namespace Platform
{

// A rearrangement of pixels on their grid: rows and columns exchanged first, then left and right, then top and bottom.
struct PixelOrientation {
    bool transposed = false;
    bool mirroredX = false;
    bool mirroredY = false;

    // What turns a stored bitmap upright.
    static PixelOrientation uprightFrom(ImageOrientation orientation);

    QSize apply(const QSize &size) const { return transposed ? size.transposed() : size; }
    QSizeF apply(const QSizeF &size) const { return transposed ? size.transposed() : size; }
    // Exact: every pixel keeps its value.
    QImage apply(const QImage &image) const;
};

} // namespace Platform
