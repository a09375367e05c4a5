#include "Brevanto/Utils/ImageResizeAndCrop.h"
#include "Brevanto/Utils/ImageScale.h"
#include "support/TestImages.h"

#include <QColorSpace>
#include <QTest>

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
    void fixOrientation();
    void fixOrientationKeepsThePixels_data();
    void fixOrientationKeepsThePixels();
    void fixOrientationWorksInPoints();
    void scaleToSize_data();
    void scaleToSize();
    void scaleToSizeOfAPhoto_data();
    void scaleToSizeOfAPhoto();
    void convertImageToGrayScale();
    void convertImageToGrayScaleLeavesOrientation();
    void rotateByAngle_data();
    void rotateByAngle();
    void resizeToSize_data();
    void resizeToSize();
    void resizedPictureIsUpsideDown();
    void nothingComesOfNothing();
    void resizableButtonBackground();
};

void tst_ImageOperations::fixOrientation()
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

void tst_ImageOperations::fixOrientationKeepsThePixels_data()
{
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("grey") << QImage::Format_Grayscale8;
    QTest::newRow("palette") << QImage::Format_Indexed8;
    QTest::newRow("transparent") << QImage::Format_ARGB32;
    QTest::newRow("10 bits") << QImage::Format_A2RGB30_Premultiplied;
    QTest::newRow("16 bits") << QImage::Format_RGBA64;
    QTest::newRow("floating point") << QImage::Format_RGBA32FPx4;
}

void tst_ImageOperations::fixOrientationKeepsThePixels()
{
    QFETCH(QImage::Format, format);
    QImage stored = sixPixels().convertToFormat(format);
    stored.setColorSpace(QColorSpace::AdobeRgb);
    for (const ImageOrientation orientation : {ImageOrientation::Down, ImageOrientation::Right}) {
        const QImage fixed = scale::fixOrientation(Image(stored, 1.0, orientation)).bitmap();
        QCOMPARE(fixed.format(), format);
        QCOMPARE(fixed.colorSpace(), stored.colorSpace());
        QCOMPARE(fixed.pixelColor(0, 0), stored.pixelColor(orientation == ImageOrientation::Down ? 2 : 0, 1));
    }
}

void tst_ImageOperations::fixOrientationWorksInPoints()
{
    const Image image(TestImages::quarters({60, 40}), 2.0, ImageOrientation::Right);
    const Image fixed = scale::fixOrientation(image);
    QCOMPARE(fixed.bitmapSize(), QSize(20, 30));
    QCOMPARE(TestImages::seenIn(fixed.bitmap()), QStringLiteral("brwg"));
}

void tst_ImageOperations::scaleToSize_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::addColumn<QSize>("pixels");
    QTest::newRow("same") << QSizeF(60, 40) << QSize(60, 40);
    QTest::newRow("smaller") << QSizeF(30, 20) << QSize(30, 20);
    QTest::newRow("other aspect") << QSizeF(24, 48) << QSize(24, 48);
    QTest::newRow("larger") << QSizeF(120, 100) << QSize(120, 100);
    QTest::newRow("parts of pixels") << QSizeF(30.25, 19.5) << QSize(31, 20);
}

void tst_ImageOperations::scaleToSize()
{
    QFETCH(QSizeF, size);
    const Image image(TestImages::quarters({60, 40}), 2.0, ImageOrientation::Down);
    const Image scaled = scale::scaleToSize(image, size);
    QTEST(scaled.bitmapSize(), "pixels");
    QCOMPARE(scaled.scale(), 1.0);
    QCOMPARE(scaled.orientation(), ImageOrientation::Up);
    QCOMPARE(TestImages::seenIn(scaled.bitmap()), QStringLiteral("wbgr"));
}

