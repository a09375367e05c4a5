#pragma once

#include "Brevanto/BrevantoExport.h"
#include "Platform/Graphics/Image.h"

#include <QMarginsF>

class QQuickItem;

// The SDK's pixel work on images. Nothing changes the image it is given; unless noted, any thread may call. A null
// image gives a null image, and so does one whose pixels do not decode.
namespace scale
{

// The image upright, stretched to exactly that size at scale 1 (the aspect ratio is not kept); parts of a pixel count
// as whole ones. Encoded images are decoded at that size. Null when the size is empty.
BREVANTO_EXPORT Platform::Image scaleToSize(const Platform::Image &image, const QSizeF &size);

// An 8-bit grey image as wide and high as the image in whole points, parts cut off; black where it was transparent. The
// orientation is not applied: the stored bitmap is stretched into the upright size.
BREVANTO_EXPORT Platform::Image convertImageToGrayScale(const Platform::Image &image);

// The stored bitmap in the box that the turned image needs, turned clockwise by `angle` degrees about a point that is a
// whole box away from the origin: at 90 degrees the picture fills the box, at 0 and 180 it has left it.
BREVANTO_EXPORT Platform::Image rotateByAngle(const Platform::Image &image, double angle);

// The image with its pixels upright and orientation up; the very same image when it is so already.
BREVANTO_EXPORT Platform::Image fixOrientation(const Platform::Image &image);

// What the view, which is any Qt Quick item, and the items in it draw, whatever lies over them left out, at the
// screen's scale; nothing but transparency while it is in no visible window. Null when the view has no size. The view
// must not be null. For the main thread only.
BREVANTO_EXPORT Platform::Image captureScreenShotOfView(QQuickItem *view);

// An image that keeps its edges when it is stretched.
struct ResizableImage {
    Platform::Image image; // null for none
    QMarginsF capInsets; // points along each edge that keep their size when the image is stretched
};
// The stretchable background of buttons; its image is null while the bundle has no asset "btn_bg".
BREVANTO_EXPORT ResizableImage resizableButtonBackground();

} // namespace scale
