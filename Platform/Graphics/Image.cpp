#include "Platform/Graphics/Image.h"

#include "Platform/Graphics/EncodedImage.h"
#include "Platform/Graphics/InterruptibleBuffer.h"
#include "Platform/Graphics/Luma.h"
#include "Platform/Graphics/PixelOrientation.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QImageReader>
#include <QImageWriter>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <memory>
#include <mutex>

namespace Platform
{

namespace
{

bool isAcceptable(const QSize &size, qint64 largestCount = Image::largestPixelCount)
{
    return !size.isEmpty() && qint64(size.width()) * size.height() <= largestCount;
}

ImageOrientation orientationOf(QImageIOHandler::Transformations transformation)
{
    switch (transformation.toInt()) {
    case QImageIOHandler::TransformationMirror:
        return ImageOrientation::UpMirrored;
    case QImageIOHandler::TransformationRotate180:
        return ImageOrientation::Down;
    case QImageIOHandler::TransformationFlip:
        return ImageOrientation::DownMirrored;
    case QImageIOHandler::TransformationFlipAndRotate90:
        return ImageOrientation::LeftMirrored;
    case QImageIOHandler::TransformationRotate90:
        return ImageOrientation::Right;
    case QImageIOHandler::TransformationMirrorAndRotate90:
        return ImageOrientation::RightMirrored;
    case QImageIOHandler::TransformationRotate270:
        return ImageOrientation::Left;
    default:
        return ImageOrientation::Up;
    }
}

// What a JPEG decoder is to give when a picture of `size` is wanted: it shrinks to eighths while it reads, the less
// shrunk side deciding. Of a very long picture that would be nearly all.
struct Eighths {
    int wanted;
    int most;
};

Eighths eighths(const QSize &stored, const QSize &size)
{
    const qreal shrinking = std::min(qreal(stored.width()) / size.width(), qreal(stored.height()) / size.height());
    const qreal largest = std::sqrt(qreal(Image::largestWholePixelCount) / (qreal(stored.width()) * stored.height()));
    return {.wanted = std::clamp(int(std::ceil(8 / shrinking)), 1, 8), .most = std::clamp(int(8 * largest), 1, 8)};
}

QSize readSize(const QSize &stored, const QSize &size)
{
    const auto [wanted, most] = eighths(stored, size);
    return wanted <= most ? size : (stored * most / 8).expandedTo({1, 1});
}

// What a JPEG decoder has before that is shrunk to `size`; `size` where Qt would scale that, too, for want of whole
// pixels, or where it is not shrunk.
QSize unscaledReadSize(const QSize &stored, const QSize &size)
{
    const auto [wanted, most] = eighths(stored, size);
    const QSize product = stored * wanted;
    const bool isWhole = product.width() % 8 == 0 && product.height() % 8 == 0;
    const QSize unscaled = product / 8;
    return wanted <= most && isWhole && unscaled == unscaled.expandedTo(size) ? unscaled : size;
}

// Pixels laid over black, which is what a format without transparency shows of them.
QImage withoutTransparency(const QImage &image)
{
    if (!image.hasAlphaChannel())
        return image;
    QImage premultiplied = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    premultiplied.reinterpretAsFormat(QImage::Format_RGB32);
    return premultiplied;
}

} // namespace

// Never changes once made, so that threads may share it.
struct Image::Data {
    // The living images. Each holds on to it, so that images with static lifetime may go in any order.
    struct Registry {
        std::mutex mutex;
        QHash<QString, QWeakPointer<Data>> images;
    };

    QByteArray encoded; // empty: the pixels are in `decoded`
    QByteArray format; // of encoded bytes from anywhere; empty: Qt finds out
    QImage decoded;
    QSize size;
    qreal scale = 1.0;
    ImageOrientation orientation = ImageOrientation::Up;
    QString identifier;
    std::shared_ptr<Registry> registry;