void tst_ImageOperations::scaleToSizeOfAPhoto_data()
{
    QTest::addColumn<QSize>("stored");
    QTest::addColumn<int>("exif");
    QTest::addColumn<QString>("seen");
    QTest::newRow("stored upright") << QSize(3000, 4000) << 1 << "rgbw";
    QTest::newRow("stored on its side") << QSize(4000, 3000) << 6 << "brwg";
}

void tst_ImageOperations::scaleToSizeOfAPhoto()
{
    QFETCH(QSize, stored);
    QFETCH(int, exif);
    QFETCH(QString, seen);
    const Image photo = Image::withData(TestImages::jpeg(TestImages::quarters(stored), exif));
    QCOMPARE(photo.size(), QSizeF(3000, 4000));
    const Image grey = scale::convertImageToGrayScale(scale::scaleToSize(photo, {480, 640}));
    QCOMPARE(grey.bitmapSize(), QSize(480, 640));
    QCOMPARE(grey.bitmap().format(), QImage::Format_Grayscale8);

    const QString letters = QStringLiteral("rgbw");
    const QList<int> luma{76, 149, 29, 255};
    const QImage sent = QImage::fromData(grey.jpegData(0.0));
    QCOMPARE(sent.format(), QImage::Format_Grayscale8);
    for (int i = 0; i < 4; ++i) {
        const int expected = luma[letters.indexOf(seen[i])];
        const int actual = qGray(sent.pixel(120 + 240 * (i % 2), 160 + 320 * (i / 2)));
        QVERIFY2(qAbs(actual - expected) < 20, qPrintable(QStringLiteral("%1: %2").arg(i).arg(actual)));
    }
}

void tst_ImageOperations::convertImageToGrayScale()
{
    QImage image(5, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(255, 255, 255, 0));
    image.setPixel(1, 0, qRgba(255, 255, 255, 128));
    image.setPixel(2, 0, qRgba(255, 0, 0, 255));
    image.setPixel(3, 0, qRgba(0, 255, 0, 255));
    image.setPixel(4, 0, qRgba(0, 0, 255, 255));
    const QImage grey = scale::convertImageToGrayScale(Image(image)).bitmap();
    QCOMPARE(grey.format(), QImage::Format_Grayscale8);
    QList<int> values;
    for (int x = 0; x < grey.width(); ++x)
        values += grey.constScanLine(0)[x];
    QCOMPARE(values, QList<int>({0, 128, 77, 149, 29}));
}

void tst_ImageOperations::convertImageToGrayScaleLeavesOrientation()
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

void tst_ImageOperations::rotateByAngle_data()
{
    QTest::addColumn<double>("angle");
    QTest::addColumn<QString>("pixels");
    QTest::newRow("0: below the box") << 0.0 << "--- ---";
    QTest::newRow("90: fills the box") << 90.0 << "30 41 52";
    QTest::newRow("180: right of the box") << 180.0 << "--- ---";
    QTest::newRow("270: right of and below the box") << 270.0 << "-- -- --";
    QTest::newRow("-270: as 90") << -270.0 << "30 41 52";
    QTest::newRow("450: as 90") << 450.0 << "30 41 52";
}

void tst_ImageOperations::rotateByAngle()
{
    QFETCH(double, angle);
    QTEST(order(scale::rotateByAngle(turned(ImageOrientation::Up), angle).bitmap()), "pixels");

    // At 45 degrees the box is as wide as the sides' sum over the square root of two; the picture's corner with the
    // first pixel stands on the middle of its lower half.
    const QImage slanted = scale::rotateByAngle(Image(TestImages::quarters({100, 100})), 45).bitmap();
    QCOMPARE(slanted.size(), QSize(142, 142));
}

