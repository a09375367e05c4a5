#include "Platform/Graphics/Image.h"
#include "support/ImageBombs.h"
#include "support/MemoryWatch.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include <QBuffer>
#include <QImageWriter>
#include <QLoggingCategory>
#include <QTest>
#include <QtEndian>

#include <algorithm>

using namespace Qt::StringLiterals;
using Platform::Image;

namespace
{

QByteArray blank(const char *format, const QSize &size, QImage::Format pixels, bool isProgressive = false)
{
    QImage image(size, pixels);
    image.fill(1);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setProgressiveScanWrite(isProgressive);
    writer.setQuality(isProgressive ? 100 : 50);
    writer.write(image);
    return bytes;
}

QByteArray pngChunk(const QByteArray &content)
{
    quint32 checksum = ~0U;
    for (const char byte : content) {
        checksum ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            checksum = (checksum >> 1) ^ ((checksum & 1) ? 0xedb88320U : 0U);
    }
    QByteArray chunk(content.size() + 8, '\0');
    qToBigEndian<quint32>(quint32(content.size() - 4), chunk.data());
    std::copy(content.begin(), content.end(), chunk.begin() + 4);
    qToBigEndian<quint32>(~checksum, chunk.data() + chunk.size() - 4);
    return chunk;
}

// Which Qt does not write: 16-bit colours in seven passes over the image. All of its pixels are black.
QByteArray interlacedPng(const QSize &size)
{
    QByteArray header = QByteArrayLiteral("IHDRwwwwhhhh\x10\x02\0\0\x01");
    qToBigEndian<quint32>(quint32(size.width()), header.data() + 4);
    qToBigEndian<quint32>(quint32(size.height()), header.data() + 8);
    // Each line of a pass has a byte more; lines are at most so many.
    const QByteArray pixels(qsizetype(size.width()) * size.height() * 6 + 2 * size.height(), '\0');
    return "\x89PNG\r\n\x1a\n" + pngChunk(header) + pngChunk("IDAT" + qCompress(pixels).sliced(4)) + pngChunk("IEND");
}

// What a phone's screen asks for.
constexpr QSize screen(1080, 1440);

} // namespace

class tst_ImageBounds : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLoggingCategory::setFilterRules(u"qt.gui.imageio*=false"_s); }

    void takesBoundedMemory_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("isImage");
        const auto row = [](const char *name, const QByteArray &data, bool isImage = true) {
            QTest::newRow(name) << data << isImage;
        };
        const QSize most(4000, 3000);
        const QSize tooMany(4001, 3000);
        row("1-bit png", blank("png", most, QImage::Format_Mono));
        row("grey png", blank("png", most, QImage::Format_Grayscale8));
        row("palette png", blank("png", most, QImage::Format_Indexed8));
        row("colour png", blank("png", most, QImage::Format_RGB32));
        row("16-bit png", blank("png", most, QImage::Format_RGBA64));
        row("interlaced png", interlacedPng(most));
        row("1-bit bmp", blank("bmp", most, QImage::Format_Mono));
        row("colour bmp", blank("bmp", most, QImage::Format_RGB32));
        row("progressive jpeg", blank("jpeg", most, QImage::Format_RGB32, true));
        row("1-bit png, too large", blank("png", tooMany, QImage::Format_Mono), false);
        row("bmp, too large", blank("bmp", tooMany, QImage::Format_Mono), false);
        row("progressive jpeg, too large", blank("jpeg", tooMany, QImage::Format_Grayscale8, true), false);
        row("grey png, far too large", blank("png", {16000, 16000}, QImage::Format_Grayscale8), false);
        row("jpeg that shrinks while it is read", blank("jpeg", {14000, 14000}, QImage::Format_Grayscale8));
        row("jpeg that hardly shrinks", blank("jpeg", {65000, 1450}, QImage::Format_RGB32));
        row("texts", ImageBombs::pngWithTexts(400, false));
        row("texts behind", ImageBombs::pngWithTexts(400, true));
        row("comments", ImageBombs::jpegWithComments(4'000'000, false));
        row("comments behind", ImageBombs::jpegWithComments(4'000'000, true));
        row("as many scans as are allowed", ImageBombs::jpegOfScans(2000, 64));
        row("scans without end", ImageBombs::jpegOfScans(2000, 65), false);
    }
    void takesBoundedMemory()
    {
        QFETCH(QByteArray, data);
        MemoryWatch memory;
        const Image image = Image::withData(data);
        QTEST(!image.isNull(), "isImage");
        if (!image.isNull())
            QCOMPARE(image.upright(screen).size(), screen);
        QVERIFY2(memory.growth() < 256 * MemoryWatch::mebibyte, QByteArray::number(memory.growth()));
    }

    void showsWhatIsLeft_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("texts") << ImageBombs::pngWithTexts(2, false);
        QTest::newRow("texts behind") << ImageBombs::pngWithTexts(2, true);
        QTest::newRow("comments") << ImageBombs::jpegWithComments(1000, false);
        QTest::newRow("comments behind") << ImageBombs::jpegWithComments(1000, true);
    }
    void showsWhatIsLeft()
    {
        QFETCH(QByteArray, data);
        const Image image = Image::withData(data);
        QCOMPARE(TestImages::seenIn(image.bitmap()), u"rgbw"_s);
        QVERIFY(image.byteCount() < data.size());
        QVERIFY(Image::withData(data.first(data.size() / 2)).byteCount() <= data.size() / 2);
    }

    // A camera's photo has some segments of its own, and is too large to be copied for them.
    void keepsWhatIsHarmless()
    {
        const QByteArray data = ImageBombs::jpegWithComments(20, false);
        const Image image = Image::withData(data);
        QCOMPARE(TestImages::seenIn(image.bitmap()), u"rgbw"_s);
        QCOMPARE(image.byteCount(), data.size());
    }

    void endsWhenTold_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("gif") << ImageBombs::gifThatNeverEnds(4'000'000);
        QTest::newRow("jpeg") << blank("jpeg", {10000, 10000}, QImage::Format_RGB32);
        QTest::newRow("progressive jpeg") << blank("jpeg", {3000, 3000}, QImage::Format_RGB32, true);
        QTest::newRow("png") << blank("png", {3000, 3000}, QImage::Format_RGB32);
        QTest::newRow("bmp") << blank("bmp", {3000, 3000}, QImage::Format_RGB32);
    }
    void endsWhenTold()
    {
        QFETCH(QByteArray, data);
        const Image image = Image::withData(data);
        QVERIFY(!image.isNull());
        int pieces = 5;
        QVERIFY(image.upright({40, 40}, [&pieces] { return --pieces > 0; }).isNull());
        QCOMPARE(pieces, 0);
    }
};

QTEST_GUILESS_MAIN(tst_ImageBounds)
#include "tst_ImageBounds.moc"
