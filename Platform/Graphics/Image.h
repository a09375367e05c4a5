#pragma once

#include <QByteArray>
#include <QImage>
#include <QSharedPointer>
#include <QSizeF>
#include <QString>

namespace Platform
{

// The platform's eight orientations of a stored bitmap.
enum class ImageOrientation { Up = 0, Down, Left, Right, UpMirrored, DownMirrored, LeftMirrored, RightMirrored };

// A picture as a value, cheap to copy. Made from encoded bytes it keeps the bytes and decodes only when it is drawn, at
// the size it is drawn. A null image stands for "no image". Safe to use from several threads at once.
class Image
{
public:
    // No image, no drawing and no decoding has more pixels: decoding time grows with what a header promises.
    static constexpr qint64 largestPixelCount = 200'000'000;

    Image() = default;
    // An image over pixels that are decoded already.
    explicit Image(const QImage &bitmap, qreal scale = 1.0, ImageOrientation orientation = ImageOrientation::Up);

    // The image in encoded bytes (any format Qt reads); null when the bytes are none, or when the image has no pixels
    // or more than largestPixelCount. Reads the header only.
    static Image withData(const QByteArray &data);
    // The image in a file or resource; null when there is none.
    static Image withContentsOfFile(const QString &path);

    bool isNull() const { return !d; }

    // Width and height in points, upright: pixels divided by scale, sides swapped where the orientation turns them.
    QSizeF size() const;
    // Width and height of the stored bitmap in pixels, orientation not applied.
    QSize bitmapSize() const;
    qreal scale() const;
    ImageOrientation orientation() const;

    // The stored pixels, orientation not applied; decoded at `size` pixels when one is given (aspect ratio not kept).
    // Null when the bytes do not decode. Qt's allocation limit (QImageReader) holds: a very large image decodes only
    // when a smaller size is given. Nothing is kept: each call decodes anew.
    QImage bitmap(const QSize &size = {}) const;
    // The upright pixels, decoded at `size` pixels when one is given.
    QImage upright(const QSize &size = {}) const;

    // JPEG bytes of the upright image, quality from 0.0 (smallest) to 1.0; a grey bitmap gives a grey JPEG.
    // Transparency is laid over black. Empty on failure.
    QByteArray jpegData(qreal quality) const;

    // Key under which views find the image again; equal for copies of one image.
    QString identifier() const;
    // The living image under a key; null when there is none.
    static Image withIdentifier(const QString &identifier);

    // Identity, not pixels: copies are equal, two decodings of one file are not.
    friend bool operator==(const Image &a, const Image &b) { return a.d == b.d; }

private:
    struct Data;
    QSharedPointer<Data> d;
};

} // namespace Platform

Q_DECLARE_METATYPE(Platform::Image)