void tst_ImageOperations::resizeToSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSizeF>("target");
    QTest::addColumn<QRectF>("crop");
    QTest::addColumn<QSize>("result");
    const QSizeF hundred(100, 100);
    QTest::newRow("clamped crop") << QSize(400, 200) << hundred << QRectF(0, 40, 100, 100) << QSize(100, 10);
    QTest::newRow("crop below") << QSize(400, 200) << hundred << QRectF(0, 50, 100, 100) << QSize(100, 50);
    QTest::newRow("crop beside") << QSize(400, 200) << hundred << QRectF(100, 0, 10, 10) << QSize(100, 50);
    QTest::newRow("crop inside") << QSize(400, 200) << hundred << QRectF(10, 20, 30, 15) << QSize(30, 15);
    QTest::newRow("empty crop") << QSize(400, 200) << hundred << QRectF(10, 20, 0, 0) << QSize(100, 50);
    QTest::newRow("crop from outside") << QSize(400, 200) << hundred << QRectF(-10, -10, 30, 30) << QSize(20, 20);
    QTest::newRow("crop of parts of pixels") << QSize(400, 200) << hundred << QRectF(.5, .5, 2, 2) << QSize(3, 3);
    QTest::newRow("by height") << QSize(200, 400) << hundred << QRectF(0, 0, 500, 500) << QSize(50, 100);
    QTest::newRow("rounded width") << QSize(333, 1000) << hundred << QRectF(0, 0, 500, 500) << QSize(33, 100);
    QTest::newRow("rounded height") << QSize(1000, 335) << hundred << QRectF(0, 0, 500, 500) << QSize(100, 34);
    QTest::newRow("enlarged") << QSize(10, 20) << QSizeF(40, 40) << QRectF(0, 0, 40, 40) << QSize(20, 40);
}

void tst_ImageOperations::resizeToSize()
{
    QFETCH(QSize, size);
    QFETCH(QSizeF, target);
    QFETCH(QRectF, crop);
    const Image image(TestImages::quarters(size));
    QTEST(resizeAndCropExample::resizeToSize(image, target, crop).bitmapSize(), "result");
}

void tst_ImageOperations::resizedPictureIsUpsideDown()
{
    const Image image(TestImages::quarters({40, 20}));
    const Image whole = resizeAndCropExample::resizeToSize(image, {20, 20}, QRectF(0, 0, 20, 20));
    QCOMPARE(TestImages::seenIn(whole.bitmap()), QStringLiteral("bwrg"));
    const Image cut = resizeAndCropExample::resizeToSize(image, {20, 20}, QRectF(0, 5, 10, 5));
    QCOMPARE(TestImages::seenIn(cut.bitmap()), QStringLiteral("rrrr"));
}

void tst_ImageOperations::nothingComesOfNothing()
{
    const Image undecodable = Image::withData(TestImages::png(TestImages::quarters({64, 64})).chopped(30));
    QVERIFY(!undecodable.isNull());
    for (const Image &image : {Image(), undecodable}) {
        QVERIFY(scale::scaleToSize(image, {10, 10}).isNull());
        QVERIFY(scale::convertImageToGrayScale(image).isNull());
        QVERIFY(scale::rotateByAngle(image, 30).isNull());
        QVERIFY(resizeAndCropExample::resizeToSize(image, {10, 10}, QRectF(0, 0, 5, 5)).isNull());
    }
    const Image image(sixPixels());
    for (const QSizeF &size : {QSizeF(0, 10), QSizeF(-5, 5), QSizeF(1e9, 1e9)}) {
        QVERIFY(scale::scaleToSize(image, size).isNull());
        QVERIFY(resizeAndCropExample::resizeToSize(image, size, QRectF(0, 0, 5, 5)).isNull());
    }
    QVERIFY(scale::scaleToSize(image, {2e6, 50}).isNull());
}

void tst_ImageOperations::resizableButtonBackground()
{
    const scale::ResizableImage background = scale::resizableButtonBackground();
    QCOMPARE(background.capInsets, QMarginsF(5, 10, 5, 10));
    QVERIFY(background.image.size().width() > 10);
    QVERIFY(background.image.size().height() > 20);
}

QTEST_GUILESS_MAIN(tst_ImageOperations)
#include "tst_ImageOperations.moc"
