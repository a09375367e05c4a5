#include "Platform/Graphics/Image.h"
#include "support/TestImages.h"

#include <QLoggingCategory>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using Platform::Image;
using Platform::ImageOrientation;

namespace
{

const QByteArray cmykJpeg =
    QByteArrayLiteral("/9j/7gAOQWRvYmUAZAAAAAAC/"
                      "9sAQwADAgICAgIDAgICAwMDAwQGBAQEBAQIBgYFBgkICgoJCAkJCgwPDAoLDgsJCQ0RDQ4PEBAREAoMEhMSEBMPEBAQ"
                      "/9sAQwEDAwMEAwQIBAQIEAsJCxAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQEBAQ"
                      "/8AAFAgABAAGBAERAAIR"
                      "AQMRAQQRAP/EABUAAQEAAAAAAAAAAAAAAAAAAAgJ/8QAFBABAAAAAAAAAAAAAAAAAAAAAP/"
                      "EABUBAQEAAAAAAAAAAAAAAAAAAAcJ/8QAFBEBAAAAAAAA"
                      "AAAAAAAAAAAAAP/aAA4EAQACEQMRBAAAPwA6AxVNVN//2Q==");
// Headers of 60,000 x 60,000 and of 0 x 5 pixels with a few bytes behind them.
const QByteArray hugePng =
    QByteArrayLiteral("iVBORw0KGgoAAAANSUhEUgAA6mAAAOpgAQAAAACoqUjvAAAADElEQVR4nGNgoD0AAABkAAGGZDw1AAAAAElFTkSuQmCC");
const QByteArray emptyPng =
    QByteArrayLiteral("iVBORw0KGgoAAAANSUhEUgAAAAAAAAAFAQAAAABDPdAMAAAADElEQVR4nGNgoD0AAABkAAGGZDw1AAAAAElFTkSuQmCC");
// Vector graphics of 8 x 8 points with nothing in them.
const QByteArray emptySvgz = QByteArrayLiteral(
    "H4sIAAAAAAACA7MpLktXqMjNySu2VcooKSmw0tcvLy/XKzfWyy9K1zcyMDDQB6pQUijPTCnJsFWyUFLISM1MzygBMfXtAL9Oldc+AAAA");

QImage sixteenBit()
{
    return TestImages::quarters({12, 8}).convertToFormat(QImage::Format_RGBA64);
}

} // namespace

class tst_Image : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsOrientation_data();
    void readsOrientation();
    void decodesAtSize_data();
    void decodesAtSize();
    void refusesWhatIsNoImage_data();
    void refusesWhatIsNoImage();
    void survivesDamage_data();
    void survivesDamage();
    void decodesOddFormats_data();
    void decodesOddFormats();
    void writesJpeg();
    void sizeIsInPoints();
    void isFoundByIdentifierWhileAlive();
    void isDrawnFromSeveralThreads();
};

void tst_Image::readsOrientation_data()
{
    QTest::addColumn<int>("exif");
    QTest::addColumn<ImageOrientation>("orientation");
    QTest::addColumn<QString>("upright"); // of a stored picture "rgbw"
    QTest::newRow("none") << 0 << ImageOrientation::Up << "rgbw";
    QTest::newRow("1") << 1 << ImageOrientation::Up << "rgbw";
    QTest::newRow("2") << 2 << ImageOrientation::UpMirrored << "grwb";
    QTest::newRow("3") << 3 << ImageOrientation::Down << "wbgr";
    QTest::newRow("4") << 4 << ImageOrientation::DownMirrored << "bwrg";
    QTest::newRow("5") << 5 << ImageOrientation::LeftMirrored << "rbgw";
    QTest::newRow("6") << 6 << ImageOrientation::Right << "brwg";
    QTest::newRow("7") << 7 << ImageOrientation::RightMirrored << "wgbr";
    QTest::newRow("8") << 8 << ImageOrientation::Left << "gwrb";
    QTest::newRow("out of range") << 9 << ImageOrientation::Up << "rgbw";
}

void tst_Image::readsOrientation()
{
    QFETCH(int, exif);
    QFETCH(QString, upright);
    const Image image = Image::withData(TestImages::jpeg(TestImages::quarters({64, 32}), exif));
    QTEST(image.orientation(), "orientation");
    QCOMPARE(image.bitmapSize(), QSize(64, 32));
    QCOMPARE(TestImages::seenIn(image.bitmap()), QStringLiteral("rgbw"));

    const QSize size = exif >= 5 && exif <= 8 ? QSize(32, 64) : QSize(64, 32);
    QCOMPARE(image.size(), QSizeF(size));
    QCOMPARE(image.upright().size(), size);
    QCOMPARE(TestImages::seenIn(image.upright()), upright);
    QCOMPARE(image.upright({30, 50}).size(), QSize(30, 50));
    QCOMPARE(TestImages::seenIn(image.upright({30, 50})), upright);
    QCOMPARE(TestImages::seenIn(Image::withData(image.jpegData(1.0)).bitmap()), upright);
}

void tst_Image::decodesAtSize_data()
{
    QTest::addColumn<Image>("image");
    const QImage picture = TestImages::quarters({80, 40});
    QTest::newRow("jpeg") << Image::withData(TestImages::jpeg(picture));
    QTest::newRow("png") << Image::withData(TestImages::png(picture));
    QTest::newRow("pixels") << Image(picture);
}

