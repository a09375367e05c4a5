#pragma once

#include "Platform/Graphics/Image.h"

#include <QTransform>

namespace Platform
{

// A bitmap to draw images into, with the platform's two kinds of drawing space:
//   a bitmap context has its origin at the bottom left, y grows upwards, one unit is one pixel;
//   an image context has its origin at the top left, y grows downwards, one unit is a point of `scale` pixels.
// Transformations apply to what is drawn after them, the last one first. A bitmap drawn raw stands on the lower edge of
// its rectangle as the y axis sees it: upright in a bitmap context, upside down in an image context. For one thread.
class BitmapContext
{
public:
    enum class ColorSpace { DeviceRGB, DeviceGray };

    // A bitmap context of that many pixels, eight bits per component. RGB is transparent to begin with; grey is black
    // and has no transparency. Grey values are the luma of ITU-R BT.601.
    BitmapContext(const QSize &pixels, ColorSpace colorSpace);

    // A new image context. Parts of pixels at the right and lower edge count as whole ones. Opaque ones begin black.
    static BitmapContext imageContext(const QSizeF &size, bool opaque = false, qreal scale = 1.0);

    // False when there are no pixels, or too many to be had.
    bool isValid() const { return !m_pixels.isNull(); }

    void translate(qreal x, qreal y) { m_transform.translate(x, y); }
    void rotate(qreal degrees) { m_transform.rotate(degrees); }
    void scale(qreal x, qreal y) { m_transform.scale(x, y); }

    // Both are false, and nothing is drawn, when the context is not valid or the image is null or does not decode.
    // The stored bitmap, raw, stretched into the rectangle.
    bool drawBitmap(const Image &image, const QRectF &rect);
    // The image as its orientation wants it shown, stretched into the rectangle; upright in an image context.
    bool drawImage(const Image &image, const QRectF &rect);

    // What has been drawn, orientation up, at the context's scale; null when the context is not valid.
    Image image() const;

private:
    BitmapContext(QImage pixels, const QTransform &transform, qreal scale);

    template <typename Decode>
    bool draw(Decode decode, const QSize &size, const QTransform &placement);

    QImage m_pixels;
    QTransform m_transform; // from the drawing space to rows and columns of pixels
    qreal m_scale = 1.0;
    ColorSpace m_colorSpace = ColorSpace::DeviceRGB;
};

} // namespace Platform
