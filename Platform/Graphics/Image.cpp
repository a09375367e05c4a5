#include "Platform/Graphics/Image.h"

#include "Platform/Graphics/PixelOrientation.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QImageReader>
#include <QImageWriter>

#include <atomic>
#include <memory>
#include <mutex>

namespace Platform
{

namespace
{

bool isAcceptable(const QSize &size)
{
    return !size.isEmpty() && qint64(size.width()) * size.height() <= Image::largestPixelCount;
}

// The raster format that the first bytes are a sign of; empty when there is none.
QByteArray rasterFormat(const QByteArray &data)
{
    if (data.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (data.startsWith("\x89PNG\r\n"))
        return "png";
    if (data.startsWith("GIF8"))
        return "gif";
    if (data.startsWith("RIFF") && data.size() > 12 && QByteArrayView(data).sliced(8).startsWith("WEBP"))
        return "webp";
    if (data.startsWith("BM"))
        return "bmp";
    return {};
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
    QByteArray format; // of the encoded bytes; empty: Qt finds out
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
    const QByteArray format = rasterFormat(data);
    return format.isEmpty() ? Image() : withEncoded(data, format);
}

Image Image::withContentsOfFile(const QString &path)
{
    QFile file(path);
    if (path.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return withEncoded(file.readAll(), {});
}

Image Image::withEncoded(const QByteArray &data, const QByteArray &format)
{
    QBuffer buffer;
    buffer.setData(data);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(format.isEmpty());
    const QSize size = reader.size();
    if (!isAcceptable(size))
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

QImage Image::bitmap(const QSize &size) const
{
    if (!d || (size.isValid() && !isAcceptable(size)))
        return {};
    const bool scaled = size.isValid() && size != d->size;
    if (!d->decoded.isNull())
        return scaled ? d->decoded.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation) : d->decoded;

    QBuffer buffer;
    buffer.setData(d->encoded);
    QImageReader reader(&buffer, d->format);
    reader.setAutoDetectImageFormat(d->format.isEmpty());
    if (scaled)
        reader.setScaledSize(size);
    return reader.read();
}

QImage Image::upright(const QSize &size) const
{
    const PixelOrientation orientation = PixelOrientation::uprightFrom(this->orientation());
    return orientation.apply(bitmap(size.isValid() ? orientation.apply(size) : size));
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
