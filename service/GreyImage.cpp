#include "service/GreyImage.h"

#include <QtCore/QBuffer>
#include <QtGui/QImageReader>

namespace MatchService
{

namespace
{

constexpr qint64 pixelLimit = 24'000'000;
constexpr int sideLimit = 16384;

GreyImage faulty(const char *reason)
{
    return {{}, QString::fromUtf8(reason)};
}

} // namespace

GreyImage readGreyImage(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    if (reader.format() != "jpeg" && reader.format() != "png")
        return faulty("The photo is neither a JPEG nor a PNG image");
    const QSize size = reader.size();
    if (size.isEmpty())
        return faulty("The photo cannot be read");
    if (size.width() > sideLimit || size.height() > sideLimit || qint64(size.width()) * size.height() > pixelLimit)
        return faulty("The photo has too many pixels");
    const QImage image = reader.read().convertToFormat(QImage::Format_Grayscale8);
    if (image.isNull())
        return faulty("The photo cannot be read");
    const cv::Mat view(image.height(), image.width(), CV_8U, const_cast<uchar *>(image.constBits()),
                       std::size_t(image.bytesPerLine()));
    return {view.clone(), {}};
}

GreyImage readPhoto(const QByteArray &bytes)
{
    // A scan takes as long as the photo is large, and each comment as long as all before it. Cameras write few of
    // either; pixels never look like these.
    constexpr qsizetype mostScans = 64;
    constexpr qsizetype mostComments = 256;
    if (!bytes.startsWith("\xff\xd8\xff"))
        return faulty("The photo is no JPEG image");
    if (bytes.count("\xff\xda") > mostScans || bytes.count("\xff\xfe") > mostComments)
        return faulty("The photo has too many parts");
    return readGreyImage(bytes);
}

} // namespace MatchService
