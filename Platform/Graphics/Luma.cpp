#include "Platform/Graphics/Luma.h"

#include <QTransform>

#include <algorithm>
#include <vector>

namespace Platform
{

namespace
{

constexpr int whole = 256;

// The larger bitmap's rows that one of the smaller lies on, and how much of it each makes; in all a whole.
struct Span {
    int first = 0;
    std::vector<quint16> weights;
};

Span span(qint64 index, int from, int to)
{
    // In parts of the larger one's rows, `to` to each.
    const qint64 begin = index * from;
    const qint64 end = begin + from;
    Span result{int(begin / to), {}};
    int given = 0;
    for (qint64 at = begin; at < end;) {
        at = std::min((at / to + 1) * to, end);
        const int reached = int((at - begin) * whole / from);
        result.weights.push_back(quint16(reached - given));
        given = reached;
    }
    return result;
}

QImage withFewerRows(const QImage &grey, int height)
{
    QImage result(grey.width(), height, QImage::Format_Grayscale8);
    const auto width = std::size_t(grey.width());
    std::vector<quint16> sums(width);
    for (int y = 0; y < height; ++y) {
        std::fill(sums.begin(), sums.end(), whole / 2);
        Span rows = span(y, grey.height(), height);
        for (const quint16 weight : rows.weights) {
            const uchar *source = grey.constScanLine(rows.first++);
            for (std::size_t x = 0; x < width; ++x)
                sums[x] = quint16(sums[x] + weight * source[x]);
        }
        uchar *target = result.scanLine(y);
        for (std::size_t x = 0; x < width; ++x)
            target[x] = uchar(sums[x] / whole);
    }
    return result;
}

} // namespace

QImage Luma::of(const QImage &image)
{
    const QImage rgb =
        image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    QImage grey(rgb.size(), QImage::Format_Grayscale8);
    const int width = grey.width();
    for (int y = 0; y < grey.height(); ++y) {
        const auto *source = reinterpret_cast<const QRgb *>(rgb.constScanLine(y));
        uchar *target = grey.scanLine(y);
        for (int x = 0; x < width; ++x)
            target[x] = uchar((77 * qRed(source[x]) + 150 * qGreen(source[x]) + 29 * qBlue(source[x]) + 128) >> 8);
    }
    return grey;
}

// Along the rows many pixels are added at once; columns are turned into rows for it.
QImage Luma::shrunk(const QImage &grey, const QSize &size)
{
    const QImage turned = withFewerRows(grey, size.height()).transformed(QTransform().rotate(90));
    return withFewerRows(turned, size.width()).transformed(QTransform().rotate(-90));
}

} // namespace Platform
