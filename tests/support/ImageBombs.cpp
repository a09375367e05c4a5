#include "support/ImageBombs.h"

#include "support/TestImages.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>

namespace ImageBombs
{

QByteArray pngWithTexts(int count, bool isBehind)
{
    constexpr int frameSize = 12;
    const QByteArray packed = qCompress(QByteArray(7'990'000, 'a'), 9).sliced(4);
    const QByteArray content = QByteArrayLiteral("zTXtk\0\0") + packed;
    QByteArray chunk(4, '\0');
    qToBigEndian<quint32>(quint32(content.size() - 4), chunk.data());
    // An optional chunk's checksum is complained about, no more.
    chunk += content + QByteArray(4, '\0');
    QByteArray png = TestImages::png(TestImages::quarters({32, 16}));
    return png.insert(isBehind ? png.size() - frameSize : png.indexOf("IDAT") - 4, chunk.repeated(count));
}

QByteArray jpegWithComments(int count, bool isBehind)
{
    QByteArray jpeg = TestImages::jpeg(TestImages::quarters({32, 16}));
    return jpeg.insert(isBehind ? jpeg.size() - 2 : 2, QByteArrayLiteral("\xff\xfe\0\x02").repeated(count));
}

QByteArray jpegOfScans(int size, int count)
{
    QImage grey(size, size, QImage::Format_Grayscale8);
    grey.fill(200);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    writer.write(grey);
    const QByteArray scan = QByteArrayLiteral("\xff\xda");
    const QByteArray last = bytes.sliced(bytes.lastIndexOf(scan)).chopped(2);
    return bytes.insert(bytes.size() - 2, last.repeated(count - int(bytes.count(scan))));
}

QByteArray gifThatNeverEnds(int size)
{
    QByteArray gif = QByteArrayLiteral("GIF89a\x64\0\x64\0\x80\0\0\0\0\0\xff\xff\xff,\0\0\0\0\x64\0\x64\0\0\x02");
    QByteArray codes;
    quint32 bits = 0;
    int bitCount = 0;
    const auto put = [&](quint32 code, int width) {
        bits |= code << bitCount;
        for (bitCount += width; bitCount >= 8; bitCount -= 8, bits >>= 8)
            codes.append(char(bits));
    };
    int width = 3;
    put(4, width);
    put(0, width);
    // Each code stands for one pixel more than the one before; the last is as long as the table.
    for (quint32 code = 6; code < 4096; ++code) {
        put(code, width);
        if (code + 1 == 1U << width && width < 12)
            ++width;
    }
    while (codes.size() < size)
        put(4095, width);
    for (qsizetype at = 0; at < codes.size(); at += 255) {
        const QByteArray block = codes.mid(at, 255);
        gif += char(block.size()) + block;
    }
    return gif + QByteArrayLiteral("\0;");
}

QByteArray gigabyteOfSpaces(bool isGzip)
{
    // One block of fixed codes: a space, and again and again 258 letters as the one before. Eight of these are 13
    // bytes.
    constexpr int rounds = 484'496;
    constexpr quint32 size = 1 + rounds * 8 * 258;
    const QByteArray copies = QByteArray("1100010100000").repeated(8);
    const QByteArray bits = "110" + QByteArray("01010000") + copies + copies + "0000000";
    QByteArray block((bits.size() + 7) / 8, '\0');
    for (qsizetype i = 0; i < bits.size(); ++i)
        block[i / 8] = char(block[i / 8] | (bits[i] - '0') << i % 8);
    block.insert(2, block.mid(2, 13).repeated(rounds - 2));
    QByteArray checksum(8, '\0');
    if (!isGzip) {
        qToBigEndian<quint32>(0x0e38e8d9, checksum.data());
        return QByteArrayLiteral("\x78\x9c") + block + checksum.first(4);
    }
    qToLittleEndian<quint32>(0x0c9250d2, checksum.data());
    qToLittleEndian<quint32>(size, checksum.data() + 4);
    return QByteArrayLiteral("\x1f\x8b\x08\0\0\0\0\0\0\xff") + block + checksum;
}

} // namespace ImageBombs
