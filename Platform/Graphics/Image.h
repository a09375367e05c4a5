#pragma once

#include "Platform/Foundation/Export.h"

#include <QByteArray>
#include <QImage>
#include <QSharedPointer>
#include <QSizeF>
#include <QString>

#include <functional>

namespace Platform
{

// How a stored bitmap is turned upright: Up not at all, Down by half a turn, Left by a quarter counterclockwise, Right
// by a quarter clockwise; of the mirrored ones left and right are exchanged first.
enum class ImageOrientation { Up = 0, Down, Left, Right, UpMirrored, DownMirrored, LeftMirrored, RightMirrored };

// A picture as a value, cheap to copy. Made from encoded bytes it keeps the bytes and decodes only when it is drawn, at
// the size it is drawn. A null image stands for "no image". Safe to use from several threads at once.
class BREVANTO_EXPORT Image
{
public:
    // No encoded image and no decoding has more pixels: decoding time grows with what a header promises.
    static constexpr qint64 largestPixelCount = 200'000'000;
    // Nor has an image from anywhere whose decoder keeps all pixels, however small it is drawn: each but a JPEG that
    // comes from top to bottom.
    static constexpr qint64 largestWholePixelCount = 12'000'000;

    // Asked by a decoding before each piece that it reads; false ends it with a null image.
    using GoesOn = std::function<bool()>;

    Image() = default;
    // An image over pixels that are decoded already. Null over a null bitmap; a scale that is not above 0 counts as 1.
    explicit Image(const QImage &bitmap, qreal scale = 1.0, ImageOrientation orientation = ImageOrientation::Up);

    // The image in encoded bytes from anywhere: JPEG, PNG, GIF, WebP or BMP. Null when the bytes are something else, or
    // when the image has no pixels or too many. Keeps what decoding needs of the bytes and reads the header only.
    static Image withData(const QByteArray &data);
    // The image in a file or resource of one's own; null when there is none. It may be of any format that Qt reads,
    // vector graphics too, whose drawing takes time and memory beyond measure and may open further files.
    static Image withContentsOfFile(const QString &path);

    // Whether there is no image.
    bool isNull() const { return !d; }
    // Whether the image is made from encoded bytes from anywhere, whose decoding may take as long as it is let.
    bool isFromAnywhere() const;

    // Width and height in points, upright: pixels divided by scale, sides swapped where the orientation turns them.
    // 0 by 0 of a null image.
    QSizeF size() const;
    // Width and height of the stored bitmap in pixels, orientation not applied.
    QSize bitmapSize() const;
    // Pixels per point.
    qreal scale() const;
    // How the stored bitmap is turned upright.
    ImageOrientation orientation() const;
    // How much memory the image takes: its encoded bytes, or else its pixels.
    qint64 byteCount() const;

    // The stored pixels, orientation not applied; decoded at `size` pixels when one is given (aspect ratio not kept).
    // Null when the bytes do not decode. Qt's allocation limit (QImageReader) holds: a very large image decodes only
    // when a smaller size is given. Nothing is kept: each call decodes anew.
    QImage bitmap(const QSize &size = {}, const GoesOn &goesOn = {}) const;
    // The upright pixels, decoded at `size` pixels when one is given.
    QImage upright(const QSize &size = {}, const GoesOn &goesOn = {}) const;
    // The luma (ITU-R BT.601) of the upright pixels, decoded at `size` pixels; transparency is laid over black. A JPEG
    // turns grey before it is shrunk to that size, which is less to do than the other way round.
    QImage uprightLuma(const QSize &size) const;

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
    static Image withEncoded(const QByteArray &data, const QByteArray &format, qint64 largestCount);
    QSharedPointer<Data> d;
};

} // namespace Platform

Q_DECLARE_METATYPE(Platform::Image)
