#include "Brevanto/Utils/ImageResizeAndCrop.h"
#include "Brevanto/Utils/ImageScale.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include <QColorSpace>
#include <QTest>

using namespace Qt::StringLiterals;
using Platform::Image;
using Platform::ImageOrientation;

namespace
{

// Six pixels, all different, three wide and two high.
QImage sixPixels()
{
    QImage image(3, 2, QImage::Format_RGB32);
    for (int i = 0; i < 6; ++i)
        image.setPixel(i % 3, i / 3, qRgb(40 * i, 255 - 40 * i, 7 * i));
    return image;
}

Image turned(ImageOrientation orientation)
{
    return Image(sixPixels(), 1.0, orientation);
}

// The pixels of an image as numbers of sixPixels(), row by row; '-' transparent, '?' any other colour.
QString order(const QImage &image)
{
    QStringList rows;
    for (int y = 0; y < image.height(); ++y) {
        QString row;
        for (int x = 0; x < image.width(); ++x) {
            QChar letter = image.pixelColor(x, y).alpha() == 0 ? QLatin1Char('-') : QLatin1Char('?');
            for (int i = 0; i < 6; ++i) {
                if (image.pixel(x, y) == sixPixels().pixel(i % 3, i / 3))
                    letter = QLatin1Char(char('0' + i));
            }
            row += letter;
        }
        rows += row;
    }
    return rows.join(QLatin1Char(' '));
}

void addOrientations()
{
    QTest::addColumn<ImageOrientation>("orientation");
    QTest::addColumn<QString>("upright"); // of the stored rows 012 345
    QTest::newRow("up") << ImageOrientation::Up << "012 345";
    QTest::newRow("down") << ImageOrientation::Down << "543 210";
    QTest::newRow("left") << ImageOrientation::Left << "25 14 03";
    QTest::newRow("right") << ImageOrientation::Right << "30 41 52";
    QTest::newRow("up mirrored") << ImageOrientation::UpMirrored << "210 543";
    QTest::newRow("down mirrored") << ImageOrientation::DownMirrored << "345 012";
    QTest::newRow("left mirrored") << ImageOrientation::LeftMirrored << "03 14 25";
    QTest::newRow("right mirrored") << ImageOrientation::RightMirrored << "52 41 30";
}

} // namespace