    static std::shared_ptr<Registry> sharedRegistry();
    static void publish(const QSharedPointer<Data> &data);
    ~Data();
};

std::shared_ptr<Image::Data::Registry> Image::Data::sharedRegistry()
{
    static const auto registry = std::make_shared<Registry>();
    return registry;
}

void Image::Data::publish(const QSharedPointer<Data> &data)
{
    static std::atomic<quint64> count = 0;
    data->identifier = QString::number(++count);
    data->registry = sharedRegistry();
    const std::lock_guard lock(data->registry->mutex);
    data->registry->images.insert(data->identifier, data);
}

Image::Data::~Data()
{
    const std::lock_guard lock(registry->mutex);
    registry->images.remove(identifier);
}

Image::Image(const QImage &bitmap, qreal scale, ImageOrientation orientation)
{
    if (bitmap.isNull())
        return;
    d.reset(new Data);
    d->decoded = bitmap;
    if (bitmap.devicePixelRatio() != 1.0)
        d->decoded.setDevicePixelRatio(1.0);
    d->size = bitmap.size();
    d->scale = scale > 0 ? scale : 1.0;
    d->orientation = orientation;
    Data::publish(d);
}

Image Image::withData(const QByteArray &data)
{
    const EncodedImage encoded = EncodedImage::from(data);
    if (encoded.format.isEmpty())
        return {};
    return withEncoded(encoded.bytes, encoded.format, encoded.isReadWhole ? largestWholePixelCount : largestPixelCount);
}

Image Image::withContentsOfFile(const QString &path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return withEncoded(file.readAll(), {}, largestPixelCount);
}

Image Image::withEncoded(const QByteArray &data, const QByteArray &format, qint64 largestCount)
{
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(format.isEmpty());
    const QSize size = reader.size();
    if (!isAcceptable(size, largestCount))
        return {};

    Image image;
    image.d.reset(new Data);
    image.d->encoded = data;
    image.d->format = format;
    image.d->size = size;
    image.d->orientation = orientationOf(reader.transformation());
    Data::publish(image.d);
    return image;
}

bool Image::isFromAnywhere() const
{
    return d && !d->format.isEmpty();
}

QSizeF Image::size() const
{
    return d ? PixelOrientation::uprightFrom(d->orientation).apply(QSizeF(d->size)) / d->scale : QSizeF(0, 0);
}

QSize Image::bitmapSize() const
{
    return d ? d->size : QSize(0, 0);
}

qreal Image::scale() const
{
    return d ? d->scale : 1.0;
}

ImageOrientation Image::orientation() const
{
    return d ? d->orientation : ImageOrientation::Up;
}

qint64 Image::byteCount() const
{
    return d ? d->encoded.size() + d->decoded.sizeInBytes() : 0;
}

QImage Image::bitmap(const QSize &size, const GoesOn &goesOn) const
{
    if (!d || (size.isValid() && !isAcceptable(size)))
        return {};
    const bool scaled = size.isValid() && size != d->size;
    if (!d->decoded.isNull())
        return scaled ? d->decoded.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : d->decoded;

    // Where nobody asks for pieces, Qt decodes a buffer in place, a JPEG a fifth faster.
    QBuffer whole;
    whole.setData(d->encoded);
    InterruptibleBuffer pieces(d->encoded, goesOn);
    QImageReader reader(goesOn ? static_cast<QIODevice *>(&pieces) : &whole, d->format);
    reader.setAutoDetectImageFormat(d->format.isEmpty());
    if (scaled)
        reader.setScaledSize(d->format == "jpeg" ? readSize(d->size, size) : size);
    QImage image = reader.read();
    // What came until then looks like an image.
    if (pieces.isInterrupted())
        return {};
    if (scaled && !image.isNull() && image.size() != size)
        image = image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return image;
}

QImage Image::upright(const QSize &size, const GoesOn &goesOn) const
{
    const PixelOrientation orientation = PixelOrientation::uprightFrom(this->orientation());
    return orientation.apply(bitmap(size.isValid() ? orientation.apply(size) : size, goesOn));
}

QImage Image::uprightLuma(const QSize &size) const
{
    if (!d || !isAcceptable(size))
        return {};
    const PixelOrientation orientation = PixelOrientation::uprightFrom(d->orientation);
    const QSize stored = orientation.apply(size);
    const QImage pixels = bitmap(d->format == "jpeg" ? unscaledReadSize(d->size, stored) : stored);
    if (pixels.isNull())
        return {};
    const QImage luma = Luma::of(pixels);
    return orientation.apply(luma.size() == stored ? luma : Luma::shrunk(luma, stored));
}

QByteArray Image::jpegData(qreal quality) const
{
    const QImage pixels = upright();
    if (pixels.isNull())
        return {};
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(qRound(qBound(0.0, quality, 1.0) * 100));
    return writer.write(withoutTransparency(pixels)) ? bytes : QByteArray();
}

QString Image::identifier() const
{
    return d ? d->identifier : QString();
}

Image Image::withIdentifier(const QString &identifier)
{
    const std::shared_ptr<Data::Registry> registry = Data::sharedRegistry();
    const std::lock_guard lock(registry->mutex);
    Image image;
    image.d = registry->images.value(identifier).toStrongRef();
    return image;
}

} // namespace Platform
