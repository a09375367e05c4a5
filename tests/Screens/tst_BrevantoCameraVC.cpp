#include "CameraScreen.h"

#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/ImageView.h"
#include "Platform/Interface/ShapeLayer.h"
#include "Platform/Interface/Window.h"
#include "support/TestImages.h"

#include <QFontMetricsF>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTest>

using namespace std::chrono_literals;
using Platform::CaptureAuthorizationStatus;

namespace
{

const QStringList controls = {QStringLiteral("captureButton"), QStringLiteral("recentsButton"),
                              QStringLiteral("flashButton"), QStringLiteral("infoButton"),
                              QStringLiteral("closeButton")};

QRectF inWindow(const QQuickItem *item)
{
    return item->mapRectToScene(item->boundingRect());
}

// White pixels on the middle of the guide's left edge.
int guidePixels(CameraScreen &camera)
{
    const QRectF guide = inWindow(camera.item(QStringLiteral("dashedView")));
    const QImage shot = camera.window.grab();
    int white = 0;
    for (int y = int(guide.top()) + 10; y < int(guide.bottom()) - 10; ++y)
        white += qGray(shot.pixel(int(guide.left()), y)) > 200 ? 1 : 0;
    return white;
}

class Opener : public Platform::Application::URLOpener
{
public:
    Opener() { Platform::Application::setURLOpener(this); }
    ~Opener() override { Platform::Application::setURLOpener(nullptr); }

    bool canOpen(const QUrl &) override { return true; }
    void open(const QUrl &url, std::function<void(bool)>) override { opened += url; }

    QList<QUrl> opened;
};

} // namespace

class tst_BrevantoCameraVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void preparesTheCamera();
    void asksForPermission_data();
    void asksForPermission();
    void livesWithoutCamera();
    void switchesTheFlash_data();
    void switchesTheFlash();
    void pinches_data();
    void pinches();
    void pinchesWithTwoFingers();
    void showsTheGuide();
    void laysOutControls_data();
    void laysOutControls();
    void showsTheBannerOffline();
    void comesBackToThePreview_data();
    void comesBackToThePreview();
    void worksByKeyboard();
    void splash_data();
    void splash();
};

void tst_BrevantoCameraVC::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void tst_BrevantoCameraVC::preparesTheCamera()
{
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
    QVERIFY(!camera.item(QStringLiteral("blurView"))->isVisible());
    QVERIFY(!camera.item(QStringLiteral("spinnerView"))->isVisible());
}

void tst_BrevantoCameraVC::asksForPermission_data()
{
    QTest::addColumn<CaptureAuthorizationStatus>("status");
    QTest::addColumn<bool>("granted"); // the user's answer where the permission is open
    QTest::addColumn<QString>("alert"); // title, message and buttons with their styles
    QTest::addColumn<QString>("button"); // to leave by
    using Status = CaptureAuthorizationStatus;
    const QString restricted = QStringLiteral("Zovra|Access for Camera is restricted|Ok/0");
    const QString denied = QStringLiteral("Camera Disabled|Enable in Settings|Cancel/1|Settings/0");
    QTest::newRow("granted") << Status::Authorized << true << QString() << QString();
    QTest::newRow("user agrees") << Status::NotDetermined << true << QString() << QString();
    QTest::newRow("user declines") << Status::NotDetermined << false << denied << QStringLiteral("Cancel");
    QTest::newRow("restricted") << Status::Restricted << false << restricted << QStringLiteral("Ok");
    QTest::newRow("denied") << Status::Denied << false << denied << QStringLiteral("Cancel");
    QTest::newRow("settings") << Status::Denied << false << denied << QStringLiteral("Settings");
}