class tst_ImageOperations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fixOrientation_data() { addOrientations(); }

    void fixOrientation()
    {
        QFETCH(ImageOrientation, orientation);
        const Image image = turned(orientation);
        const Image fixed = scale::fixOrientation(image);
        QTEST(order(fixed.bitmap()), "upright");
        QCOMPARE(fixed.orientation(), ImageOrientation::Up);
        QCOMPARE(fixed.size(), image.size());
        QCOMPARE(fixed == image, orientation == ImageOrientation::Up);
        const Image drawn = scale::scaleToSize(image, image.size());
        QTEST(order(drawn.bitmap()), "upright");
        QCOMPARE(drawn.orientation(), ImageOrientation::Up);
    }

    void fixOrientationKeepsThePixels()
    {
        for (const auto format :
             {QImage::Format_Grayscale8, QImage::Format_Indexed8, QImage::Format_ARGB32,
              QImage::Format_A2RGB30_Premultiplied, QImage::Format_RGBA64, QImage::Format_RGBA32FPx4}) {
            QImage stored = sixPixels().convertToFormat(format);
            stored.setColorSpace(QColorSpace::AdobeRgb);
            for (const ImageOrientation orientation : {ImageOrientation::Down, ImageOrientation::Right}) {
                const QImage fixed = scale::fixOrientation(Image(stored, 1.0, orientation)).bitmap();
                QCOMPARE(fixed.format(), format);
                QCOMPARE(fixed.colorSpace(), stored.colorSpace());
                QCOMPARE(fixed.pixelColor(0, 0), stored.pixelColor(orientation == ImageOrientation::Down ? 2 : 0, 1));
            }
        }
        // It works in points.
        const Image retina(TestImages::quarters({60, 40}), 2.0, ImageOrientation::Right);
        QCOMPARE(scale::fixOrientation(retina).bitmapSize(), QSize(20, 30));
        QCOMPARE(TestImages::seenIn(scale::fixOrientation(retina).bitmap()), u"brwg"_s);
    }

    void scaleToSize_data()
    {
        addColumns<QSizeF, QSize>("size", "pixels");
        QTest::newRow("same") << QSizeF(60, 40) << QSize(60, 40);
        QTest::newRow("smaller") << QSizeF(30, 20) << QSize(30, 20);
        QTest::newRow("other aspect") << QSizeF(24, 48) << QSize(24, 48);
        QTest::newRow("larger") << QSizeF(120, 100) << QSize(120, 100);
        QTest::newRow("parts of pixels") << QSizeF(30.25, 19.5) << QSize(31, 20);
    }
    void scaleToSize()
    {
        QFETCH(QSizeF, size);
        const Image image(TestImages::quarters({60, 40}), 2.0, ImageOrientation::Down);
        const Image scaled = scale::scaleToSize(image, size);
        QTEST(scaled.bitmapSize(), "pixels");
        QCOMPARE(scaled.scale(), 1.0);
        QCOMPARE(scaled.orientation(), ImageOrientation::Up);
        QCOMPARE(TestImages::seenIn(scaled.bitmap()), u"wbgr"_s);
    }

    void convertImageToGrayScale()
    {
        const std::pair<QRgb, int> greys[] = {{qRgba(255, 255, 255, 0), 0},
                                              {qRgba(255, 255, 255, 128), 128},
                                              {qRgb(255, 0, 0), 77},
                                              {qRgb(0, 255, 0), 149},
                                              {qRgb(0, 0, 255), 29}};
        for (const auto &[color, value] : greys) {
            QImage image(1, 1, QImage::Format_ARGB32);
            image.setPixel(0, 0, color);
            const QImage grey = scale::convertImageToGrayScale(Image(image)).bitmap();
            QCOMPARE(grey.format(), QImage::Format_Grayscale8);
            QCOMPARE(int(grey.constScanLine(0)[0]), value);
        }
    }

    void convertImageToGrayScaleLeavesOrientation()
    {
        const QImage stored = TestImages::quarters({60, 40}).convertToFormat(QImage::Format_Grayscale8);
        const Image grey = scale::convertImageToGrayScale(Image(stored, 1.0, ImageOrientation::Right));
        QCOMPARE(grey.bitmapSize(), QSize(40, 60));
        QCOMPARE(grey.orientation(), ImageOrientation::Up);
        for (const QPointF &quarter : {QPointF(.25, .25), QPointF(.75, .25), QPointF(.25, .75), QPointF(.75, .75)}) {
            const auto at = [quarter](const QImage &image) {
                return image.pixel(int(quarter.x() * image.width()), int(quarter.y() * image.height()));
            };
            QCOMPARE(at(grey.bitmap()), at(stored));
        }
        // 61 x 41 pixels at scale 2: 30.5 x 20.5 points, cut to whole ones.
        const Image odd(TestImages::quarters({61, 41}), 2.0);
        QCOMPARE(scale::convertImageToGrayScale(odd).bitmapSize(), QSize(30, 20));
    }

    // As in colours first and grey afterwards.
    void uprightLuma_data()
    {
        addColumns<QSize, int, QSize>("stored", "exifOrientation", "size");
        QTest::newRow("a quarter is decoded") << QSize(640, 480) << 1 << QSize(112, 84);
        QTest::newRow("a quarter, turned") << QSize(480, 640) << 6 << QSize(112, 84);
        QTest::newRow("parts of pixels decoded") << QSize(645, 483) << 1 << QSize(112, 84);
        QTest::newRow("other aspect, mirrored") << QSize(640, 480) << 7 << QSize(30, 300);
        QTest::newRow("as decoded") << QSize(640, 480) << 3 << QSize(160, 120);
        QTest::newRow("as stored") << QSize(64, 48) << 1 << QSize(64, 48);
        QTest::newRow("wider, less high") << QSize(64, 48) << 1 << QSize(90, 20);
        QTest::newRow("larger") << QSize(64, 48) << 8 << QSize(90, 100);
        QTest::newRow("one pixel") << QSize(640, 480) << 1 << QSize(1, 1);
    }
    void uprightLuma()
    {
        QFETCH(QSize, stored);
        QFETCH(int, exifOrientation);
        QFETCH(QSize, size);
        QImage picture = TestImages::quarters(stored);
        for (int y = 0; y < stored.height(); ++y) {
            for (int x = 0; x < stored.width() / 2; ++x)
                picture.setPixelColor(x, y, QColor(255 * x / stored.width(), 255 * y / stored.height(), 40));
        }
        const Image photo = Image::withData(TestImages::jpeg(picture, exifOrientation));
        const QImage expected = scale::convertImageToGrayScale(scale::scaleToSize(photo, size)).bitmap();
        const QImage luma = photo.uprightLuma(size);
        QCOMPARE(luma.format(), QImage::Format_Grayscale8);
        QCOMPARE(luma.size(), size);
        int furthest = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x)
                furthest = qMax(furthest, qAbs(qGray(luma.pixel(x, y)) - qGray(expected.pixel(x, y))));
        }
        QVERIFY2(furthest <= 3, qPrintable(QString::number(furthest)));
    }

    void rotateByAngle()
    {
        const std::pair<double, QString> turns[] = {{0, u"--- ---"_s}, // below the box
                                                    {90, u"30 41 52"_s},   {180, u"--- ---"_s}, // right of the box
                                                    {270, u"-- -- --"_s}, // right of and below it
                                                    {-270, u"30 41 52"_s}, {450, u"30 41 52"_s}};
        for (const auto &[angle, pixels] : turns)
            QCOMPARE(order(scale::rotateByAngle(turned(ImageOrientation::Up), angle).bitmap()), pixels);
        // At 45 degrees the box is as wide as the sides' sum over the square root of two.
        const Image slanted = scale::rotateByAngle(Image(TestImages::quarters({100, 100})), 45);
        QCOMPARE(slanted.bitmapSize(), QSize(142, 142));
    }

    void resizeToSize_data()
    {
        addColumns<QSize, QRectF, QSize>("size", "crop", "result"); // of a picture fitted into 100 by 100
        const QSize wide(400, 200);
        const QRectF whole(0, 0, 500, 500);
        QTest::newRow("clamped crop") << wide << QRectF(0, 40, 100, 100) << QSize(100, 10);
        QTest::newRow("crop below") << wide << QRectF(0, 50, 100, 100) << QSize(100, 50);
        QTest::newRow("crop beside") << wide << QRectF(100, 0, 10, 10) << QSize(100, 50);
        QTest::newRow("crop inside") << wide << QRectF(10, 20, 30, 15) << QSize(30, 15);
        QTest::newRow("empty crop") << wide << QRectF(10, 20, 0, 0) << QSize(100, 50);
        QTest::newRow("crop from outside") << wide << QRectF(-10, -10, 30, 30) << QSize(20, 20);
        QTest::newRow("crop of parts of pixels") << wide << QRectF(.5, .5, 2, 2) << QSize(3, 3);
        QTest::newRow("rounded width") << QSize(333, 1000) << whole << QSize(33, 100);
        QTest::newRow("rounded height") << QSize(1000, 335) << whole << QSize(100, 34);
        QTest::newRow("enlarged") << QSize(10, 20) << whole << QSize(50, 100);
    }
    void resizeToSize()
    {
        QFETCH(QSize, size);
        QFETCH(QRectF, crop);
        const Image image(TestImages::quarters(size));
        QTEST(resizeAndCropExample::resizeToSize(image, {100, 100}, crop).bitmapSize(), "result");
    }

    void resizedPictureIsUpsideDown()
    {
        const Image image(TestImages::quarters({40, 20}));
        const Image whole = resizeAndCropExample::resizeToSize(image, {20, 20}, QRectF(0, 0, 20, 20));
        QCOMPARE(TestImages::seenIn(whole.bitmap()), u"bwrg"_s);
        const Image cut = resizeAndCropExample::resizeToSize(image, {20, 20}, QRectF(0, 5, 10, 5));
        QCOMPARE(TestImages::seenIn(cut.bitmap()), u"rrrr"_s);
    }

    void nothingComesOfNothing()
    {
        const Image undecodable = Image::withData(TestImages::png(TestImages::quarters({64, 64})).chopped(30));
        QVERIFY(!undecodable.isNull());
        for (const Image &image : {Image(), undecodable}) {
            QVERIFY(scale::scaleToSize(image, {10, 10}).isNull());
            QVERIFY(scale::convertImageToGrayScale(image).isNull());
            QVERIFY(image.uprightLuma({10, 10}).isNull());
            QVERIFY(scale::rotateByAngle(image, 30).isNull());
            QVERIFY(resizeAndCropExample::resizeToSize(image, {10, 10}, QRectF(0, 0, 5, 5)).isNull());
        }
        for (const QSizeF &size : {QSizeF(0, 10), QSizeF(-5, 5), QSizeF(1e9, 1e9)}) {
            QVERIFY(scale::scaleToSize(Image(sixPixels()), size).isNull());
            QVERIFY(resizeAndCropExample::resizeToSize(Image(sixPixels()), size, QRectF(0, 0, 5, 5)).isNull());
        }
        QVERIFY(scale::scaleToSize(Image(sixPixels()), {2e6, 50}).isNull());
    }
};

QTEST_GUILESS_MAIN(tst_ImageOperations)
#include "tst_ImageOperations.moc"
