#include "Platform/Graphics/Image.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include <QLoggingCategory>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using Platform::Image;
using Platform::ImageOrientation;

namespace
{

// The header of 60,000 x 60,000 pixels with a few bytes behind it.
const QByteArray hugePng =
    QByteArrayLiteral("iVBORw0KGgoAAAANSUhEUgAA6mAAAOpgAQAAAACoqUjvAAAADElEQVR4nGNgoD0AAABkAAGGZDw1AAAAAElFTkSuQmCC");
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
    void readsOrientation_data()
    {
        addColumns<int, ImageOrientation>("exif", "orientation");
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
    void readsOrientation()
    {
        QFETCH(int, exif);
        QFETCH(QString, upright);
        const Image image = Image::withData(TestImages::jpeg(TestImages::quarters({64, 32}), exif));
        QTEST(image.orientation(), "orientation");
        QCOMPARE(image.bitmapSize(), QSize(64, 32));
        QCOMPARE(TestImages::seenIn(image.bitmap()), u"rgbw"_s);

        const QSize size = exif >= 5 && exif <= 8 ? QSize(32, 64) : QSize(64, 32);
        QCOMPARE(image.size(), QSizeF(size));
        QCOMPARE(image.upright().size(), size);
        QCOMPARE(TestImages::seenIn(image.upright()), upright);
        QCOMPARE(image.upright({30, 50}).size(), QSize(30, 50));
        QCOMPARE(TestImages::seenIn(image.upright({30, 50})), upright);
        QCOMPARE(TestImages::seenIn(Image::withData(image.jpegData(1.0)).bitmap()), upright);
    }

    void decodesAtSize()
    {
        const QImage picture = TestImages::quarters({80, 40});
        for (const Image &image :
             {Image::withData(TestImages::jpeg(picture)), Image::withData(TestImages::png(picture)), Image(picture)}) {
            for (const QSize &size : {QSize(80, 40), QSize(40, 20), QSize(7, 33), QSize(200, 100)}) {
                QCOMPARE(image.bitmap(size).size(), size);
                QCOMPARE(TestImages::seenIn(image.bitmap(size)), u"rgbw"_s);
            }
            QVERIFY(image.bitmap({1'000'000, 1'000'000}).isNull());
            QVERIFY(image.bitmap({0, 10}).isNull());
        }
        const Image retina(TestImages::quarters({60, 40}), 2.0, ImageOrientation::Left);
        QCOMPARE(retina.size(), QSizeF(20, 30)); // in points
        QCOMPARE(retina.upright().size(), QSize(40, 60));
    }

    void refusesWhatIsNoImage_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("text") << QByteArrayLiteral("<html>no image</html>");
        QTest::newRow("only a signature") << TestImages::png(TestImages::quarters({8, 8})).left(8);
        const QByteArray svg = R"(<?xml version="1.0"?><svg xmlns="http://www.w3.org/2000/svg" width="8" height="8"/>)";
        QTest::newRow("vector graphics") << svg;
        QTest::newRow("compressed vector graphics") << QByteArray::fromBase64(emptySvgz);
        QTest::newRow("no pixels") << TestImages::emptyPng();
        QTest::newRow("3.6 thousand million pixels") << QByteArray::fromBase64(hugePng);
    }
    void refusesWhatIsNoImage()
    {
        QFETCH(QByteArray, data);
        const Image image = Image::withData(data);
        QVERIFY(image.isNull());
        QCOMPARE(image.size(), QSizeF(0, 0));
        QVERIFY(image.upright().isNull());
        QVERIFY(image.jpegData(1.0).isEmpty());
    }

    void survivesDamage()
    {
        QLoggingCategory::setFilterRules(u"qt.gui.imageio*=false"_s);
        for (const QByteArray &data :
             {TestImages::jpeg(TestImages::quarters({64, 64}), 6), TestImages::png(TestImages::quarters({64, 64}))}) {
            for (qsizetype at = 1; at < data.size(); at += 7) {
                QByteArray overwritten = data;
                overwritten[at] = char(~overwritten[at]);
                for (const QByteArray &damaged : {data.left(at), overwritten}) {
                    const QImage decoded = Image::withData(damaged).upright({16, 8});
                    QVERIFY(decoded.isNull() || decoded.size() == QSize(16, 8));
                }
            }
        }
        QLoggingCategory::setFilterRules({});
    }

    void decodesOddFormats_data()
    {
        addColumns<QByteArray, QSize>("data", "size");
        QTest::newRow("CMYK jpeg") << TestImages::cmykJpeg() << QSize(6, 4);
        QTest::newRow("16-bit png") << TestImages::png(sixteenBit()) << QSize(12, 8);
        QTest::newRow("16-bit grey png") << TestImages::png(sixteenBit().convertToFormat(QImage::Format_Grayscale16))
                                         << QSize(12, 8);
        QTest::newRow("palette png") << TestImages::png(sixteenBit().convertToFormat(QImage::Format_Indexed8))
                                     << QSize(12, 8);
    }
    void decodesOddFormats()
    {
        QFETCH(QByteArray, data);
        QFETCH(QSize, size);
        const Image image = Image::withData(data);
        QCOMPARE(image.bitmapSize(), size);
        QCOMPARE(image.bitmap().size(), size);
        QCOMPARE(image.bitmap(size / 2).size(), size / 2);
        QCOMPARE(QImage::fromData(image.jpegData(0.5)).size(), size);
    }

    void writesJpeg()
    {
        QImage transparent = TestImages::quarters({64, 64}).convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 32; ++x)
                transparent.setPixel(x, y, qRgba(255, 255, 255, 0));
        }
        QCOMPARE(TestImages::seenIn(QImage::fromData(Image(transparent).jpegData(1.0))), u"kgbw"_s);

        const Image grey(TestImages::quarters({64, 64}).convertToFormat(QImage::Format_Grayscale8));
        QCOMPARE(QImage::fromData(grey.jpegData(0.0)).format(), QImage::Format_Grayscale8);
        QVERIFY(grey.jpegData(0.0).size() < grey.jpegData(1.0).size());
        QCOMPARE(grey.jpegData(-3), grey.jpegData(0.0));
    }

    void isFoundByIdentifierWhileAlive()
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

    void isDrawnFromSeveralThreads()
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
};

QTEST_GUILESS_MAIN(tst_Image)
#include "tst_Image.moc"
