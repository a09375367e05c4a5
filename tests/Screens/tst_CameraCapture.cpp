#include "CameraScreen.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoRecentProductsVC.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/Window.h"
#include "support/TestImages.h"

#include <QBuffer>
#include <QDir>
#include <QImageReader>
#include <QStandardPaths>
#include <QTest>

using namespace std::chrono_literals;

namespace
{

const QString timeOutTitle = QStringLiteral("Getting response might take more time");
const QString noMatchTitle = QStringLiteral("No matches found. Please retry by capturing a new image.");
const QString captureAgain = QStringLiteral("Capture Again");

QByteArray uploadedJpeg(const RawServer::Request &request)
{
    const QByteArray &body = request.body;
    const qsizetype start = body.indexOf("\xff\xd8");
    const qsizetype end = body.lastIndexOf("\xff\xd9");
    return start < 0 || end < start ? QByteArray() : body.mid(start, end + 2 - start);
}

} // namespace

class tst_CameraCapture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void uploadsASmallGreyPhoto_data();
    void uploadsASmallGreyPhoto();
    void goesFromTheShutterToTheAd();
    void endsARequest_data();
    void endsARequest();
    void staysLiveWithoutPhoto_data();
    void staysLiveWithoutPhoto();
    void asksForPatience();
    void oldTimerAsksForTheNextRequest();
    void leavesOtherScreensAlone();
    void drawsTheEyeToTheBannerOffline_data();
    void drawsTheEyeToTheBannerOffline();
    void closesAtAnyStage_data();
    void closesAtAnyStage();
    void offersTheRest();

private:
    // The ad screen on top of the stack; null when another screen is.
    static BrevantoAdVC *ad(const CameraScreen &camera)
    {
        return qobject_cast<BrevantoAdVC *>(camera.navigation->topViewController());
    }
    static bool isSpinning(const CameraScreen &camera)
    {
        const QQuickItem *spinner = camera.item(QStringLiteral("spinnerView"));
        return spinner->isVisible() && spinner->property("running").toBool();
    }
    static bool isLive(const CameraScreen &camera)
    {
        return camera.screen->captureSession()->isRunning() && camera.item(QStringLiteral("captureButton"))->isEnabled()
            && !isSpinning(camera);
    }
    static void waitOutTheTimeOut(CameraScreen &camera)
    {
        QVERIFY(camera.wait(10s));
        QTRY_COMPARE(camera.alertTitle(), timeOutTitle);
    }
};

void tst_CameraCapture::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
}

void tst_CameraCapture::init()
{
    QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).removeRecursively();
}

void tst_CameraCapture::uploadsASmallGreyPhoto_data()
{
    QTest::addColumn<QSize>("stored");
    QTest::addColumn<int>("exif");
    QTest::addColumn<QSize>("uploaded");
    QTest::newRow("portrait") << QSize(3000, 4000) << 0 << QSize(480, 640);
    QTest::newRow("landscape") << QSize(4000, 3000) << 0 << QSize(640, 480);
    QTest::newRow("cut off") << QSize(1000, 1001) << 0 << QSize(480, 480);
    QTest::newRow("square") << QSize(500, 500) << 0 << QSize(480, 480);
    QTest::newRow("enlarged") << QSize(240, 300) << 0 << QSize(480, 600);
    QTest::newRow("turned") << QSize(800, 600) << 6 << QSize(480, 640);
}

void tst_CameraCapture::uploadsASmallGreyPhoto()
{
    QFETCH(QSize, stored);
    QFETCH(int, exif);
    CameraScreen camera;
    camera.camera->jpeg = TestImages::jpeg(TestImages::quarters(stored), exif);
    camera.open();
    QVERIFY(camera.shoot());
    const RawServer::Request request = camera.server.requests().constFirst();
    QCOMPARE(request.method, "POST");
    QCOMPARE(request.target, "/image/upload");
    QByteArray jpeg = uploadedJpeg(request);
    QVERIFY2(!jpeg.isEmpty() && jpeg.size() < 10000, qPrintable(QString::number(jpeg.size())));
    QBuffer buffer(&jpeg);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    const QImage photo = reader.read();
    QTEST(photo.size(), "uploaded");
    QCOMPARE(photo.format(), QImage::Format_Grayscale8);
    // Upright: of the four quarters the white one is the brightest.
    const auto brightness = [&photo](qreal x, qreal y) {
        return qGray(photo.pixel(int(photo.width() * x), int(photo.height() * y)));
    };
    const int white = exif == 6 ? brightness(0.25, 0.75) : brightness(0.75, 0.75);
    QVERIFY(white > 200 && brightness(0.25, 0.25) < 150);
}

