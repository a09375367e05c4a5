#include "CameraScreen.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoRecentProductsVC.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Platform/Interface/AlertController.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include <QBuffer>
#include <QDir>
#include <QImageReader>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const QString timeOutTitle = u"Getting response might take more time"_s;
const QString noMatchTitle = u"No matches found. Please retry by capturing a new image."_s;
const QString captureAgain = u"Capture Again"_s;

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
    void initTestCase() { QStandardPaths::setTestModeEnabled(true); }

    void init() { QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).removeRecursively(); }

    void uploadsASmallGreyPhoto_data()
    {
        addColumns<QSize, int, QSize>("stored", "exif", "uploaded");
        QTest::newRow("portrait") << QSize(3000, 4000) << 0 << QSize(480, 640);
        QTest::newRow("landscape") << QSize(4000, 3000) << 0 << QSize(640, 480);
        QTest::newRow("cut off") << QSize(1000, 1001) << 0 << QSize(480, 480);
        QTest::newRow("enlarged") << QSize(240, 300) << 0 << QSize(480, 600);
        QTest::newRow("turned") << QSize(800, 600) << 6 << QSize(480, 640);
    }
    void uploadsASmallGreyPhoto()
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
        // Upright: its quarters as bright as red, green, blue and white, in the order of this photo.
        const QString colors = exif == 6 ? u"brwg"_s : u"rgbw"_s;
        const QMap<QChar, int> brightness{{u'r', 76}, {u'g', 149}, {u'b', 29}, {u'w', 255}};
        for (int i = 0; i < 4; ++i) {
            const QPoint middle(photo.width() * (1 + 2 * (i % 2)) / 4, photo.height() * (1 + 2 * (i / 2)) / 4);
            QVERIFY2(qAbs(qGray(photo.pixel(middle)) - brightness[colors[i]]) < 20, QByteArray::number(i));
        }
    }

    void goesFromTheShutterToTheAd()
    {
        CameraScreen camera;
        camera.prepareAnswer(CameraScreen::matches({camera.server.url(u"/ad.jpg"_s), u"second"_s, u"third"_s}));
        camera.open();
        QTRY_VERIFY(camera.camera->isDelivering());
        QVERIFY(camera.shoot());
        QTRY_VERIFY(isSpinning(camera));
        QTRY_VERIFY(!camera.camera->isDelivering());
        const QImage shot = camera.window.grab();
        QTRY_VERIFY2(camera.window.grab() != shot, "The spinner stands");

        camera.server.resume();
        QTRY_VERIFY(ad(camera));
        QCOMPARE(ad(camera)->matchGroup()->adImageUrl(), camera.server.url(u"/ad.jpg"_s));
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

    void endsARequest_data()
    {
        QTest::addColumn<RawServer::Answer>("answer");
        QTest::addColumn<QString>("before"); // what happens before the answer comes
        QTest::addColumn<QString>("shown"); // the alert's title, message and buttons, or the ad
        const auto match = CameraScreen::matches({u"a"_s});
        const auto nothing = CameraScreen::matches({});
        const auto failure = RawServer::Answer::json(R"({"status": {"code": 5}})");
        const QString dialog = u"dialog"_s;
        const QString abandoned = u"abandoned"_s;
        const QString noMatch = noMatchTitle + u"||Capture Again/0"_s;
        const QString wrong = u"Brevanto|Something went wrong!!|Capture Again/0"_s;
        QTest::newRow("no match") << nothing << QString() << noMatch;
        QTest::newRow("failure") << failure << QString() << QString();
        QTest::newRow("late-match") << match << dialog << u"a"_s;
        QTest::newRow("late-no-match") << nothing << dialog << noMatch;
        QTest::newRow("late-failure") << failure << dialog << wrong;
        QTest::newRow("match, abandoned") << match << abandoned << u"second"_s;
        QTest::newRow("no match, abandoned") << nothing << abandoned << u"second"_s;
        QTest::newRow("failure, abandoned") << failure << abandoned << u"second"_s;
    }
    void endsARequest()
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
        if (before == u"abandoned"_s) {
            auto *leftover = new Platform::View(QRectF(0, 0, 50, 50));
            leftover->setTag(301);
            camera.screen->view()->addSubview(leftover);
            QVERIFY(camera.choose(captureAgain));
            QVERIFY(!camera.screen->view()->viewWithTag(301));
            QVERIFY(!camera.screen->isRequestOnProcess());
            QTRY_VERIFY(isLive(camera));
            camera.server.setAnswer({});
            camera.server.resume();
            QVERIFY(settle(camera.server));
            QVERIFY(!ad(camera) && !camera.alert());
            camera.prepareAnswer(CameraScreen::matches({u"second"_s}));
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
            QCOMPARE(camera.alertText(), shown);
            QVERIFY(!camera.screen->captureSession()->isRunning());
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

    void staysLiveWithoutPhoto()
    {
        CameraScreen camera;
        camera.open();
        // The camera fails; the photo is damaged; it is a mere line.
        for (const QByteArray &jpeg :
             {QByteArray(), QByteArray("no photo at all"), TestImages::jpeg(TestImages::quarters({4000, 1}))}) {
            QVERIFY(camera.tapShutter());
            camera.deliver(jpeg);
            QTRY_VERIFY(isLive(camera));
            camera.clock.advance(1s);
            QVERIFY(isLive(camera));
            QVERIFY(!camera.alert());
        }
        camera.camera->jpeg = CameraScreen::photo();
        QVERIFY(camera.shoot());
    }

    void asksForPatience()
    {
        CameraScreen camera;
        camera.open();
        QVERIFY(camera.shoot());
        for (int round = 0; round < 3; ++round) {
            QVERIFY(camera.wait(9990ms));
            QVERIFY(!camera.alert());
            camera.clock.advance(10ms);
            QTRY_COMPARE(camera.alertTitle(), timeOutTitle);
            QCOMPARE(camera.alertText(), timeOutTitle + u"||OK/1|Capture Again/0"_s);
            QTRY_VERIFY(isSpinning(camera));
            QVERIFY(camera.choose(u"OK"_s));
            QVERIFY(camera.screen->isRequestOnProcess());
            QVERIFY(!camera.screen->captureSession()->isRunning());
            QTest::qWait(0);
        }
        QCOMPARE(camera.server.requestCount(), 1);
    }

    void oldTimerAsksForTheNextRequest()
    {
        CameraScreen camera;
        camera.open();
        QVERIFY(camera.shoot());
        waitOutTheTimeOut(camera);
        QVERIFY(camera.choose(u"OK"_s)); // a timer for ten seconds from here on
        camera.server.resume();
        QTRY_COMPARE(camera.alertTitle(), noMatchTitle);
        QVERIFY(camera.choose(captureAgain));
        camera.clock.advance(8s);
        QVERIFY(camera.shoot());
        QVERIFY(!camera.alert());
        camera.clock.advance(2s);
        QTRY_COMPARE(camera.alertTitle(), timeOutTitle);
    }

    void leavesOtherScreensAlone()
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

    void drawsTheEyeToTheBannerOffline_data() { addBothRows("presenting", "nothing presented", "alert presented"); }
    void drawsTheEyeToTheBannerOffline()
    {
        QFETCH(bool, presenting);
        CameraScreen camera;
        camera.open();
        CameraScreen::network().setOffline();
        QVERIFY(camera.tapShutter());
        if (presenting)
            camera.screen->present(std::make_unique<Platform::AlertController>(u"Other"_s, QString()), false);
        camera.deliver(CameraScreen::photo());
        Platform::View::setAnimationsEnabled(true);
        const Platform::Label *label = BrevantoReachabilityManager::instance()->noNetworkLabel();
        QVERIFY(camera.advanceUntil([label] { return label->transformScale() > 1.0; }));
        Platform::View::setAnimationsEnabled(false);
        QVERIFY(!camera.screen->isRequestOnProcess());
        if (presenting) {
            QVERIFY(
                camera.advanceUntil([&] { return camera.alertTitle() == u"Please check you internet connection"_s; }));
            QCOMPARE(camera.alertText(), u"Please check you internet connection||OK/0"_s);
            QVERIFY(camera.choose(u"OK"_s));
            QTRY_VERIFY(isLive(camera));
        } else {
            camera.clock.advance(20s);
            QVERIFY(!camera.alert());
            QVERIFY(!camera.screen->captureSession()->isRunning());
        }
        QCOMPARE(camera.server.requestCount(), 0);
    }

    void closesAtAnyStage_data()
    {
        addColumns<QString, RawServer::Stage>("stage", "answer");
        for (const char *stage : {"live", "photo under way", "before the upload", "head", "dialog", "answered"})
            QTest::newRow(stage) << QString::fromLatin1(stage) << RawServer::Stage::Head;
        QTest::newRow("no answer") << QString() << RawServer::Stage::Nothing;
        QTest::newRow("half a head") << QString() << RawServer::Stage::HalfHead;
        QTest::newRow("half an answer") << QString() << RawServer::Stage::HalfBody;
    }
    void closesAtAnyStage()
    {
        QFETCH(QString, stage);
        QFETCH(RawServer::Stage, answer);
        CameraScreen camera;
        camera.prepareAnswer(CameraScreen::matches({u"a"_s}), answer);
        camera.open();
        QTRY_VERIFY(camera.camera->isDelivering());
        if (stage == u"photo under way"_s || stage == u"before the upload"_s)
            QVERIFY(camera.tapShutter());
        else if (stage != u"live"_s)
            QVERIFY(camera.shoot());
        if (stage == u"before the upload"_s) {
            camera.deliver(CameraScreen::photo());
            QTRY_VERIFY(!camera.camera->isDelivering());
        }
        if (stage == u"dialog"_s)
            waitOutTheTimeOut(camera);
        if (stage == u"answered"_s)
            camera.server.resume();

        Platform::ViewController *host = camera.window.root();
        if (stage == u"live"_s)
            camera.tap(u"closeButton"_s);
        else
            host->dismiss(true);
        QTRY_VERIFY(!camera.screen && !camera.navigation);
        if (camera.camera->photo)
            camera.camera->photo(nullptr, {});
        camera.server.setAnswer({});
        camera.server.resume();
        QVERIFY(settle(camera.server));
        camera.clock.advance(30s);
        QVERIFY(!host->presentedViewController());
        QTRY_VERIFY(!camera.camera->isDelivering());
        QVERIFY(!QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).exists(u"Recents"_s));
    }

    void offersTheRest()
    {
        CameraScreen camera;
        camera.open();
        const Platform::Image scaled =
            camera.screen->imageWithImage(Platform::Image(TestImages::quarters({40, 20})), {30, 30});
        QCOMPARE(scaled.size(), QSizeF(30, 30));
        QCOMPARE(scaled.scale(), camera.window.window()->effectiveDevicePixelRatio());
        QCOMPARE(TestImages::seenIn(scaled.upright()), u"rgbw"_s);
        camera.tap(u"recentsButton"_s);
        QTRY_VERIFY(qobject_cast<BrevantoRecentProductsVC *>(camera.navigation->topViewController()));
    }

private:
    // The ad screen on top of the stack; null when another screen is.
    static BrevantoAdVC *ad(const CameraScreen &camera)
    {
        return qobject_cast<BrevantoAdVC *>(camera.navigation->topViewController());
    }
    static bool isSpinning(const CameraScreen &camera)
    {
        const QQuickItem *spinner = camera.item(u"spinnerView"_s);
        return spinner->isVisible() && spinner->property("running").toBool();
    }
    static bool isLive(const CameraScreen &camera)
    {
        return camera.screen->captureSession()->isRunning() && camera.item(u"captureButton"_s)->isEnabled()
            && !isSpinning(camera);
    }
    static void waitOutTheTimeOut(CameraScreen &camera)
    {
        QVERIFY(camera.wait(10s));
        QTRY_COMPARE(camera.alertTitle(), timeOutTitle);
    }
};

QTEST_MAIN(tst_CameraCapture)
#include "tst_CameraCapture.moc"
