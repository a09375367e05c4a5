#include "support/TestImages.h"

#include <QBuffer>
#include <QColor>
#include <QPainter>

namespace TestImages
{

namespace
{

QByteArray encoded(const QImage &image, const char *format, int quality)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, quality);
    return bytes;
}

QChar letter(QRgb pixel)
{
    if (qAlpha(pixel) < 64)
        return QLatin1Char('-');
    const auto is = [pixel](const QColor &color) {
        return qAbs(qRed(pixel) - color.red()) < 70 && qAbs(qGreen(pixel) - color.green()) < 70
            && qAbs(qBlue(pixel) - color.blue()) < 70;
    };
    if (is(QColor(255, 0, 0)))
        return QLatin1Char('r');
    if (is(QColor(0, 255, 0)))
        return QLatin1Char('g');
    if (is(QColor(0, 0, 255)))
        return QLatin1Char('b');
    if (is(QColor(255, 255, 255)))
        return QLatin1Char('w');
    return is(QColor(0, 0, 0)) ? QLatin1Char('k') : QLatin1Char('?');
}

} // namespace

QImage quarters(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    const int w = size.width() / 2;
    const int h = size.height() / 2;
    QPainter painter(&image);
    painter.fillRect(0, 0, w, h, QColor(255, 0, 0));
    painter.fillRect(w, 0, size.width() - w, h, QColor(0, 255, 0));
    painter.fillRect(0, h, w, size.height() - h, QColor(0, 0, 255));
    return image;
}

QString seenIn(const QImage &image)
{
    QString letters;
    for (const int y : {image.height() / 4, image.height() * 3 / 4}) {
        for (const int x : {image.width() / 4, image.width() * 3 / 4})
            letters += image.isNull() ? QLatin1Char('?') : letter(image.pixel(x, y));
    }
    return letters;
}

QByteArray jpeg(const QImage &stored, int exifOrientation)
{
    QByteArray bytes = encoded(stored, "JPEG", 95);
    if (exifOrientation == 0)
        return bytes;
    // One big-endian TIFF directory with the single entry 0x0112, placed right after the start-of-image marker.
    QByteArray exif = QByteArray::fromHex("ffe100224578696600004d4d002a00000008"
                                          "000101120003000000010000000000000000");
    exif[29] = char(exifOrientation);
    return bytes.insert(2, exif);
}

QByteArray png(const QImage &image)
{
    return encoded(image, "PNG", -1);
}

QByteArray cmykJpeg()
{
    return QByteArray::fromBase64(QByteArrayLiteral(
        "/9j/7gAOQWRvYmUAZAAAAAAC/"
        "9sAQwADAgICAgIDAgICAwMDAwQGBAQEBAQIBgYFBgkICgoJCAkJCgwPDAoLDgsJCQ0RDQ4PEBAREAoMEhMSEBMPEBAQ"
        "/9sAQwEDAwMEAwQIBAQIEAsJCxAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQ"
        "/8AAFAgABAAGBAERAAIR"
        "AQMRAQQRAP/EABUAAQEAAAAAAAAAAAAAAAAAAAgJ/8QAFBABAAAAAAAAAAAAAAAAAAAAAP/"
        "EABUBAQEAAAAAAAAAAAAAAAAAAAcJ/8QAFBEBAAAAAAAA"
        "AAAAAAAAAAAAAP/aAA4EAQACEQMRBAAAPwA6AxVNVN//2Q=="));
}

QByteArray emptyPng()
{
    return QByteArray::fromBase64(QByteArrayLiteral(
        "iVBORw0KGgoAAAANSUhEUgAAAAAAAAAFAQAAAABDPdAMAAAADElEQVR4nGNgoD0AAABkAAGGZDw1AAAAAElFTkSuQmCC"));
}

} // namespace TestImages