void tst_CameraCapture::goesFromTheShutterToTheAd()
{
    CameraScreen camera;
    camera.prepareAnswer(CameraScreen::matches(
        {camera.server.url(QStringLiteral("/ad.jpg")), QStringLiteral("second"), QStringLiteral("third")}));
    camera.open();
    QTRY_VERIFY(camera.camera->isDelivering());
    QVERIFY(camera.shoot());
    QTRY_VERIFY(isSpinning(camera));
    QTRY_VERIFY(!camera.camera->isDelivering());
    const QImage shot = camera.window.grab();
    QTRY_VERIFY2(camera.window.grab(QStringLiteral("camera-uploading")) != shot, "The spinner stands");

    camera.server.resume();
    QTRY_VERIFY(ad(camera));
    QCOMPARE(ad(camera)->matchGroup()->adImageUrl(), camera.server.url(QStringLiteral("/ad.jpg")));
    QCOMPARE(camera.navigation->viewControllers().size(), std::size_t(2));
    QVERIFY(!camera.screen->isRequestOnProcess());
    QVERIFY(!isSpinning(camera));
    camera.clock.advance(20s);
    QVERIFY(!camera.alert());

    QTRY_VERIFY(ad(camera)->isVisible());
    ad(camera)->navBarBackButtonAction();
    QTRY_VERIFY(camera.camera->isDelivering());
    QTRY_VERIFY(isLive(camera));
}

void tst_CameraCapture::endsARequest_data()
{
    QTest::addColumn<RawServer::Answer>("answer");
    QTest::addColumn<QString>("before"); // what happens before the answer comes
    QTest::addColumn<QString>("shown"); // the alert's title, message and buttons, or the ad
    const auto match = CameraScreen::matches({QStringLiteral("a")});
    const auto nothing = CameraScreen::matches({});
    const auto failure = RawServer::Answer::json(R"({"status": {"code": 5}})");
    const QString dialog = QStringLiteral("dialog");
    const QString abandoned = QStringLiteral("abandoned");
    const QString noMatch = noMatchTitle + QStringLiteral("||Capture Again");
    const QString wrong = QStringLiteral("Brevanto|Something went wrong!!|Capture Again");
    QTest::newRow("empty") << nothing << QString() << noMatch;
    QTest::newRow("none") << RawServer::Answer::json(R"({"status": {"code": 0}})") << QString() << noMatch;
    QTest::newRow("null") << RawServer::Answer::json(R"({"status": {"code": 0}, "matches": null})") << QString()
                          << noMatch;
    QTest::newRow("failure") << failure << QString() << QString();
    QTest::newRow("late-match") << match << dialog << QStringLiteral("a");
    QTest::newRow("late-no-match") << nothing << dialog << noMatch;
    QTest::newRow("late-failure") << failure << dialog << wrong;
    QTest::newRow("match, abandoned") << match << abandoned << QStringLiteral("second");
    QTest::newRow("no match, abandoned") << nothing << abandoned << QStringLiteral("second");
    QTest::newRow("failure, abandoned") << failure << abandoned << QStringLiteral("second");
}

void tst_CameraCapture::endsARequest()
{
    QFETCH(RawServer::Answer, answer);
    QFETCH(QString, before);
    QFETCH(QString, shown);
    CameraScreen camera;
    camera.prepareAnswer(answer);
    camera.open();
    QVERIFY(camera.shoot());
    QTRY_VERIFY(isSpinning(camera));
    if (!before.isEmpty())
        waitOutTheTimeOut(camera);
    const QPointer<Platform::AlertController> dialog(camera.alert());
    if (before == QStringLiteral("abandoned")) {
        auto *leftover = new Platform::View(QRectF(0, 0, 50, 50));
        leftover->setTag(301);
        camera.screen->view()->addSubview(leftover);
        QVERIFY(camera.choose(captureAgain));
        QVERIFY(!camera.screen->view()->viewWithTag(301));
        QVERIFY(!camera.screen->isRequestOnProcess());
        QTRY_VERIFY(isLive(camera));
        camera.server.resume();
        // A second request that comes to its end shows that the first one has come to its own.
        camera.prepareAnswer(CameraScreen::matches({QStringLiteral("second")}));
        QTest::qWait(50);
        QVERIFY(!ad(camera) && !camera.alert());
        QVERIFY(camera.shoot());
    }
    camera.server.resume();
    QTRY_VERIFY(!camera.screen->isRequestOnProcess() && !isSpinning(camera) && !dialog);
    if (shown.isEmpty()) {
        camera.clock.advance(20s);
        QVERIFY(!camera.alert() && !camera.screen->captureSession()->isRunning());
        camera.navigation->pushViewController(std::make_unique<Platform::ViewController>(), false);
        QTRY_VERIFY(!camera.screen->isVisible());
        camera.navigation->popViewController(false);
    } else if (shown.contains(QLatin1Char('|'))) {
        QTRY_VERIFY(camera.alert());
        QStringList alert{camera.alertTitle(), camera.alert()->message()};
        for (const Platform::AlertAction &action : camera.alert()->actions())
            alert += action.title;
        QCOMPARE(alert.join(QLatin1Char('|')), shown);
        QVERIFY(!camera.screen->captureSession()->isRunning());
        camera.window.grab(QStringLiteral("camera-%1").arg(QString::fromLatin1(QTest::currentDataTag())));
        QVERIFY(camera.choose(captureAgain));
    } else {
        QTRY_VERIFY(ad(camera) && ad(camera)->isVisible());
        QCOMPARE(ad(camera)->matchGroup()->adImageUrl(), shown);
        QCOMPARE(camera.navigation->viewControllers().size(), std::size_t(2));
        QVERIFY(!camera.alert());
        return;
    }
    QTRY_VERIFY(isLive(camera));
    QVERIFY(camera.shoot());
}

