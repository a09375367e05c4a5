#include "support/ImageBombs.h"
#include "support/MemoryWatch.h"
#include "support/Table.h"
#include "support/TestImages.h"
#include "support/TestWindow.h"

#include "Platform/Interface/ActivityIndicator.h"
#include "Platform/Interface/ImageView.h"
#include "Platform/Interface/TapRecognizer.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Platform::ActivityIndicator;
using Platform::ActivityIndicatorStyle;
using Platform::ContentMode;
using Platform::Image;
using Platform::ImageView;

class tst_ImageView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_window = std::make_unique<TestWindow>(); }

    void cleanup() { m_window.reset(); }

    void placesTheImage_data()
    {
        addColumns<ContentMode, QSize>("mode", "image");
        QTest::addColumn<QRect>("part"); // that the whole image fills
        QTest::addColumn<QPoint>("outside"); // a point of the view's that the image leaves out; null: none
        QTest::newRow("fill") << ContentMode::ScaleToFill << QSize(200, 100) << QRect(0, 0, 200, 200) << QPoint();
        QTest::newRow("fit") << ContentMode::ScaleAspectFit << QSize(400, 200) << QRect(0, 50, 200, 100)
                             << QPoint(100, 20);
        QTest::newRow("aspect fill") << ContentMode::ScaleAspectFill << QSize(400, 200) << QRect(0, 0, 200, 200)
                                     << QPoint();
        QTest::newRow("centre") << ContentMode::Center << QSize(60, 40) << QRect(70, 80, 60, 40) << QPoint(50, 100);
    }
    void placesTheImage()
    {
        QFETCH(ContentMode, mode);
        QFETCH(QSize, image);
        QFETCH(QRect, part);
        QFETCH(QPoint, outside);
        ImageView *view = add({0, 0, 200, 200});
        view->setClip(true);
        view->setContentMode(mode);
        view->setImage(Image::withData(TestImages::png(TestImages::quarters(image))));
        QTRY_VERIFY(view->isShowingImage());
        QTRY_COMPARE(seen(part), u"rgbw"_s);
        if (!outside.isNull())
            QCOMPARE(m_window->grab().pixelColor(outside), m_window->window()->color());
    }

    void decodesAtTheSizeDrawn()
    {
        ImageView *view = add({0, 0, 100, 50});
        view->setImage(Image::withData(TestImages::jpeg(TestImages::quarters({4000, 2000}))));
        QTRY_VERIFY(view->isShowingImage());
        const QQuickItem *picture = view->childItems().constFirst()->childItems().constFirst();
        const qreal ratio = m_window->window()->effectiveDevicePixelRatio();
        QCOMPARE(picture->property("sourceSize").toSize(), (QSizeF(100, 50) * ratio).toSize());
        QCOMPARE(picture->implicitWidth() * picture->implicitHeight() <= 100 * 50 * ratio * ratio, true);
        for (const qreal width : {120.0, 180.0, 300.0}) {
            view->setFrame({0, 0, width, width / 2});
            QCOMPARE(seen(view->frame().toRect()), u"rgbw"_s); // never blank meanwhile
        }
        const QQuickItem *finer = view->childItems().constFirst()->childItems().constLast();
        QTRY_COMPARE(finer->implicitWidth(), 300 * ratio);
        QCOMPARE(seen({0, 0, 300, 150}), u"rgbw"_s);
    }

    void showsTheImageSetLast()
    {
        ImageView *view = add({0, 0, 100, 100});
        QImage turned = TestImages::quarters({64, 64}).transformed(QTransform::fromScale(-1, 1));
        for (int round = 0; round < 5; ++round) {
            view->setImage(Image::withData(TestImages::jpeg(TestImages::quarters({3000, 3000}))));
            view->setImage(Image(turned));
        }
        QTRY_VERIFY(view->isShowingImage());
        QTRY_COMPARE(seen({0, 0, 100, 100}), u"grwb"_s);
        view->setImage({});
        QTRY_COMPARE(m_window->grab().pixelColor(50, 50), m_window->window()->color());
    }

    // Pictures from anywhere are decoded one after the other; the first of these would take minutes.
    void isNotHeldUpByAnotherPicture()
    {
        ImageView *endless = add({0, 0, 100, 100});
        endless->setImage(Image::withData(ImageBombs::gifThatNeverEnds(4'000'000)));
        m_window->grab();
        ImageView *own = add({100, 0, 100, 100});
        own->setImage(Image(TestImages::quarters({64, 64})));
        QTRY_VERIFY(own->isShowingImage());
        QVERIFY(!endless->isShowingImage());
        ImageView *view = add({0, 0, 100, 100});
        view->setImage(Image::withData(TestImages::png(TestImages::quarters({64, 64}))));
        delete endless;
        QTRY_VERIFY(view->isShowingImage());
    }

    void showsTheMiddleOfALongImage()
    {
        ImageView *view = add({0, 0, 200, 200});
        view->setContentMode(ContentMode::ScaleAspectFill);
        // Filling the view it would have hundreds of millions of pixels.
        view->setImage(Image::withData(TestImages::png(TestImages::quarters({200'000, 8}))));
        MemoryWatch memory;
        QTRY_VERIFY(view->isShowingImage());
        QVERIFY2(memory.growth() < 256 * MemoryWatch::mebibyte, QByteArray::number(memory.growth()));
    }

    void showsNothingWithoutAnImage()
    {
        const QByteArray jpeg = TestImages::jpeg(TestImages::quarters({500, 500}));
        for (const QByteArray &bytes : {QByteArray(), QByteArray("<html>"), jpeg.left(jpeg.size() / 20)}) {
            ImageView *view = add({0, 0, 100, 100});
            const QSignalSpy failures(view, &ImageView::imageFailed);
            view->setImage(Image::withData(bytes));
            QTRY_VERIFY(view->image().isNull() || !failures.isEmpty());
            m_window->grab();
            QVERIFY(!view->isShowingImage());
            // The next image comes all the same.
            view->setImage(Image(TestImages::quarters({10, 10})));
            QTRY_COMPARE(seen({0, 0, 100, 100}), u"rgbw"_s);
            delete view;
        }
    }

    void subviewsGetTouchesWhenAsked()
    {
        ImageView *view = add({0, 0, 100, 100});
        auto *marker = new Platform::View(QRectF(40, 40, 20, 20));
        view->addSubview(marker);
        int taps = 0;
        new Platform::TapRecognizer(marker, u"Marker"_s, [&](Platform::View *) { ++taps; });
        for (const bool isEnabled : {false, true}) {
            view->setUserInteractionEnabled(isEnabled);
            m_window->tap(QPointF(50, 50));
            QCOMPARE(taps, isEnabled ? 1 : 0);
        }
    }

    void indicatorTurnsAndHidesWhenStopped()
    {
        m_window->window()->setColor(QColor(0x40, 0x40, 0x48));
        const auto isSeen = [this] {
            return m_window->grab().copy(80, 80, 40, 40) != m_window->grab().copy(180, 80, 40, 40);
        };
        for (const auto style : {ActivityIndicatorStyle::White, ActivityIndicatorStyle::WhiteLarge}) {
            ActivityIndicator indicator(style);
            indicator.setParentItem(m_window->window()->contentItem());
            const qreal size = style == ActivityIndicatorStyle::White ? 20 : 37;
            QCOMPARE(indicator.frame(), QRectF(0, 0, size, size));
            indicator.setCenter({100, 100});
            QVERIFY(!isSeen());
            indicator.startAnimating();
            QTRY_VERIFY(isSeen());
            indicator.stopAnimating();
            QVERIFY(!isSeen());
            indicator.setHidesWhenStopped(false);
            QVERIFY(!indicator.isHidden());
        }
    }

private:
    ImageView *add(const QRectF &frame)
    {
        auto *view = new ImageView(frame);
        view->setParent(m_window->window());
        view->setParentItem(m_window->window()->contentItem());
        return view;
    }

    // The colours of the quarters of a part of the window.
    QString seen(const QRect &part) const { return TestImages::seenIn(m_window->grab().copy(part)); }

    std::unique_ptr<TestWindow> m_window;
};

QTEST_MAIN(tst_ImageView)
#include "tst_ImageView.moc"