void tst_Image::decodesAtSize()
{
    QFETCH(Image, image);
    for (const QSize &size : {QSize(80, 40), QSize(40, 20), QSize(7, 33), QSize(200, 100)}) {
        QCOMPARE(image.bitmap(size).size(), size);
        QCOMPARE(TestImages::seenIn(image.bitmap(size)), QStringLiteral("rgbw"));
    }
    QVERIFY(image.bitmap({1'000'000, 1'000'000}).isNull());
    QVERIFY(image.bitmap({0, 10}).isNull());
}

void tst_Image::refusesWhatIsNoImage_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArrayLiteral("<html>no image</html>");
    QTest::newRow("only a signature") << TestImages::png(TestImages::quarters({8, 8})).left(8);
    const QByteArray svg = R"(<?xml version="1.0"?><svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"/>)";
    QTest::newRow("vector graphics") << svg;
    QTest::newRow("compressed vector graphics") << QByteArray::fromBase64(emptySvgz);
    QTest::newRow("no pixels") << QByteArray::fromBase64(emptyPng);
    QTest::newRow("3.6 thousand million pixels") << QByteArray::fromBase64(hugePng);
}

void tst_Image::refusesWhatIsNoImage()
{
    QFETCH(QByteArray, data);
    const Image image = Image::withData(data);
    QVERIFY(image.isNull());
    QCOMPARE(image.size(), QSizeF(0, 0));
    QVERIFY(image.upright().isNull());
    QVERIFY(image.jpegData(1.0).isEmpty());
}

void tst_Image::survivesDamage_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::newRow("jpeg") << TestImages::jpeg(TestImages::quarters({64, 64}), 6);
    QTest::newRow("png") << TestImages::png(TestImages::quarters({64, 64}));
}

// Whatever is cut off or overwritten, there is an image of the promised size or none.
void tst_Image::survivesDamage()
{
    QFETCH(QByteArray, data);
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
    for (qsizetype at = 1; at < data.size(); at += 7) {
        QByteArray overwritten = data;
        overwritten[at] = char(~overwritten[at]);
        for (const QByteArray &damaged : {data.left(at), overwritten}) {
            const QImage decoded = Image::withData(damaged).upright({16, 8});
            QVERIFY(decoded.isNull() || decoded.size() == QSize(16, 8));
        }
    }
    QLoggingCategory::setFilterRules({});
}

void tst_Image::decodesOddFormats_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QSize>("size");
    QTest::newRow("CMYK jpeg") << QByteArray::fromBase64(cmykJpeg) << QSize(6, 4);
    QTest::newRow("16-bit png") << TestImages::png(sixteenBit()) << QSize(12, 8);
    QTest::newRow("16-bit grey png") << TestImages::png(sixteenBit().convertToFormat(QImage::Format_Grayscale16))
                                     << QSize(12, 8);
    QTest::newRow("palette png") << TestImages::png(sixteenBit().convertToFormat(QImage::Format_Indexed8))
                                 << QSize(12, 8);
}

void tst_Image::decodesOddFormats()
{
    QFETCH(QByteArray, data);
    QFETCH(QSize, size);
    const Image image = Image::withData(data);
    QCOMPARE(image.bitmapSize(), size);
    QCOMPARE(image.bitmap().size(), size);
    QCOMPARE(image.bitmap(size / 2).size(), size / 2);
    QCOMPARE(QImage::fromData(image.jpegData(0.5)).size(), size);
}

void tst_Image::writesJpeg()
{
    QImage transparent = TestImages::quarters({64, 64}).convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x)
            transparent.setPixel(x, y, qRgba(255, 255, 255, 0));
    }
    QCOMPARE(TestImages::seenIn(QImage::fromData(Image(transparent).jpegData(1.0))), QStringLiteral("kgbw"));

    const Image grey(TestImages::quarters({64, 64}).convertToFormat(QImage::Format_Grayscale8));
    QCOMPARE(QImage::fromData(grey.jpegData(0.0)).format(), QImage::Format_Grayscale8);
    QVERIFY(grey.jpegData(0.0).size() < grey.jpegData(1.0).size());
    QCOMPARE(grey.jpegData(-3), grey.jpegData(0.0));
}

void tst_Image::sizeIsInPoints()
{
    const Image image(TestImages::quarters({60, 40}), 2.0, ImageOrientation::Left);
    QCOMPARE(image.bitmapSize(), QSize(60, 40));
    QCOMPARE(image.size(), QSizeF(20, 30));
    QCOMPARE(image.upright().size(), QSize(40, 60));
}

void tst_Image::isFoundByIdentifierWhileAlive()
{
    const Image other(TestImages::quarters({8, 8}));
    QString identifier;
    {
        const Image image(TestImages::quarters({8, 8}));
        identifier = image.identifier();
        QVERIFY(identifier != other.identifier());
        QVERIFY(!(image == other));
        QVERIFY(Image::withIdentifier(identifier) == image);
    }
    QVERIFY(Image::withIdentifier(identifier).isNull());
    QVERIFY(Image::withIdentifier({}).isNull());
}

void tst_Image::isDrawnFromSeveralThreads()
{
    const Image image = Image::withData(TestImages::jpeg(TestImages::quarters({320, 240}), 6));
    const QImage expected = image.upright({48, 64});
    std::atomic<int> equal = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = image, &expected, &equal] {
            for (int j = 0; j < 4; ++j) {
                const bool isFound = Image::withIdentifier(copy.identifier()) == copy;
                equal += isFound && copy.upright({48, 64}) == expected ? 1 : 0;
            }
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    QCOMPARE(equal.load(), 16);
}

QTEST_GUILESS_MAIN(tst_Image)
#include "tst_Image.moc"