void tst_BrevantoCameraVC::asksForPermission()
{
    QFETCH(CaptureAuthorizationStatus, status);
    QFETCH(bool, granted);
    QFETCH(QString, alert);
    QFETCH(QString, button);
    FakePermission permission(status);
    Opener system;
    CameraScreen camera;
    camera.camera->needsPermission = true;
    camera.open();
    if (status == CaptureAuthorizationStatus::NotDetermined) {
        QTRY_COMPARE(permission.questions.size(), std::size_t(1));
        // Nobody has refused anything yet.
        camera.tap(QStringLiteral("captureButton"));
        QTest::qWait(0);
        QVERIFY(!camera.alert() && !camera.camera->isOpen);
        QVERIFY(camera.item(QStringLiteral("captureButton"))->isEnabled());
        permission.answer(granted);
    }
    QTRY_COMPARE(camera.alert() != nullptr, !granted);
    QCOMPARE(camera.item(QStringLiteral("captureButton"))->isEnabled(), granted);
    QCOMPARE(camera.item(QStringLiteral("flashButton"))->isEnabled(), granted);
    if (granted) {
        QTRY_VERIFY(camera.camera->isDelivering());
        QCOMPARE(camera.camera->mode, Platform::CaptureFlashMode::Off);
        QVERIFY(camera.shoot());
        return;
    }
    QCOMPARE(camera.camera->startCount, 0);
    QStringList shown{camera.alert()->title(), camera.alert()->message()};
    for (const Platform::AlertAction &action : camera.alert()->actions())
        shown += QStringLiteral("%1/%2").arg(action.title, QString::number(int(action.style)));
    QCOMPARE(shown.join(QLatin1Char('|')), alert);
    camera.window.grab(QStringLiteral("camera-%1").arg(QString::fromLatin1(QTest::currentDataTag())));
    QVERIFY(camera.choose(button));
    QTRY_VERIFY(!camera.navigation && !camera.screen);
    QVERIFY(!Platform::Window::of(camera.window.window())->rootViewController()->presentedViewController());
    QCOMPARE(system.opened.size(), button == QStringLiteral("Settings") ? 1 : 0);
}

void tst_BrevantoCameraVC::livesWithoutCamera()
{
    CameraScreen camera;
    Platform::CaptureDevice::unregisterDevice(camera.camera);
    if (BrevantoCameraVC::getBackCam())
        QSKIP("This machine has a camera");
    camera.open();
    camera.tap(QStringLiteral("flashButton"));
    camera.screen->pinched(BrevantoCameraVC::Began, 1.0);
    camera.screen->pinched(BrevantoCameraVC::Changed, 2.0);
    camera.tap(QStringLiteral("captureButton"));
    QTRY_COMPARE(camera.alertTitle(), QStringLiteral("Camera Disabled"));
    QVERIFY(!camera.item(QStringLiteral("captureButton"))->isEnabled());
    camera.window.grab(QStringLiteral("camera-none"));
    QVERIFY(camera.choose(QStringLiteral("Cancel")));
    QVERIFY(camera.isOpen());
}

void tst_BrevantoCameraVC::switchesTheFlash_data()
{
    QTest::addColumn<bool>("hasFlash");
    QTest::addColumn<bool>("refuses");
    QTest::addColumn<QString>("course"); // per tap: the button selected, the flash on
    QTest::newRow("on and off") << true << false << "sf -- sf";
    QTest::newRow("no flash") << false << false << "-- -- --";
    QTest::newRow("refused") << true << true << "s- s- s-";
}

void tst_BrevantoCameraVC::switchesTheFlash()
{
    QFETCH(bool, hasFlash);
    QFETCH(bool, refuses);
    CameraScreen camera;
    camera.camera->flash = hasFlash;
    camera.camera->refusesConfiguration = refuses;
    camera.open();
    const QQuickItem *button = camera.item(QStringLiteral("flashButton"));
    QSignalSpy clicks(button, SIGNAL(clicked()));
    QStringList course;
    for (int taps = 1; taps <= 3; ++taps) {
        camera.tap(QStringLiteral("flashButton"));
        QTRY_COMPARE(clicks.count(), taps);
        course += QString(QLatin1Char(button->property("selected").toBool() ? 's' : '-'))
            + QLatin1Char(camera.camera->isFlashActive() ? 'f' : '-');
    }
    QTEST(course.join(QLatin1Char(' ')), "course");
    QVERIFY(button->isVisible());
    camera.screen->updateFlashButtonVisibility();
    QCOMPARE(button->isVisible(), hasFlash);
}

