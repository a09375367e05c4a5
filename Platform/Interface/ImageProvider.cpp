#include "Platform/Interface/ImageProvider.h"

#include "Platform/Foundation/Handover.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QPainter>

#include <atomic>
#include <cmath>
#include <semaphore>

namespace Platform
{

namespace
{

QImage tinted(const QImage &picture, const QColor &color)
{
    if (!color.isValid() || picture.isNull())
        return picture;
    QImage result = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&result);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(result.rect(), color);
    return result;
}

// No picture takes longer to decode, and none that a view shows has more pixels: a long one that fills a view, the most
// of it outside, would.
constexpr qint64 longestDecoding = 10'000; // milliseconds
constexpr qint64 largestDrawing = Image::largestWholePixelCount;

QSize drawnSize(const Image &image, const QSize &requested)
{
    const QSize size = requested.isValid() ? requested : image.size().toSize();
    const qreal pixels = qreal(size.width()) * size.height();
    return pixels <= largestDrawing ? size
                                    : (QSizeF(size) * std::sqrt(largestDrawing / pixels)).toSize().expandedTo({1, 1});
}

// One picture on its way from its bytes to the screen. A view that has gone meanwhile gets none: its decoding ends.
class Decoding final : public QQuickImageResponse
{
public:
    Decoding(QThreadPool &pool, const Image &image, const QSize &size, const QColor &tintColor)
    {
        startInPool(pool, [this, image, size, tintColor] {
            if (!m_isCancelled) {
                const QDeadlineTimer deadline(longestDecoding);
                const auto goesOn = [this, &deadline] { return !m_isCancelled && !deadline.hasExpired(); };
                const QImage decoded = tinted(image.upright(drawnSize(image, size), goesOn), tintColor);
                const QMutexLocker lock(&m_mutex);
                m_picture = decoded;
            }
            Q_EMIT finished();
            m_isOver.release();
        });
    }
    // The pool's thread must be through with this object.
    ~Decoding() override
    {
        m_isCancelled = true;
        m_isOver.acquire();
    }

    void cancel() override { m_isCancelled = true; }
    QQuickTextureFactory *textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(picture());
    }
    QString errorString() const override
    {
        return picture().isNull() ? QStringLiteral("The image does not decode") : QString();
    }

private:
    QImage picture() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_picture;
    }

    mutable QMutex m_mutex;
    QImage m_picture;
    std::atomic<bool> m_isCancelled = false;
    std::binary_semaphore m_isOver{0};
};

// One pass of a running mean along the lines.
QImage meanAlongLines(const QImage &picture, int reach)
{
    QImage result(picture.size(), picture.format());
    const int width = picture.width();
    for (int y = 0; y < picture.height(); ++y) {
        const uchar *from = picture.constScanLine(y);
        uchar *to = result.scanLine(y);
        for (int x = 0; x < width; ++x) {
            int sum = 0;
            for (int near = qMax(0, x - reach); near <= qMin(width - 1, x + reach); ++near)
                sum += from[near];
            to[x] = static_cast<uchar>(sum / (2 * reach + 1));
        }
    }
    return result;
}

QImage blurred(QImage picture, int reach)
{
    constexpr int passes = 3; // close to a Gaussian
    for (int direction = 0; direction < 2; ++direction) {
        for (int pass = 0; pass < passes && reach > 0; ++pass)
            picture = meanAlongLines(picture, reach);
        // Turning a picture may change its format.
        picture = picture.transformed(QTransform(0, 1, 1, 0, 0, 0)).convertToFormat(QImage::Format_Grayscale8);
    }
    return picture;
}

} // namespace

ImageProvider::ImageProvider()
{
    m_ownImages.setMaxThreadCount(1);
    m_imagesFromAnywhere.setMaxThreadCount(1);
}

QString ImageProvider::name()
{
    return QStringLiteral("brevanto");
}

QUrl ImageProvider::url(const Platform::Image &image, const QColor &tintColor)
{
    if (image.isNull())
        return {};
    const QString tint = tintColor.isValid() ? u'/' + tintColor.name(QColor::HexArgb).mid(1) : QString();
    return QUrl(QStringLiteral("image://%1/%2%3").arg(name(), image.identifier(), tint));
}

QQuickImageResponse *ImageProvider::requestImageResponse(const QString &id, const QSize &requestedSize)
{
    const QString tint = id.section(u'/', 1);
    const QColor color = tint.isEmpty() ? QColor() : QColor(u'#' + tint);
    const Platform::Image image = Platform::Image::withIdentifier(id.section(u'/', 0, 0));
    return new Decoding(image.isFromAnywhere() ? m_imagesFromAnywhere : m_ownImages, image, requestedSize, color);
}

ShadowProvider::ShadowProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QString ShadowProvider::name()
{
    return QStringLiteral("brevanto-shadow");
}

QImage ShadowProvider::requestImage(const QString &id, QSize *size, const QSize &)
{
    constexpr int longest = 64;
    const int corner = qBound(0, id.section(u',', 0, 0).toInt(), longest);
    const int blur = qBound(0, id.section(u',', 1, 1).toInt(), longest);
    const int border = corner + 2 * blur;
    QImage shape(2 * border + 1, 2 * border + 1, QImage::Format_Grayscale8);
    shape.fill(Qt::black);
    {
        QPainter painter(&shape);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::white);
        painter.drawRoundedRect(QRectF(shape.rect()).adjusted(blur, blur, -blur, -blur), corner, corner);
    }
    shape = blurred(shape, qRound(blur / 2.0));
    QImage shadow(shape.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::black);
    shape.reinterpretAsFormat(QImage::Format_Alpha8);
    shadow.setAlphaChannel(shape);
    if (size)
        *size = shadow.size();
    return shadow;
}

DiscProvider::DiscProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QString DiscProvider::name()
{
    return QStringLiteral("brevanto-disc");
}

QImage DiscProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    constexpr int longest = 1024;
    QImage disc(requestedSize.boundedTo({longest, longest}).expandedTo({1, 1}), QImage::Format_ARGB32_Premultiplied);
    disc.fill(Qt::transparent);
    QPainter painter(&disc);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(u'#' + id));
    painter.drawEllipse(disc.rect());
    if (size)
        *size = disc.size();
    return disc;
}

} // namespace Platform
