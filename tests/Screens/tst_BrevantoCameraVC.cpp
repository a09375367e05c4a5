#include "CameraScreen.h"

#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Interface/ImageView.h"
#include "Platform/Interface/ShapeLayer.h"
#include "Platform/Interface/Window.h"
#include "support/FakeOpener.h"
#include "support/Table.h"

#include <QFontMetricsF>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Platform::CaptureAuthorizationStatus;

namespace
{

const QStringList controls = {u"captureButton"_s, u"recentsButton"_s, u"flashButton"_s, u"infoButton"_s,
                              u"closeButton"_s};

QRectF inWindow(const QQuickItem *item)
{
    return item->mapRectToScene(item->boundingRect());
}

// White pixels on the middle of the guide's left edge.
int guidePixels(CameraScreen &camera)
{
    const QRectF guide = inWindow(camera.item(u"dashedView"_s));
    const QImage shot = camera.window.grab();
    int white = 0;
    for (int y = int(guide.top()) + 10; y < int(guide.bottom()) - 10; ++y)
        white += qGray(shot.pixel(int(guide.left()), y)) > 200 ? 1 : 0;
    return white;
}

} // namespace

class tst_BrevantoCameraVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void preparesTheCamera()
    {
        const FakePermission permission(CaptureAuthorizationStatus::Denied); // which this camera does not need
        CameraScreen camera;
        camera.open();
        QTRY_VERIFY(camera.camera->isDelivering());
        QCOMPARE(camera.camera->mode, Platform::CaptureFlashMode::Off);
        QCOMPARE(camera.camera->focus, Platform::CaptureFocusMode::ContinuousAutoFocus);
        QCOMPARE(camera.camera->preset, Platform::CaptureSessionPreset::Photo);
        QCOMPARE(kScreenWidth, 390.0);
        QCOMPARE(kScreenHeight, 844.0);
        QVERIFY(Platform::Application::isStatusBarHidden());
        QVERIFY(camera.navigation->isNavigationBarHidden());
        QVERIFY(!camera.item(u"blurView"_s)->isVisible());
        QVERIFY(!camera.item(u"spinnerView"_s)->isVisible());
    }

    void asksForPermission_data()
    {
        QTest::addColumn<CaptureAuthorizationStatus>("status");
        QTest::addColumn<QString>("alert"); // none: it is granted, at last
        QTest::addColumn<QString>("button"); // to leave by
        using Status = CaptureAuthorizationStatus;
        const QString denied = u"Camera Disabled|Enable in Settings|Cancel/1|Settings/0"_s;
        QTest::newRow("granted") << Status::Authorized << QString() << QString();
        QTest::newRow("user agrees") << Status::NotDetermined << QString() << QString();
        QTest::newRow("user declines") << Status::NotDetermined << denied << u"Cancel"_s;
        QTest::newRow("restricted") << Status::Restricted << u"Zovra|Access for Camera is restricted|Ok/0"_s << u"Ok"_s;
        QTest::newRow("denied") << Status::Denied << denied << u"Cancel"_s;
        QTest::newRow("settings") << Status::Denied << denied << u"Settings"_s;
    }
    void asksForPermission()
    {
        QFETCH(CaptureAuthorizationStatus, status);
        QFETCH(QString, alert);
        QFETCH(QString, button);
        const bool granted = alert.isEmpty();
        FakePermission permission(status);
        const FakeOpener system;
        CameraScreen camera;
        camera.camera->needsPermission = true;
        camera.open();
        if (status == CaptureAuthorizationStatus::NotDetermined) {
            QTRY_COMPARE(permission.questions.size(), std::size_t(1));
            // Nobody has refused anything yet.
            camera.tap(u"captureButton"_s);
            QTest::qWait(0);
            QVERIFY(!camera.alert() && !camera.camera->isOpen);
            QVERIFY(camera.item(u"captureButton"_s)->isEnabled());
            permission.answer(granted);
        }
        QTRY_COMPARE(camera.alert() != nullptr, !granted);
        QCOMPARE(camera.item(u"captureButton"_s)->isEnabled(), granted);
        QCOMPARE(camera.item(u"flashButton"_s)->isEnabled(), granted);
        if (granted) {
            QTRY_VERIFY(camera.camera->isDelivering());
            QCOMPARE(camera.camera->mode, Platform::CaptureFlashMode::Off);
            QVERIFY(camera.shoot());
            return;
        }
        QCOMPARE(camera.camera->startCount, 0);
        QCOMPARE(camera.alertText(), alert);
        QVERIFY(camera.choose(button));
        QTRY_VERIFY(!camera.navigation && !camera.screen);
        QVERIFY(!camera.window.root()->presentedViewController());
        QCOMPARE(system.opened.size(), button == u"Settings"_s ? 1 : 0);
    }

    void livesWithoutCamera()
    {
        CameraScreen camera;
        Platform::CaptureDevice::unregisterDevice(camera.camera);
        if (BrevantoCameraVC::getBackCam())
            QSKIP("This machine has a camera");
        camera.open();
        camera.tap(u"flashButton"_s);
        camera.screen->pinched(BrevantoCameraVC::Began, 1.0);
        camera.screen->pinched(BrevantoCameraVC::Changed, 2.0);
        camera.tap(u"captureButton"_s);
        QTRY_COMPARE(camera.alertTitle(), u"Camera Disabled"_s);
        QVERIFY(!camera.item(u"captureButton"_s)->isEnabled());
        QVERIFY(camera.choose(u"Cancel"_s));
        QVERIFY(camera.isOpen());
    }

    void switchesTheFlash_data()
    {
        addColumns<bool, bool>("hasFlash", "refuses");
        QTest::addColumn<QString>("course"); // per tap: the button selected, the flash on
        QTest::newRow("on and off") << true << false << "sf -- sf";
        QTest::newRow("no flash") << false << false << "-- -- --";
        QTest::newRow("refused") << true << true << "s- s- s-";
    }
    void switchesTheFlash()
    {
        QFETCH(bool, hasFlash);
        QFETCH(bool, refuses);
        CameraScreen camera;
        camera.camera->flash = hasFlash;
        camera.camera->refusesConfiguration = refuses;
        camera.open();
        const QQuickItem *button = camera.item(u"flashButton"_s);
        QSignalSpy clicks(button, SIGNAL(clicked()));
        QStringList course;
        for (int taps = 1; taps <= 3; ++taps) {
            camera.tap(u"flashButton"_s);
            QTRY_COMPARE(clicks.count(), taps);
            course += QString(QLatin1Char(button->property("selected").toBool() ? 's' : '-'))
                + QLatin1Char(camera.camera->isFlashActive() ? 'f' : '-');
        }
        QTEST(course.join(QLatin1Char(' ')), "course");
        QVERIFY(button->isVisible());
        camera.screen->updateFlashButtonVisibility();
        QCOMPARE(button->isVisible(), hasFlash);
    }

    void pinches()
    {
        struct Pinch {
            qreal maximum; // of the device
            qreal from;
            qreal scale;
            qreal zoom;
        };
        CameraScreen camera;
        camera.open();
        for (const Pinch &pinch : {Pinch{8, 1.5, 2, 3}, Pinch{8, 4, 0.5, 2}, Pinch{8, 1, 0.8, 1},
                                   Pinch{8, 1, 5.999, 5.999}, Pinch{8, 2, 3, 2}, // six is the limit
                                   Pinch{4, 2, 1.9, 3.8}, Pinch{4, 2, 2, 2}}) { // the device's is lower
            camera.camera->maximumZoom = pinch.maximum;
            camera.camera->zoom = pinch.from;
            camera.screen->pinched(BrevantoCameraVC::Began, 1.0);
            camera.screen->pinched(BrevantoCameraVC::Changed, pinch.scale);
            camera.screen->pinched(BrevantoCameraVC::Ended, pinch.scale * 1.1);
            QCOMPARE(camera.camera->zoom, pinch.zoom);
        }
        camera.camera->maximumZoom = 8;
        camera.camera->zoom = 1;
        camera.window.pinch({195, 400}, 40, 120);
        QTRY_VERIFY(camera.camera->zoom > 1.5);
        QVERIFY(camera.camera->zoom < 3.5);
    }

    void zoomsByKeys()
    {
        CameraScreen camera;
        camera.open();
        const auto press = [&](Qt::Key key, int times) {
            for (int i = 0; i < times; ++i)
                QTest::keyClick(camera.window.window(), key);
            return camera.camera->zoom;
        };
        camera.camera->zoom = 1.1;
        QCOMPARE(press(Qt::Key_Minus, 2), 1.0);
        QCOMPARE(press(Qt::Key_Plus, 1), 1.25);
        QCOMPARE(press(Qt::Key_Equal, 1), 1.5625);
        const qreal most = press(Qt::Key_Plus, 20);
        QVERIFY(most > 4.5 && most < 6);
        QCOMPARE(press(Qt::Key_Minus, 20), 1.0);
    }

    void showsTheGuide()
    {
        CameraScreen camera;
        camera.open();
        QTest::qWait(0);
        QCOMPARE(guidePixels(camera), 0);
        camera.tap(u"infoButton"_s);
        QTRY_VERIFY(guidePixels(camera) > 0);
        // Ten points drawn, five left out.
        const qreal height = camera.item(u"dashedView"_s)->height() - 20;
        const qreal share = guidePixels(camera) / height;
        QVERIFY2(share > 0.55 && share < 0.8, qPrintable(QString::number(share)));
        QVERIFY(camera.item(u"infoButton"_s)->property("selected").toBool());

        const QQuickItem *dashed = camera.item(u"dashedView"_s);
        const auto *guide = dashed->findChild<Platform::ShapeLayer *>();
        const QSizeF portrait = guide->bounds().size();
        camera.window.window()->resize(844, 390);
        QTRY_VERIFY(guide->bounds().size() != portrait);
        QTRY_COMPARE(guide->bounds().size(), dashed->size());
        QCOMPARE(dashed->childItems().size(), 1);
        const QQuickItem *preview = camera.item(u"previewView"_s);
        QTRY_COMPARE(preview->childItems().constFirst()->size(), preview->size());
        QVERIFY(guidePixels(camera) > 0);
        camera.tap(u"infoButton"_s);
        QTRY_COMPARE(guidePixels(camera), 0);
    }

    void laysOutControls_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("portrait") << QSize(390, 844);
        QTest::newRow("small") << QSize(320, 568);
        QTest::newRow("landscape") << QSize(844, 390);
        QTest::newRow("small-landscape") << QSize(568, 320);
        QTest::newRow("tablet") << QSize(768, 1024);
    }
    void laysOutControls()
    {
        QFETCH(QSize, size);
        CameraScreen camera(size);
        camera.open();
        QTRY_VERIFY(camera.window.grab().pixelColor(size.width() / 4, size.height() / 3) == Qt::red);
        const QRectF screen(QPointF(0, 0), QSizeF(size));
        const QRectF bar = inWindow(camera.item(u"bottomBar"_s));
        const QRectF guide = inWindow(camera.item(u"dashedView"_s));
        QVERIFY(screen.contains(guide));
        QVERIFY(!guide.intersects(bar));
        QVERIFY(guide.width() > 100 && guide.height() > 100);
        for (qsizetype i = 0; i < controls.size(); ++i) {
            const QRectF place = inWindow(camera.item(controls[i]));
            QVERIFY2(screen.contains(place), qPrintable(controls[i]));
            QVERIFY2(place.width() >= 44 && place.height() >= 44, qPrintable(controls[i]));
            QVERIFY2(!place.intersects(guide), qPrintable(controls[i]));
            QCOMPARE(bar.contains(place), i < 3);
            for (qsizetype j = 0; j < i; ++j)
                QVERIFY2(!place.intersects(inWindow(camera.item(controls[j]))), qPrintable(controls[i]));
        }
    }

    void showsTheBannerOffline()
    {
        CameraScreen camera;
        camera.open();
        CameraScreen::network().setOffline();
        const Platform::View *banner = BrevantoReachabilityManager::instance()->noNetworkView();
        QTRY_COMPARE(banner->superview(), camera.screen->view());
        QTRY_VERIFY(camera.window.grab().pixelColor(100, 300) == Qt::red);
        for (const QString &control : controls)
            QVERIFY2(!inWindow(camera.item(control)).intersects(inWindow(banner)), qPrintable(control));
        const QImage strip = camera.window.grab().copy(0, 0, 390, 30);
        QCOMPARE(strip.pixelColor(2, 15), QColor(170, 170, 170));
        // The banner's text in the middle of the strip.
        QRect text;
        for (int i = 0; i < strip.width() * strip.height(); ++i) {
            const QPoint point(i % strip.width(), i / strip.width());
            if (strip.pixelColor(point) == Qt::white)
                text |= QRect(point, QSize(1, 1));
        }
        const Platform::Label *label = BrevantoReachabilityManager::instance()->noNetworkLabel();
        QCOMPARE(label->font().pixelSize(), 16);
        QVERIFY(qAbs(text.width() - QFontMetricsF(label->font()).tightBoundingRect(label->text()).width()) < 6);
        QVERIFY(qAbs(text.center().x() - 195) < 5);
        CameraScreen::network().setOnline();
        QTRY_VERIFY(!banner->superview());
    }

    void comesBackToThePreview_data() { addBothRows("stopped", "running", "stopped by a photo"); }
    void comesBackToThePreview()
    {
        QFETCH(bool, stopped);
        CameraScreen camera;
        camera.open();
        QTRY_VERIFY(camera.camera->isDelivering());
        if (stopped)
            camera.screen->captureSession()->stopRunning();
        camera.navigation->pushViewController(std::make_unique<Platform::ViewController>(), false);
        QTRY_VERIFY(!camera.screen->isVisible());
        QCOMPARE(camera.camera->isDelivering(), !stopped);
        camera.navigation->popViewController(false);
        QTRY_VERIFY(camera.screen->isVisible() && camera.camera->isDelivering());
        QVERIFY(camera.navigation->isNavigationBarHidden());
        QTest::qWait(0);
        QCOMPARE(camera.camera->startCount, stopped ? 2 : 1);
    }

    void givesTheCameraBackInTheBackground()
    {
        CameraScreen camera;
        camera.open();
        QTRY_VERIFY(camera.camera->isDelivering());
        Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationSuspended);
        QTRY_VERIFY(!camera.camera->isDelivering());
        QVERIFY(camera.isOpen() && !camera.alert());
        Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
        QTRY_VERIFY(camera.camera->isDelivering());
        QVERIFY(camera.shoot());
    }

    void splash_data() { addBothRows("loadedBefore", "first start", "later"); }
    void splash()
    {
        QFETCH(bool, loadedBefore);
        const auto duration = loadedBefore ? 2s : 5s;
        BrevantoUtils::setIsAppLoadedOnce(loadedBefore);
        CameraScreen camera;
        camera.open();
        camera.screen->addCustomBrevantoView();
        const QPointer<QQuickItem> mark(camera.navigation->view()->viewWithTag(302));
        QVERIFY(qobject_cast<BrevantoHotspotView *>(mark));
        QVERIFY(BrevantoUtils::isAppLoadedOnce());
        // The mark stands on the right end of the centred wordmark.
        QCOMPARE(inWindow(mark), QRectF((390 - 175) / 2.0 + 175 - 48, (844 - 24) / 2.0, 24, 24));
        const auto *logo = mark->parentItem()->findChild<Platform::ImageView *>();
        QTRY_VERIFY(logo && logo->isShowingImage());

        camera.clock.advance(duration - 10ms);
        QVERIFY(camera.navigation->view()->viewWithTag(302));
        camera.clock.advance(20ms);
        QVERIFY(!camera.navigation->view()->viewWithTag(302));
        QTRY_VERIFY(!mark);
    }
};

QTEST_MAIN(tst_BrevantoCameraVC)
#include "tst_BrevantoCameraVC.moc"