void tst_CameraCapture::staysLiveWithoutPhoto_data()
{
    QTest::addColumn<QByteArray>("jpeg");
    QTest::newRow("camera fails") << QByteArray();
    QTest::newRow("photo is damaged") << QByteArray("no photo at all");
    QTest::newRow("photo is a mere line") << TestImages::jpeg(TestImages::quarters({4000, 1}));
}

void tst_CameraCapture::staysLiveWithoutPhoto()
{
    QFETCH(QByteArray, jpeg);
    CameraScreen camera;
    camera.open();
    QVERIFY(camera.tapShutter());
    camera.deliver(jpeg);
    QTRY_VERIFY(isLive(camera));
    camera.clock.advance(1s);
    QVERIFY(isLive(camera));
    QVERIFY(!camera.alert());
    camera.camera->jpeg = CameraScreen::photo();
    QVERIFY(camera.shoot());
}

void tst_CameraCapture::asksForPatience()
{
    CameraScreen camera;
    camera.open();
    QVERIFY(camera.shoot());
    for (int round = 0; round < 3; ++round) {
        QVERIFY(camera.wait(9990ms));
        QVERIFY(!camera.alert());
        camera.clock.advance(10ms);
        QTRY_COMPARE(camera.alertTitle(), timeOutTitle);
        QCOMPARE(camera.alert()->message(), QString());
        QStringList buttons;
        for (const Platform::AlertAction &action : camera.alert()->actions())
            buttons += QStringLiteral("%1/%2").arg(action.title, QString::number(int(action.style)));
        QCOMPARE(buttons, QStringList({QStringLiteral("OK/1"), QStringLiteral("Capture Again/0")}));
        QTRY_VERIFY(isSpinning(camera));
        camera.window.grab(QStringLiteral("camera-time-out"));
        QVERIFY(camera.choose(QStringLiteral("OK")));
        QVERIFY(camera.screen->isRequestOnProcess());
        QVERIFY(!camera.screen->captureSession()->isRunning());
        QTest::qWait(0);
    }
    QCOMPARE(camera.server.requestCount(), 1);
}

void tst_CameraCapture::oldTimerAsksForTheNextRequest()
{
    CameraScreen camera;
    camera.open();
    QVERIFY(camera.shoot());
    waitOutTheTimeOut(camera);
    QVERIFY(camera.choose(QStringLiteral("OK"))); // a timer for ten seconds from here on
    camera.server.resume();
    QTRY_COMPARE(camera.alertTitle(), noMatchTitle);
    QVERIFY(camera.choose(captureAgain));
    camera.clock.advance(8s);
    QVERIFY(camera.shoot());
    QVERIFY(!camera.alert());
    camera.clock.advance(2s);
    QTRY_COMPARE(camera.alertTitle(), timeOutTitle);
}

void tst_CameraCapture::leavesOtherScreensAlone()
{
    CameraScreen camera;
    camera.open();
    QVERIFY(camera.shoot());
    camera.navigation->pushViewController(std::make_unique<Platform::ViewController>(), false);
    QTRY_VERIFY(!camera.screen->isVisible());
    QVERIFY(camera.wait(10s));
    QVERIFY(!camera.alert());
    camera.navigation->popViewController(false);
    QTRY_VERIFY(camera.screen->isVisible());
    QVERIFY(camera.wait(20s));
    QVERIFY(!camera.alert());
    QVERIFY(camera.screen->isRequestOnProcess());
}