void tst_BrevantoCameraVC::pinches_data()
{
    QTest::addColumn<qreal>("maximum");
    QTest::addColumn<qreal>("from");
    QTest::addColumn<qreal>("scale");
    QTest::addColumn<qreal>("zoom");
    QTest::newRow("in") << 8.0 << 1.5 << 2.0 << 3.0;
    QTest::newRow("out") << 8.0 << 4.0 << 0.5 << 2.0;
    QTest::newRow("to the widest") << 8.0 << 2.0 << 0.5 << 1.0;
    QTest::newRow("too wide") << 8.0 << 1.0 << 0.8 << 1.0;
    QTest::newRow("just below the limit") << 8.0 << 1.0 << 5.999 << 5.999;
    QTest::newRow("at the limit") << 8.0 << 2.0 << 3.0 << 2.0;
    QTest::newRow("at the device's lower limit") << 4.0 << 2.0 << 2.0 << 2.0;
    QTest::newRow("below the device's lower limit") << 4.0 << 2.0 << 1.9 << 3.8;
}

void tst_BrevantoCameraVC::pinches()
{
    QFETCH(qreal, from);
    QFETCH(qreal, scale);
    CameraScreen camera;
    QFETCH(qreal, maximum);
    camera.camera->maximumZoom = maximum;
    camera.camera->zoom = from;
    camera.open();
    camera.screen->pinched(BrevantoCameraVC::Began, 1.0);
    camera.screen->pinched(BrevantoCameraVC::Changed, scale);
    camera.screen->pinched(BrevantoCameraVC::Ended, scale * 1.1);
    QTEST(camera.camera->zoom, "zoom");
}

void tst_BrevantoCameraVC::pinchesWithTwoFingers()
{
    CameraScreen camera;
    camera.open();
    const std::unique_ptr<QPointingDevice> fingers(QTest::createTouchDevice());
    QQuickWindow *window = camera.window.window();
    const QPoint middle(195, 400);
    QTest::touchEvent(window, fingers.get())
        .press(0, middle - QPoint(0, 40), window)
        .press(1, middle + QPoint(0, 40), window);
    for (int distance = 40; distance <= 120; distance += 8) {
        QTest::touchEvent(window, fingers.get())
            .move(0, middle - QPoint(0, distance), window)
            .move(1, middle + QPoint(0, distance), window);
        // The window hands on what moved with the next frame.
        QSignalSpy frames(window, &QQuickWindow::frameSwapped);
        window->requestUpdate();
        QTRY_VERIFY(!frames.isEmpty());
    }
    QTest::touchEvent(window, fingers.get())
        .release(0, middle - QPoint(0, 120), window)
        .release(1, middle + QPoint(0, 120), window);
    QTRY_VERIFY(camera.camera->zoom > 1.5);
    QVERIFY(camera.camera->zoom < 3.5);
}

void tst_BrevantoCameraVC::showsTheGuide()
{
    CameraScreen camera;
    camera.open();
    QTest::qWait(0);
    QCOMPARE(guidePixels(camera), 0);
    camera.tap(QStringLiteral("infoButton"));
    QTRY_VERIFY(guidePixels(camera) > 0);
    // Ten points drawn, five left out.
    const qreal height = camera.item(QStringLiteral("dashedView"))->height() - 20;
    const qreal share = guidePixels(camera) / height;
    QVERIFY2(share > 0.55 && share < 0.8, qPrintable(QString::number(share)));
    QVERIFY(camera.item(QStringLiteral("infoButton"))->property("selected").toBool());
    camera.window.grab(QStringLiteral("camera-guide"));

    const QQuickItem *dashed = camera.item(QStringLiteral("dashedView"));
    const auto *guide = dashed->findChild<Platform::ShapeLayer *>();
    const QSizeF portrait = guide->bounds().size();
    camera.window.window()->resize(844, 390);
    QTRY_VERIFY(guide->bounds().size() != portrait);
    QTRY_COMPARE(guide->bounds().size(), dashed->size());
    QCOMPARE(dashed->childItems().size(), 1);
    const QQuickItem *preview = camera.item(QStringLiteral("previewView"));
    QTRY_COMPARE(preview->childItems().constFirst()->size(), preview->size());
    QVERIFY(guidePixels(camera) > 0);
    camera.tap(QStringLiteral("infoButton"));
    QTRY_COMPARE(guidePixels(camera), 0);
}

void tst_BrevantoCameraVC::laysOutControls_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("portrait") << QSize(390, 844);
    QTest::newRow("small") << QSize(320, 568);
    QTest::newRow("landscape") << QSize(844, 390);
    QTest::newRow("small-landscape") << QSize(568, 320);
    QTest::newRow("tablet") << QSize(768, 1024);
}