void tst_CameraCapture::drawsTheEyeToTheBannerOffline_data()
{
    QTest::addColumn<bool>("presenting");
    QTest::newRow("nothing presented") << false;
    QTest::newRow("alert presented") << true;
}

void tst_CameraCapture::drawsTheEyeToTheBannerOffline()
{
    QFETCH(bool, presenting);
    CameraScreen camera;
    camera.open();
    CameraScreen::network().setOffline();
    QVERIFY(camera.tapShutter());
    if (presenting)
        camera.screen->present(std::make_unique<Platform::AlertController>(QStringLiteral("Other"), QString()), false);
    camera.deliver(CameraScreen::photo());
    Platform::View::setAnimationsEnabled(true);
    const Platform::Label *label = BrevantoReachabilityManager::instance()->noNetworkLabel();
    QVERIFY(camera.advanceUntil([label] { return label->transformScale() > 1.0; }));
    Platform::View::setAnimationsEnabled(false);
    QVERIFY(!camera.screen->isRequestOnProcess());
    if (presenting) {
        QVERIFY(camera.advanceUntil(
            [&] { return camera.alertTitle() == QStringLiteral("Please check you internet connection"); }));
        QCOMPARE(camera.alert()->message(), QString());
        QCOMPARE(camera.alert()->actions().size(), std::size_t(1));
        camera.window.grab(QStringLiteral("camera-offline-alert"));
        QVERIFY(camera.choose(QStringLiteral("OK")));
        QTRY_VERIFY(isLive(camera));
    } else {
        camera.clock.advance(20s);
        QVERIFY(!camera.alert());
        QVERIFY(!camera.screen->captureSession()->isRunning());
    }
    QCOMPARE(camera.server.requestCount(), 0);
}

void tst_CameraCapture::closesAtAnyStage_data()
{
    QTest::addColumn<QString>("stage");
    QTest::newRow("live") << QStringLiteral("live");
    QTest::newRow("photo under way") << QStringLiteral("photo");
    QTest::newRow("before the upload") << QStringLiteral("prepared");
    QTest::newRow("uploading") << QStringLiteral("uploading");
    QTest::newRow("time-out dialog") << QStringLiteral("dialog");
    QTest::newRow("answered") << QStringLiteral("answered");
}

void tst_CameraCapture::closesAtAnyStage()
{
    QFETCH(QString, stage);
    CameraScreen camera;
    camera.prepareAnswer(CameraScreen::matches({QStringLiteral("a")}));
    camera.open();
    QTRY_VERIFY(camera.camera->isDelivering());
    if (stage == QStringLiteral("photo") || stage == QStringLiteral("prepared"))
        QVERIFY(camera.tapShutter());
    else if (stage != QStringLiteral("live"))
        QVERIFY(camera.shoot());
    if (stage == QStringLiteral("prepared")) {
        camera.deliver(CameraScreen::photo());
        QTRY_VERIFY(!camera.camera->isDelivering());
    }
    if (stage == QStringLiteral("dialog"))
        waitOutTheTimeOut(camera);
    if (stage == QStringLiteral("answered"))
        camera.server.resume();

    Platform::ViewController *host = Platform::Window::of(camera.window.window())->rootViewController();
    if (stage == QStringLiteral("live"))
        camera.tap(QStringLiteral("closeButton"));
    else
        host->dismiss(true);
    QTRY_VERIFY(!camera.screen && !camera.navigation);
    if (camera.camera->photo)
        camera.camera->photo(nullptr, {});
    camera.server.resume();
    QTest::qWait(50);
    camera.clock.advance(30s);
    QVERIFY(!host->presentedViewController());
    QTRY_VERIFY(!camera.camera->isDelivering());
    QVERIFY(!QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).exists(QStringLiteral("Recents")));
}

void tst_CameraCapture::offersTheRest()
{
    CameraScreen camera;
    camera.open();
    const Platform::Image scaled =
        camera.screen->imageWithImage(Platform::Image(TestImages::quarters({40, 20})), {30, 30});
    QCOMPARE(scaled.size(), QSizeF(30, 30));
    QCOMPARE(scaled.scale(), camera.window.window()->effectiveDevicePixelRatio());
    QCOMPARE(TestImages::seenIn(scaled.upright()), QStringLiteral("rgbw"));
    camera.tap(QStringLiteral("recentsButton"));
    QTRY_VERIFY(qobject_cast<BrevantoRecentProductsVC *>(camera.navigation->topViewController()));
}

Q_DECLARE_METATYPE(RawServer::Answer)

QTEST_MAIN(tst_CameraCapture)
#include "tst_CameraCapture.moc"