void tst_BrevantoCameraVC::laysOutControls()
{
    QFETCH(QSize, size);
    CameraScreen camera(size);
    camera.open();
    const QString name = QStringLiteral("camera-%1").arg(QString::fromLatin1(QTest::currentDataTag()));
    QTRY_VERIFY(camera.window.grab(name).pixelColor(size.width() / 4, size.height() / 3) == Qt::red);
    const QRectF screen(QPointF(0, 0), QSizeF(size));
    const QRectF bar = inWindow(camera.item(QStringLiteral("bottomBar")));
    const QRectF guide = inWindow(camera.item(QStringLiteral("dashedView")));
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

void tst_BrevantoCameraVC::showsTheBannerOffline()
{
    CameraScreen camera;
    camera.open();
    CameraScreen::network().setOffline();
    const Platform::View *banner = BrevantoReachabilityManager::instance()->noNetworkView();
    QTRY_COMPARE(banner->superview(), camera.screen->view());
    QTRY_VERIFY(camera.window.grab().pixelColor(100, 300) == Qt::red);
    for (const QString &control : controls)
        QVERIFY2(!inWindow(camera.item(control)).intersects(inWindow(banner)), qPrintable(control));
    // White text of that size in the middle of a grey strip.
    const QImage strip = camera.window.grab(QStringLiteral("camera-offline")).copy(0, 0, 390, 30);
    QCOMPARE(strip.pixelColor(2, 15), QColor(170, 170, 170));
    QRect text;
    for (int x = 0; x < strip.width(); ++x) {
        for (int y = 0; y < strip.height(); ++y) {
            if (strip.pixelColor(x, y) == Qt::white)
                text |= QRect(x, y, 1, 1);
        }
    }
    const Platform::Label *label = BrevantoReachabilityManager::instance()->noNetworkLabel();
    const QFontMetricsF metrics(label->font());
    QCOMPARE(label->font().pixelSize(), 16);
    QVERIFY(qAbs(text.width() - metrics.tightBoundingRect(label->text()).width()) < 6);
    QVERIFY(qAbs(text.center().x() - 195) < 5);
    CameraScreen::network().setOnline();
    QTRY_VERIFY(!banner->superview());
}

void tst_BrevantoCameraVC::comesBackToThePreview_data()
{
    QTest::addColumn<bool>("stopped");
    QTest::newRow("running") << false;
    QTest::newRow("stopped by a photo") << true;
}

void tst_BrevantoCameraVC::comesBackToThePreview()
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

void tst_BrevantoCameraVC::worksByKeyboard()
{
    CameraScreen camera;
    camera.open();
    QQuickWindow *window = camera.window.window();
    QSet<QString> reached;
    for (qsizetype i = 0; i < 2 * controls.size(); ++i) {
        QTest::keyClick(window, Qt::Key_Tab);
        if (const QQuickItem *focus = window->activeFocusItem())
            reached.insert(focus->objectName());
    }
    QCOMPARE(reached, QSet<QString>(controls.begin(), controls.end()));

    QQuickItem *info = camera.item(QStringLiteral("infoButton"));
    info->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(window, Qt::Key_Space);
    QTRY_VERIFY(camera.item(QStringLiteral("dashedView"))->isVisible());
    QTest::keyClick(window, Qt::Key_Return);
    QTRY_VERIFY(!camera.item(QStringLiteral("dashedView"))->isVisible());

    QTest::keyClick(window, Qt::Key_Escape);
    QTRY_VERIFY(!camera.screen);
}

void tst_BrevantoCameraVC::splash_data()
{
    QTest::addColumn<bool>("loadedBefore");
    QTest::addColumn<int>("seconds");
    QTest::newRow("first start") << false << 5;
    QTest::newRow("later") << true << 2;
}

void tst_BrevantoCameraVC::splash()
{
    QFETCH(bool, loadedBefore);
    QFETCH(int, seconds);
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
    camera.window.grab(QStringLiteral("camera-splash"));

    camera.clock.advance(std::chrono::seconds(seconds) - 10ms);
    QVERIFY(camera.navigation->view()->viewWithTag(302));
    camera.clock.advance(20ms);
    QVERIFY(!camera.navigation->view()->viewWithTag(302));
    QTRY_VERIFY(!mark);
}

QTEST_MAIN(tst_BrevantoCameraVC)
#include "tst_BrevantoCameraVC.moc"
